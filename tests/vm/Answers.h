// What the guests' commands answered, as the boot left it in files.
// Never boots a guest itself: without the files every question fails.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "vm/Dmidecode.h"
#include "vm/Lspci.h"
#include "vm/Report.h"

namespace vm {

struct Answer {
    std::string out;
    std::string err;
    int status;
};

/// The answer to `command`, a name of the file guest-commands, on `guest`.
/// Throws std::runtime_error when it was not captured.
Answer AnswerOf(const std::string& guest, const std::string& command);

/// Whether the program alone finds the guest's table; through --this it does on every guest.
bool AnswersAlone(const std::string& guest);

/// A test that holds on a guest, its parameter; to be instantiated with GuestName().
class OnGuest : public testing::TestWithParam<std::string> {
  protected:
    /// What the program under test answered: alone or, where it finds no table, through --this.
    /// Whatever it says, it says on standard output.
    static Answer Ran(const std::string& command);
    /// Standard output of another program, which must have succeeded.
    static std::string PeerSays(const std::string& command);
    /// As above without the newline at the end.
    static std::string PeerSaysInOneLine(const std::string& command);

    static Report TheReport() { return Report(Ran("report-ini").out); }
    /// The structure table, which dmidecode read or the kernel keeps.
    static std::string Table() {
        return PeerSays(AnswersAlone(GetParam()) ? "table" : "table-of-kernel");
    }
    static SmbiosStructures Dmidecode() { return ReadDmidecode(PeerSays("dmidecode")); }
    static PciFunctions Lspci() { return ReadLspci(PeerSays("lspci"), PeerSays("lspci-bytes")); }
};

/// The guests on which the program answers alone.
inline auto GuestsThatAnswerAlone() {
    return testing::Values("plain", "dressed", "assembled");
}

/// Those with a 64-bit entry point, a locked kernel, or UEFI firmware are answered through --this.
inline auto EveryGuest() {
    return testing::Values("plain", "dressed", "assembled", "locked", "anchor3", "uefi", "uefi3",
                           "plainuefi");
}

/// The guests on which the program alone finds no table.
inline auto GuestsThatDoNotAnswerAlone() {
    return testing::Values("locked", "anchor3", "uefi", "uefi3", "plainuefi");
}

/// The guests whose firmware was told what to say of a server of the maker's family.
inline auto EveryDressedGuest() {
    return testing::Values("dressed", "locked", "anchor3", "uefi", "uefi3");
}

inline std::string GuestName(const testing::TestParamInfo<std::string>& guest) {
    return guest.param;
}

}  // namespace vm
