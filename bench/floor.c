/* The system calls that a report needs, and no more: the BIOS area, the structure table, each PCI
 * function's configuration, one write.
 *
 *   floor BYTES   decodes and formats nothing, and writes so many bytes of nothing
 *   floor text    writes each function's lines, in the order of the directories and by as little
 *                 work as it takes: it keeps, checks and orders nothing
 */
#define _GNU_SOURCE
#include <dirent.h>
#include <fcntl.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

static char area[0x10000];
static unsigned char configuration[4096];
static char report[1 << 24]; /* pages that are not written take no memory */
static char *report_end = report;
static int with_text;

static void read_table(void) {
    int memory = open("/dev/mem", O_RDONLY | O_CLOEXEC);
    if (memory < 0 || pread(memory, area, sizeof area, 0xF0000) != (ssize_t)sizeof area)
        _exit(1);
    const char *entry = area;
    while (memcmp(entry, "_SM_", 4) != 0)
        entry += 16;
    uint16_t length;
    uint32_t address;
    memcpy(&length, entry + 0x16, sizeof length);
    memcpy(&address, entry + 0x18, sizeof address);
    /* With the byte behind the table, as the report's program maps it. */
    uint32_t in_page = address % 4096;
    char *table = mmap(NULL, in_page + length + 1u, PROT_READ, MAP_SHARED, memory,
                       (off_t)(address - in_page));
    if (table == MAP_FAILED)
        _exit(1);
    memcpy(area, table + in_page, length);
    munmap(table, in_page + length + 1u);
    close(memory);
}

/* Calls `use` for each name in a directory. */
static void list(int directory, void (*use)(int directory, const char *name)) {
    _Alignas(struct dirent64) char entries[8192];
    ssize_t size;
    while ((size = getdents64(directory, entries, sizeof entries)) > 0)
        for (const char *next = entries; next < entries + size;) {
            const struct dirent64 *entry = (const struct dirent64 *)next;
            next += entry->d_reclen;
            if (entry->d_name[0] != '.')
                use(directory, entry->d_name);
        }
    if (size < 0)
        _exit(1);
}

static unsigned bus;
static unsigned functions;

static unsigned digit(char c) {
    return c <= '9' ? (unsigned)(c - '0') : (unsigned)(c - 'a') + 10;
}

static inline char *put_decimal(char *end, unsigned value) {
    if (value >= 100)
        *end++ = (char)('0' + value / 100 % 10);
    if (value >= 10)
        *end++ = (char)('0' + value / 10 % 10);
    *end++ = (char)('0' + value % 10);
    return end;
}

static char pairs[256][2]; /* the two digits of each byte */

static void fill_pairs(void) {
    for (unsigned byte = 0; byte < 256; ++byte)
        memcpy(pairs[byte], (char[]){"0123456789ABCDEF"[byte >> 4], "0123456789ABCDEF"[byte & 15]},
               2);
}

static inline char *put_hex(char *end, unsigned byte) {
    memcpy(end, pairs[byte], 2);
    return end + 2;
}

/* "KEY.INDEX = ". */
#define BEGIN(key)                                                                                 \
    (memcpy(end, key, sizeof key - 1), memcpy(end + sizeof key - 1, index, sizeof index),          \
     end += sizeof key - 1 + index_length)
#define END() (*end++ = '\n')
#define DECIMAL(key, value) (BEGIN(key), end = put_decimal(end, value), END())
#define BYTE(key, at) (BEGIN(key), end = put_hex(end, configuration[at]), END())
#define WORD(key, at)                                                                              \
    (BEGIN(key), end = put_hex(end, configuration[(at) + 1]),                                      \
     end = put_hex(end, configuration[at]), END())

/* Of fewer than 1,000 functions. */
static void put_function(const char *name) {
    char index[8] = ".";
    char *index_end = put_decimal(index + 1, functions++);
    memcpy(index_end, " = ", 3);
    size_t index_length = (size_t)(index_end + 3 - index);
    char *end = report_end;
    DECIMAL("Bus_Number", bus);
    DECIMAL("Device_Number", digit(name[0]) << 4 | digit(name[1]));
    DECIMAL("Function_Number", digit(name[3]));
    BEGIN("Class_Code");
    end = put_hex(end, configuration[0x0B]);
    end = put_hex(end, configuration[0x0A]);
    end = put_hex(end, configuration[0x09]);
    END();
    BYTE("Revision", 0x08);
    BYTE("Header_Type", 0x0E);
    WORD("Vendor_ID", 0x00);
    WORD("Device_ID", 0x02);
    WORD("Subvendor_ID", 0x2C);
    WORD("Subdevice_ID", 0x2E);
    report_end = end;
}

static void read_function(int directory, const char *name) {
    int function = openat(directory, name, O_RDONLY | O_CLOEXEC);
    if (function < 0 || read(function, configuration, sizeof configuration) < 0)
        _exit(1);
    close(function);
    if (with_text)
        put_function(name);
}

static void read_bus(int directory, const char *name) {
    if (strcmp(name, "devices") == 0)
        return;
    int file = openat(directory, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (file < 0)
        _exit(1);
    bus = digit(name[0]) << 4 | digit(name[1]);
    list(file, read_function);
    close(file);
}

int main(int argc, char **argv) {
    with_text = argc > 1 && strcmp(argv[1], "text") == 0;
    if (with_text)
        fill_pairs();
    read_table();
    int root = open("/proc/bus/pci", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (root < 0)
        return 1;
    list(root, read_bus);
    close(root);
    size_t bytes = with_text ? (size_t)(report_end - report)
                             : strtoul(argc > 1 ? argv[1] : "0", NULL, 10);
    return write(STDOUT_FILENO, report, bytes) != (ssize_t)bytes;
}
