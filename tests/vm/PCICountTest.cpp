// The counts of PCI functions against lspci in the same guest.
#include <algorithm>
#include <functional>

#include "vm/Answers.h"

namespace {

using Criterion = std::function<bool(const vm::PciFunction&)>;

constexpr size_t kVendor = 0x00;
constexpr size_t kDevice = 0x02;
constexpr size_t kSubvendor = 0x2C;
constexpr size_t kSubdevice = 0x2E;

Criterion Has(size_t offset, unsigned value) {
    return [=](const vm::PciFunction& each) { return each.Word(offset) == value; };
}

class PCICount : public vm::OnGuest {
  protected:
    // The count is the exit status, of which the system keeps eight bits; nothing is printed.
    static void ExpectCount(const std::string& command, const Criterion& criterion,
                            unsigned added = 0) {
        const vm::PciFunctions functions = Lspci();
        const auto count =
            static_cast<unsigned>(std::count_if(functions.begin(), functions.end(), criterion));
        const vm::Answer answer = Ran(command);
        EXPECT_EQ(answer.status, static_cast<int>((count + added) % 256)) << command;
        EXPECT_EQ(answer.out, "") << command;
    }
};

TEST_P(PCICount, VendorAlone) {
    ExpectCount("vid-8086", Has(kVendor, 0x8086));
}

TEST_P(PCICount, AddedNumberIsDecimal) {
    ExpectCount("vid-0x1af4-add-10", Has(kVendor, 0x1AF4), 10);
}

TEST_P(PCICount, SumIsTakenModulo256) {
    ExpectCount("vid-8086-add-300", Has(kVendor, 0x8086), 300);
}

TEST_P(PCICount, StartsAtTheGivenBus) {
    ExpectCount("vid-8086-bn-1", [](const vm::PciFunction& each) {
        return each.Word(kVendor) == 0x8086 && each.bus >= 1;
    });
}

TEST_P(PCICount, StartsAtTheGivenDeviceOfTheGivenBus) {
    ExpectCount("vid-8086-bn-0-dn-6", [](const vm::PciFunction& each) {
        return each.Word(kVendor) == 0x8086 && (each.bus > 0 || each.device >= 6);
    });
}

TEST_P(PCICount, DeviceStartWithoutBusStartHasNoEffect) {
    ExpectCount("vid-8086-dn-6", Has(kVendor, 0x8086));
}

TEST_P(PCICount, StartBusMayBeHexadecimal) {
    ExpectCount("vid-1b36-bn-0x81", [](const vm::PciFunction& each) {
        return each.Word(kVendor) == 0x1B36 && each.bus >= 0x81;
    });
}

TEST_P(PCICount, StartBusWithLeadingZeroIsOctal) {
    ExpectCount("vid-1b36-bn-0201", [](const vm::PciFunction& each) {
        return each.Word(kVendor) == 0x1B36 && each.bus >= 0x81;
    });
}

TEST_P(PCICount, StartBusIsOtherwiseDecimal) {
    ExpectCount("vid-8086-bn-129", [](const vm::PciFunction& each) {
        return each.Word(kVendor) == 0x8086 && each.bus >= 0x81;
    });
}

TEST_P(PCICount, EveryGivenIdMustMatch) {
    ExpectCount("vid-8086-did-100e", [](const vm::PciFunction& each) {
        return each.Word(kVendor) == 0x8086 && each.Word(kDevice) == 0x100E;
    });
}

TEST_P(PCICount, DeviceAlone) {
    ExpectCount("did-1", Has(kDevice, 0x0001));
}

TEST_P(PCICount, SubvendorAlone) {
    ExpectCount("svid-1af4", Has(kSubvendor, 0x1AF4));
}

TEST_P(PCICount, SubdeviceAlone) {
    ExpectCount("sdid-1100", Has(kSubdevice, 0x1100));
}

TEST_P(PCICount, SubvendorAndSubdevice) {
    ExpectCount("svid-8086-sdid-40", [](const vm::PciFunction& each) {
        return each.Word(kSubvendor) == 0x8086 && each.Word(kSubdevice) == 0x0040;
    });
}

TEST_P(PCICount, SubvendorZeroIsACriterionLikeOthers) {
    ExpectCount("svid-0", Has(kSubvendor, 0));
}

TEST_P(PCICount, VendorFfffMatchesNoFunction) {
    ExpectCount("vid-ffff", Has(kVendor, 0xFFFF));
}

TEST_P(PCICount, CriterionAboveSixteenBitsNeverMatches) {
    EXPECT_EQ(Ran("vid-18086").status, 0);
}

TEST_P(PCICount, OrdinaryUserGetsTheSameCount) {
    EXPECT_EQ(Ran("nobody-vid-8086").status, Ran("vid-8086").status);
    EXPECT_EQ(Ran("nobody-vid-8086").out, "");
}

INSTANTIATE_TEST_SUITE_P(Guest, PCICount, vm::GuestsThatAnswerAlone(), vm::GuestName);

// The same in numbers, for the guest whose PCI tree is the largest.
class CountsInTheLargeTree : public PCICount {};

TEST_P(CountsInTheLargeTree, AreAsCountedByHand) {
    EXPECT_EQ(Ran("vid-8086").status, 11);
    EXPECT_EQ(Ran("vid-0x1af4-add-10").status, 12);
    EXPECT_EQ(Ran("vid-8086-add-300").status, 55);
    EXPECT_EQ(Ran("vid-8086-bn-1").status, 4);
    EXPECT_EQ(Ran("vid-8086-bn-0-dn-6").status, 6);
    EXPECT_EQ(Ran("vid-8086-dn-6").status, 11);
    EXPECT_EQ(Ran("vid-1b36-bn-0x81").status, 1);
    EXPECT_EQ(Ran("vid-1b36-bn-0201").status, 1);
    EXPECT_EQ(Ran("vid-8086-bn-129").status, 3);
    EXPECT_EQ(Ran("vid-8086-did-100e").status, 1);
    EXPECT_EQ(Ran("did-1").status, 4);
    EXPECT_EQ(Ran("svid-8086-sdid-40").status, 1);
}

TEST_P(CountsInTheLargeTree, StartDeviceBehindTheLastOfItsBusStartsAtTheNextBus) {
    EXPECT_EQ(Ran("vid-8086-bn-1-dn-4").status, 3);
}

INSTANTIATE_TEST_SUITE_P(Guest, CountsInTheLargeTree, testing::Values("plain"), vm::GuestName);

}  // namespace
