// From the sources to the folder, step by step; the first step that fails is the last.
#include "machine/Capture.h"

#include <sys/stat.h>

#include "machine/About.h"
#include "machine/Files.h"
#include "machine/HeldSignals.h"
#include "machine/MachineMemory.h"
#include "machine/NewFolder.h"
#include "machine/PciTree.h"
#include "machine/Sanitize.h"

namespace machine {

namespace {

using Messages = std::vector<std::string>;

void Append(Messages& messages, const Messages& more) {
    messages.insert(messages.end(), more.begin(), more.end());
}

Outcome<MachineMemory> ReadMemory(const CaptureRequest& request, Messages& messages) {
    FoundTables found = FindFirmwareTables(request.firmware);
    Append(messages, found.refusals);
    if (!found.tables) {
        return Failure{kNoSource};
    }
    if (request.sanitized) {
        Sanitize(*found.tables);
    }
    Outcome<MachineMemory> memory = MakeMachineMemory(*found.tables);
    if (memory) {
        messages.push_back("the table comes from " + memory->source + ": " +
                           Summary(memory->entry));
        Append(messages, memory->losses);
    }
    return memory;
}

std::string WriteMemory(const MachineMemory& memory, int folder) {
    FileDescriptor file = CreateFile(folder, "mem");
    const bool written = file.IsOpen() && memory.image.WriteTo(file.Get()) && file.Close();
    return written ? "" : WithReason("cannot write mem");
}

Outcome<PciTreeSummary> WritePciTree(const CaptureRequest& request, int folder,
                                     Messages& messages) {
    if (mkdirat(folder, "pci", 0755) != 0) {
        return Failure{WithReason("cannot create pci")};
    }
    const FileDescriptor target = OpenDirectory(folder, "pci");
    const ConfigurationFilter filter =
        request.sanitized ? SanitizeConfiguration : [](Bytes&) { /* as it is */ };
    Outcome<PciTreeSummary> summary = CopyPciTree(request.pciTree, target.Get(), filter);
    if (summary) {
        Append(messages, summary->losses);
    }
    return summary;
}

std::string Fill(const CaptureRequest& request, const MachineMemory& memory, int folder,
                 Messages& messages) {
    if (std::string failure = WriteMemory(memory, folder); !failure.empty()) {
        return failure;
    }
    const Outcome<PciTreeSummary> pci = WritePciTree(request, folder, messages);
    if (!pci) {
        return pci.Reason();
    }
    const std::string about = AboutText(memory, *pci, request.sanitized);
    if (!CreateFileWith(folder, "about", Bytes(about.begin(), about.end()))) {
        return WithReason("cannot write about");
    }
    return HeldSignals::AskToEnd() ? "interrupted" : "";
}

}  // namespace

CaptureEnding Capture(const CaptureRequest& request) {
    const HeldSignals held;
    CaptureEnding ending;
    Outcome<NewFolder> folder = NewFolder::Begin(request.folder);
    if (!folder) {
        ending.failure = folder.Reason();
        return ending;
    }
    const Outcome<MachineMemory> memory = ReadMemory(request, ending.messages);
    ending.failure =
        memory ? Fill(request, *memory, folder->Get(), ending.messages) : memory.Reason();
    if (ending.failure.empty()) {
        ending.failure = folder->Finish();
    }
    return ending;
}

}  // namespace machine
