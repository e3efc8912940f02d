// A refused system call, as a filter of five instructions.
#include "support/RefusedCall.h"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>

#include <cstddef>
#include <iterator>

#include "machine/Overlay.h"

namespace support {

namespace {

sock_filter Load(size_t offset) {
    return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<uint32_t>(offset));
}

/// Goes on when equal; else passes over `otherwise` instructions.
sock_filter ContinueIfEqual(uint32_t value, uint8_t otherwise) {
    return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 0, otherwise);
}

std::string Install(const RefusedCall& call) {
    // Little-endian: the low half of a 64-bit argument comes first.
    const size_t argument = call.argument < 0 ? 0 : static_cast<size_t>(call.argument);
    sock_filter filter[] = {
        Load(offsetof(seccomp_data, nr)),
        ContinueIfEqual(static_cast<uint32_t>(call.number), 4),
        Load(offsetof(seccomp_data, args) + argument * sizeof(uint64_t)),
        BPF_STMT(BPF_ALU | BPF_AND | BPF_K, call.mask),
        ContinueIfEqual(call.value, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<uint32_t>(call.error)),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program = {static_cast<unsigned short>(std::size(filter)), filter};
    const bool installed = prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
                           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
    return installed ? "" : "cannot refuse a system call";
}

}  // namespace

Result RunOnMachineRefusing(const std::filesystem::path& folder, const RefusedCall& call,
                            const Arguments& command) {
    return Run(command, [&folder, &call] {
        const std::string failure = machine::EnterMachine(folder);
        return failure.empty() ? Install(call) : failure;
    });
}

}  // namespace support
