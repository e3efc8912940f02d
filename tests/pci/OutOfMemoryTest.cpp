// What a scan does when memory is gone: it ends the process with status 2, and says nothing.
#include "pci/PciTree.h"
#include "support/Allocation.h"

namespace {

using support::Ending;
using support::EndingOnMachine;

void Scan() {
    PCIDeviceList_Proc list;
    list.scanPCIBusAndCreateList();
    support::AllowAllocations();
    ADD_FAILURE() << "the scan returned";
}

void ExpectSilentStatus2(const Ending& ending) {
    EXPECT_EQ(ending.output, "");
    EXPECT_EQ(ending.status, 2);
}

TEST(ScanOutOfMemory, FunctionThatFindsNoRoomEndsWith2) {
    const PciTree tree({"00/00.0", "00/01.0"});
    ExpectSilentStatus2(EndingOnMachine(tree.Machine(), [] {
        support::FailAllocationsOf({sizeof(PCIDeviceItem)});
        Scan();
    }));
}

TEST(ScanOutOfMemory, ConfigurationThatFindsNoRoomEndsWith2) {
    const PciTree tree;
    tree.Add("00/00.0", machine::Bytes(1 << 20));
    ExpectSilentStatus2(EndingOnMachine(tree.Machine(), [] {
        support::FailAllocationsOf({1 << 20});
        Scan();
    }));
}

}  // namespace
