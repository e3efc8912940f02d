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

/// A test that holds on a guest, its parameter; to be instantiated with GuestName().
class OnGuest : public testing::TestWithParam<std::string> {
  protected:
    /// What the program under test answered. Whatever it says, it says on standard output.
    static Answer Ran(const std::string& command);
    /// Standard output of another program, which must have succeeded.
    static std::string PeerSays(const std::string& command);
    /// As above without the newline at the end.
    static std::string PeerSaysInOneLine(const std::string& command);

    static Report TheReport() { return Report(Ran("report-ini").out); }
    static SmbiosStructures Dmidecode() { return ReadDmidecode(PeerSays("dmidecode")); }
    static PciFunctions Lspci() { return ReadLspci(PeerSays("lspci"), PeerSays("lspci-bytes")); }
};

inline auto EveryGuest() {
    return testing::Values("plain", "dressed", "assembled");
}

inline std::string GuestName(const testing::TestParamInfo<std::string>& guest) {
    return guest.param;
}

}  // namespace vm
