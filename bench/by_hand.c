/* The lines of a report's PCI functions by little work, though not the least: an item prepared
 * whole, copied and written over would take less, and nobody would want to read it.
 *
 *   by_hand text     writes them as they are found: keeps nothing, orders nothing
 *   by_hand report   keeps records like those of the list, three strings each, and orders them
 *
 * Looks at nothing that could be wrong, frees nothing, and knows the layout without prefixes alone.
 * Requires: fewer than 1,000 functions.
 */
#include <stddef.h>

#include "floor.h"

/* --- Text ------------------------------------------------------------------------------------- */

static char report[1 << 20]; /* pages that are not written take no memory */
static char* end_of_report = report;

/* The two digits of each byte. */
#define ROW(high)                                                                                  \
    high "0" high "1" high "2" high "3" high "4" high "5" high "6" high "7" high "8" high "9" high \
         "A" high "B" high "C" high "D" high "E" high "F"
static const char hexadecimals[] = ROW("0") ROW("1") ROW("2") ROW("3") ROW("4") ROW("5") ROW("6")
    ROW("7") ROW("8") ROW("9") ROW("A") ROW("B") ROW("C") ROW("D") ROW("E") ROW("F");

/* A text that is copied whole, whatever its length. */
struct short_text {
    char characters[8];
    size_t length;
};

static struct short_text decimal(unsigned value) {
    struct short_text text = {{0}, 0};
    if (value >= 100)
        text.characters[text.length++] = (char)('0' + value / 100);
    if (value >= 10)
        text.characters[text.length++] = (char)('0' + value / 10 % 10);
    text.characters[text.length++] = (char)('0' + value % 10);
    return text;
}

/* These use their caller's `end`, and what is known of the item's index: `index` is its text and
 * " = ", of which `digits` and three characters count. */
#define PUT(text) (memcpy(end, text, sizeof text - 1), end += sizeof text - 1)
#define PUT_SHORT(text) (memcpy(end, (text).characters, 8), end += (text).length)
#define PUT_BYTE(byte) (memcpy(end, hexadecimals + (size_t)2 * (byte), 2), end += 2)
#define PUT_INDEX() (memcpy(end, &index, sizeof index), end += digits + 3)

/* The lines that are always as long as the last ones whose index was as long, from the registers of
 * the configuration's start: PCI Local Bus standard, 6.1. */
static inline __attribute__((always_inline)) char* put_registers(char* end,
                                                                 const unsigned char* registers,
                                                                 uint64_t index, size_t digits) {
    PUT("\nClass_Code."), PUT_INDEX();
    PUT_BYTE(registers[0x0B]), PUT_BYTE(registers[0x0A]), PUT_BYTE(registers[0x09]);
    PUT("\nRevision."), PUT_INDEX(), PUT_BYTE(registers[0x08]);
    PUT("\nHeader_Type."), PUT_INDEX(), PUT_BYTE(registers[0x0E]);
    PUT("\nVendor_ID."), PUT_INDEX(), PUT_BYTE(registers[0x01]), PUT_BYTE(registers[0x00]);
    PUT("\nDevice_ID."), PUT_INDEX(), PUT_BYTE(registers[0x03]), PUT_BYTE(registers[0x02]);
    PUT("\nSubvendor_ID."), PUT_INDEX(), PUT_BYTE(registers[0x2D]), PUT_BYTE(registers[0x2C]);
    PUT("\nSubdevice_ID."), PUT_INDEX(), PUT_BYTE(registers[0x2F]), PUT_BYTE(registers[0x2E]);
    PUT("\n");
    return end;
}

static unsigned functions; /* put so far */

static inline void put_function(const struct short_text* bus, unsigned device, char function,
                                const unsigned char* registers) {
    static char text[8] = "0 = "; /* of the index */
    static size_t digits = 1;
    uint64_t index; /* in a register */
    memcpy(&index, text, sizeof index);
    char* end = end_of_report;
    PUT("Bus_Number."), PUT_INDEX(), PUT_SHORT(*bus);
    PUT("\nDevice_Number."), PUT_INDEX();
    if (device >= 10)
        *end++ = (char)('0' + device / 10);
    *end++ = (char)('0' + device % 10);
    PUT("\nFunction_Number."), PUT_INDEX();
    *end++ = function;
    switch (digits) {
        case 1:
            end_of_report = put_registers(end, registers, index, 1);
            break;
        case 2:
            end_of_report = put_registers(end, registers, index, 2);
            break;
        default:
            end_of_report = put_registers(end, registers, index, 3);
    }
    ++functions;
    if (++text[digits - 1] > '9') {
        struct short_text next = decimal(functions);
        digits = next.length;
        memcpy(text, next.characters, sizeof text);
        memcpy(text + digits, " = ", 3);
    }
}

/* --- Records ---------------------------------------------------------------------------------- */

/* A string of the list's records: it owns a byte even when it is empty. Five words follow, as in
 * CString. */
struct string {
    char* text;
    void* others[5];
};

struct record {
    uint16_t bus, device;
    char function; /* as the name has it */
    unsigned char registers[0x30];
    struct string strings[3];
    struct record *next, *previous;
};

static struct record* first;
static struct record** link_to_next = &first;

/* Memory that is never given back. */
static inline void* allocate(size_t size) {
    static char memory[1 << 20];
    static char* next = memory;
    char* block = next;
    next += (size + 15) / 16 * 16;
    return block;
}

static unsigned bus_number;

static inline void keep_function(const char* name) {
    struct record* record = allocate(sizeof *record);
    record->bus = (uint16_t)bus_number;
    record->device = (uint16_t)two_digits(name);
    record->function = name[3];
    memcpy(record->registers, configuration, sizeof record->registers);
    for (int i = 0; i < 3; ++i) {
        record->strings[i].text = allocate(1);
        *record->strings[i].text = '\0';
        memset(record->strings[i].others, 0, sizeof record->strings[i].others);
    }
    *link_to_next = record;
    link_to_next = &record->next;
}

struct queue {
    struct record *first, *last;
};

/* Sorts by a number below 256, and keeps the order of equal ones. */
static inline struct record* sort(struct record* list, unsigned (*number)(const struct record*)) {
    struct queue queues[256] = {{0}};
    for (struct record* record = list; record != NULL; record = record->next) {
        struct queue* queue = &queues[number(record)];
        if (queue->first == NULL)
            queue->first = record;
        else
            queue->last->next = record;
        record->previous = queue->last;
        queue->last = record;
    }
    struct record* next = NULL;
    for (struct queue* queue = queues + 256; queue-- > queues;)
        if (queue->first != NULL) {
            queue->last->next = next;
            if (next != NULL)
                next->previous = queue->last;
            next = queue->first;
        }
    return next;
}

static unsigned place_on_bus(const struct record* record) {
    return record->device * 8u + (unsigned)(record->function - '0');
}

static unsigned bus_of(const struct record* record) {
    return record->bus;
}

static void put_records(void) {
    for (struct record* record = sort(sort(first, place_on_bus), bus_of); record != NULL;
         record = record->next) {
        struct short_text bus = decimal(record->bus);
        put_function(&bus, record->device, record->function, record->registers);
    }
}

/* --- The program ------------------------------------------------------------------------------ */

static int keeps_records;
static struct short_text bus_text;

static void use_bus(const char* name) {
    bus_number = two_digits(name);
    bus_text = decimal(bus_number);
}

static void use_function(const char* name) {
    if (keeps_records)
        keep_function(name);
    else
        put_function(&bus_text, two_digits(name), name[3], configuration);
}

int main(int argc, char** argv) {
    keeps_records = argc > 1 && strcmp(argv[1], "report") == 0;
    read_table();
    read_functions();
    if (keeps_records)
        put_records();
    ptrdiff_t bytes = end_of_report - report;
    return write(STDOUT_FILENO, report, (size_t)bytes) != bytes;
}
