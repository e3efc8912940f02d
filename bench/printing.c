/* printing COUNT: the lines of so many PCI functions in a report, the usual way. */
#include <stdio.h>
#include <stdlib.h>

int main(int argc, char** argv) {
    int count = argc > 1 ? atoi(argv[1]) : 0;
    for (int i = 0; i < count; ++i) {
        printf("Bus_Number.%d = %d\nDevice_Number.%d = %d\nFunction_Number.%d = %d\n", i, i % 256,
               i, i / 256, i, 0);
        printf("Class_Code.%d = %.6X\nRevision.%d = %.2X\nHeader_Type.%d = %.2X\n", i, 0x020000, i,
               0, i, 0);
        printf("Vendor_ID.%d = %.4X\nDevice_ID.%d = %.4X\n", i, 0x8086, i, (unsigned)i);
        printf("Subvendor_ID.%d = %.4X\nSubdevice_ID.%d = %.4X\n", i, 0, i, 0);
    }
    return 0;
}
