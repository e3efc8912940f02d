/* floor BYTES: the system calls that a report needs, and no more: the BIOS area, the structure
 * table, each PCI function's configuration, one write of so many bytes. Decodes and formats
 * nothing; what it reads is thrown away. */
#define _GNU_SOURCE
#include <dirent.h>
#include <fcntl.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

static char area[0x10000];
static char configuration[4096];

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
    uint32_t in_page = address % 4096;
    char *table = mmap(NULL, in_page + length + 1u, PROT_READ, MAP_SHARED, memory,
                       (off_t)(address - in_page));
    if (table == MAP_FAILED)
        _exit(1);
    memcpy(area, table + in_page, length);
    munmap(table, in_page + length + 1u);
    close(memory);
}

static void read_bus(int root, const char *name) {
    int file = openat(root, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR *bus = file < 0 ? NULL : fdopendir(file);
    if (bus == NULL)
        return;
    for (struct dirent *entry; (entry = readdir(bus)) != NULL;) {
        if (entry->d_name[0] == '.')
            continue;
        int function = openat(file, entry->d_name, O_RDONLY | O_CLOEXEC);
        if (function < 0 || read(function, configuration, sizeof configuration) < 0)
            _exit(1);
        close(function);
    }
    closedir(bus);
}

int main(int argc, char **argv) {
    read_table();
    DIR *root = opendir("/proc/bus/pci");
    if (root == NULL)
        return 1;
    for (struct dirent *entry; (entry = readdir(root)) != NULL;)
        if (entry->d_name[0] != '.' && strcmp(entry->d_name, "devices") != 0)
            read_bus(dirfd(root), entry->d_name);
    closedir(root);
    size_t bytes = argc > 1 ? strtoul(argv[1], NULL, 10) : 0;
    /* Whatever it holds: clearing it would be no system call, and callgrind counts that by bytes. */
    char *report = malloc(bytes + 1);
    return report == NULL || write(STDOUT_FILENO, report, bytes) != (ssize_t)bytes;
}
