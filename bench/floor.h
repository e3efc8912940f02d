/* The system calls that a report needs: the BIOS area, the structure table, each PCI function's
 * configuration. Decodes and keeps nothing: that is done, or left, by the program that includes
 * this.
 */
#pragma once
#define _GNU_SOURCE
#include <dirent.h>
#include <fcntl.h>
#include <stdint.h>
#include <string.h>
#include <sys/mman.h>
#include <unistd.h>

static unsigned char configuration[4096]; /* of the function at hand */

/* Of a digit, in lower case as the kernel writes names. */
static inline unsigned hexadecimal(char c) {
    return c <= '9' ? (unsigned)(c - '0') : (unsigned)(c - 'a') + 10;
}

/* The number of a bus or a device, which has two digits. */
static inline unsigned two_digits(const char* name) {
    return hexadecimal(name[0]) << 4 | hexadecimal(name[1]);
}

/* DSP0134, 5.2.1: where the entry point is looked for, and where it says what of the table. */
enum {
    AREA_START = 0xF0000,
    AREA_SIZE = 0x10000,
    ENTRY_STEP = 16,
    TABLE_LENGTH = 0x16,
    TABLE_ADDRESS = 0x18
};

static void read_table(void) {
    static char area[AREA_SIZE];
    int memory = open("/dev/mem", O_RDONLY | O_CLOEXEC);
    if (memory < 0 || pread(memory, area, AREA_SIZE, AREA_START) != AREA_SIZE)
        _exit(1);
    const char* entry = area;
    while (memcmp(entry, "_SM_", 4) != 0)
        if ((entry += ENTRY_STEP) == area + AREA_SIZE)
            _exit(1);
    uint16_t length;
    uint32_t address;
    memcpy(&length, entry + TABLE_LENGTH, sizeof length);
    memcpy(&address, entry + TABLE_ADDRESS, sizeof address);
    /* With the byte behind the table, as the report's program maps it. */
    uint32_t in_page = address % 4096;
    char* table = mmap(NULL, in_page + length + 1u, PROT_READ, MAP_SHARED, memory,
                       (off_t)(address - in_page));
    if (table == MAP_FAILED)
        _exit(1);
    memcpy(area, table + in_page, length);
    munmap(table, in_page + length + 1u);
    close(memory);
}

/* Calls `use` for each name in a directory, and closes that. */
static inline void list(int directory, void (*use)(int directory, const char* name)) {
#ifdef LIST_BY_READDIR
    DIR* stream = fdopendir(directory);
    const struct dirent* entry;
    if (stream == NULL)
        _exit(1);
    while ((entry = readdir(stream)) != NULL)
        if (entry->d_name[0] != '.')
            use(directory, entry->d_name);
    closedir(stream);
#else
    _Alignas(struct dirent64) char entries[8192];
    ssize_t size;
    while ((size = getdents64(directory, entries, sizeof entries)) > 0)
        for (const char* next = entries; next < entries + size;) {
            const struct dirent64* entry = (const struct dirent64*)next;
            next += entry->d_reclen;
            if (entry->d_name[0] != '.')
                use(directory, entry->d_name);
        }
    if (size < 0)
        _exit(1);
    close(directory);
#endif
}

static int open_directory(int parent, const char* name) {
    int directory = openat(parent, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        _exit(1);
    return directory;
}

/* Defined by the program: what it does with each bus, and with each function when its
 * configuration is read. */
static inline void use_bus(const char* name);
static inline void use_function(const char* name);

static void read_function(int directory, const char* name) {
    int function = openat(directory, name, O_RDONLY | O_CLOEXEC);
    if (function < 0 || read(function, configuration, sizeof configuration) < 0)
        _exit(1);
    close(function);
    use_function(name);
}

static void read_bus(int root, const char* name) {
    if (strcmp(name, "devices") == 0)
        return;
    use_bus(name);
    list(open_directory(root, name), read_function);
}

static void read_functions(void) {
    list(open_directory(AT_FDCWD, "/proc/bus/pci"), read_bus);
}
