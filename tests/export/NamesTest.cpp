// The names of PCI functions, enclosures and processors.
#include <gtest/gtest.h>

#include "export/DmiNames.h"
#include "export/PciNames.h"
#include "export/Reports.h"

namespace {

using report::PciFunction;
using report::PciNames;

constexpr char kList[] =
    "# a comment\n"
    "\n"
    "0e11  First Vendor\n"
    "\t0001  A bridge\n"
    "\t\t8086 0002  A board\n"
    "\t\t8086 0003  Another board\n"
    "\t0002  Another bridge\n"
    "8086  Second \xE9\n"
    "C 06  Bridge\n"
    "\t04  PCI bridge\n"
    "\t\t01  Subtractive decode\n"
    "C 0c  Serial bus controller\n";

PciNames Names(const std::string& list = kList) {
    const reports::File file(list, "pci.ids");
    return PciNames(file.path());
}

PciFunction Board(uint32_t subVendor, uint32_t subDevice) {
    PciFunction function;
    function.vendorId = 0x0E11;
    function.deviceId = 0x0001;
    function.subVendorId = subVendor;
    function.subDeviceId = subDevice;
    return function;
}

TEST(PciNames, VendorsAndDevicesHaveNames) {
    const PciNames names = Names();
    EXPECT_EQ(names.Vendor(0x0E11), "First Vendor");
    EXPECT_EQ(names.Device(0x0E11, 0x0001), "A bridge");
    EXPECT_EQ(names.Device(0x0E11, 0x0002), "Another bridge");
}

TEST(PciNames, DevicesBelongToTheirVendor) {
    EXPECT_EQ(Names().Device(0x8086, 0x0001), "");
    EXPECT_EQ(Names().Device(0x0006, 0x0004), "");
}

TEST(PciNames, SubsystemsBelongToTheirDevice) {
    const PciNames names = Names();
    EXPECT_EQ(names.Subsystem(Board(0x8086, 0x0003)), "Another board");
    EXPECT_EQ(names.Subsystem(Board(0x8086, 0x0004)), "");
    PciFunction other = Board(0x8086, 0x0003);
    other.deviceId = 0x0002;
    EXPECT_EQ(names.Subsystem(other), "");
}

TEST(PciNames, ClassesHaveNames) {
    const PciNames names = Names();
    EXPECT_EQ(names.Class(0x060401), "PCI bridge");
    EXPECT_EQ(names.BaseClass(0x060401), "Bridge");
}

TEST(PciNames, SubClassWithoutANameHasThatOfItsBaseClass) {
    EXPECT_EQ(Names().Class(0x060900), "Bridge");
    EXPECT_EQ(Names().Class(0x0C0300), "Serial bus controller");
    EXPECT_EQ(Names().Class(0x0D0000), "");
}

TEST(PciNames, NamesThatAreNoUtf8AreTakenAsLatin1) {
    EXPECT_EQ(Names().Vendor(0x8086), "Second \xC3\xA9");
}

TEST(PciNames, ListThatIsMissingOrNoneHasNoNames) {
    EXPECT_TRUE(PciNames("/nowhere/pci.ids").IsEmpty());
    EXPECT_TRUE(PciNames("/tmp").IsEmpty());
    const PciNames names = Names("\t0001  orphan\n\t\t1\nhello world\nC\nC \n8086\nzz  z\n");
    EXPECT_TRUE(names.IsEmpty());
    EXPECT_EQ(names.Class(0), "");
}

TEST(PciNames, SystemsOwnListIsFound) {
    EXPECT_EQ(PciNames().Class(0x020000), "Ethernet controller")
        << "please install the Debian package hwdata";
}

TEST(DmiNames, EnclosuresAreThoseOfTheStandard) {
    EXPECT_STREQ(report::EnclosureName(0x01), "Other");
    EXPECT_STREQ(report::EnclosureName(0x03), "Desktop");
    EXPECT_STREQ(report::EnclosureName(0x10), "Lunch box");
    EXPECT_STREQ(report::EnclosureName(0x11), "Main server chassis");
    EXPECT_STREQ(report::EnclosureName(0x17), "Rack-mount chassis");
    EXPECT_STREQ(report::EnclosureName(0x1C), "Blade");
    EXPECT_STREQ(report::EnclosureName(0x1D), "Blade enclosure");
    EXPECT_STREQ(report::EnclosureName(0x24), "Stick PC");
    EXPECT_EQ(report::EnclosureName(0x00), nullptr);
    EXPECT_EQ(report::EnclosureName(0x25), nullptr);
    EXPECT_EQ(report::EnclosureName(0xFFFFFFFF), nullptr);
}

TEST(DmiNames, FamiliesAreThoseOfTheStandard) {
    EXPECT_STREQ(report::ProcessorFamilyName(0x01), "Other");
    EXPECT_STREQ(report::ProcessorFamilyName(0xB3), "Xeon");
    EXPECT_STREQ(report::ProcessorFamilyName(0x6B), "Zen");
    EXPECT_STREQ(report::ProcessorFamilyName(0xCF), "Core i9");
    EXPECT_EQ(report::ProcessorFamilyName(0x00), nullptr);
    EXPECT_EQ(report::ProcessorFamilyName(0xB8), nullptr);
    EXPECT_EQ(report::ProcessorFamilyName(-1), nullptr);
}

}  // namespace
