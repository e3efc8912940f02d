// Type 4: processors, counted as slots and as active ones.
#include <gtest/gtest.h>

#include "smbios/PaddedBytes.h"

namespace {

using machine::Bytes;
using machine::Structure;

constexpr Decoder kDecoder = &SERVER_INFORMATION::FindTable4;

Structure ProcessorOf(uint8_t status, uint8_t family = 0xB3, uint16_t speed = 2933) {
    return Structure(4, 0x23)
        .String(0x04, "CPU 1")
        .Byte(0x06, family)
        .String(0x07, "Northlight")
        .String(0x10, "N1000")
        .Word(0x14, 4000)
        .Word(0x16, speed)
        .Byte(0x18, status);
}

class Processor : public testing::Test {
  protected:
    std::ptrdiff_t Decode(const Structure& structure) {
        return ::Decode(m_record, kDecoder, structure);
    }

    SERVER_INFORMATION m_record;
};

// --- Counting -----------------------------------------------------------------------------------

TEST_F(Processor, StatusPopulatedButUnknownCountsAsActive) {
    Decode(ProcessorOf(0x40));
    EXPECT_EQ(m_record.GetActiveProcessors(), 1);
    EXPECT_EQ(m_record.GetProcessorSlots(), 1);
}

TEST_F(Processor, StatusZeroCountsAsASlotAlone) {
    Decode(ProcessorOf(0x00));
    EXPECT_EQ(m_record.GetActiveProcessors(), 0);
    EXPECT_EQ(m_record.GetProcessorSlots(), 1);
}

TEST_F(Processor, EnabledOrPopulatedIsEnough) {
    for (const uint8_t status : Bytes{0x01, 0x40, 0x41, 0x03, 0x05, 0x07, 0x44, 0xFF}) {
        SERVER_INFORMATION record;
        ::Decode(record, kDecoder, ProcessorOf(status));
        EXPECT_EQ(record.GetActiveProcessors(), 1) << int{status};
    }
}

TEST_F(Processor, OtherStatusBitsDoNotCount) {
    for (const uint8_t status : Bytes{0x02, 0x04, 0x06, 0x08, 0x10, 0x20, 0x80, 0xBE}) {
        SERVER_INFORMATION record;
        ::Decode(record, kDecoder, ProcessorOf(status));
        EXPECT_EQ(record.GetActiveProcessors(), 0) << int{status};
        EXPECT_EQ(record.GetProcessorSlots(), 1) << int{status};
    }
}

// --- Family and speed ---------------------------------------------------------------------------

TEST_F(Processor, FamilyAndCurrentSpeedAreKept) {
    Decode(ProcessorOf(0x41, 0xB3, 2933));
    EXPECT_EQ(m_record.GetProcessorFamily(0), 0xB3);
    EXPECT_EQ(m_record.GetProcessorSpeed(0), 2933);
}

TEST_F(Processor, FamilyIsAByteAndSpeedHasSixteenBits) {
    Decode(ProcessorOf(0x41, 0xFE, 0xFFFF));
    EXPECT_EQ(m_record.GetProcessorFamily(0), 254);
    EXPECT_EQ(m_record.GetProcessorSpeed(0), 65535);
}

TEST_F(Processor, InactiveOnesLeaveNoGap) {
    Decode(ProcessorOf(0x41, 0x11, 1000));
    Decode(ProcessorOf(0x00, 0x22, 2000));
    Decode(ProcessorOf(0x40, 0x33, 3000));
    EXPECT_EQ(m_record.GetProcessorSlots(), 3);
    ASSERT_EQ(m_record.GetActiveProcessors(), 2);
    EXPECT_EQ(m_record.GetProcessorFamily(0), 0x11);
    EXPECT_EQ(m_record.GetProcessorSpeed(0), 1000);
    EXPECT_EQ(m_record.GetProcessorFamily(1), 0x33);
    EXPECT_EQ(m_record.GetProcessorSpeed(1), 3000);
}

TEST_F(Processor, IndexIsBoundedByTheActiveOnesNotByTheSlots) {
    Decode(ProcessorOf(0x41));
    Decode(ProcessorOf(0x00));
    EXPECT_EQ(m_record.GetProcessorFamily(1), 0);
    EXPECT_EQ(m_record.GetProcessorSpeed(1), 0);
}

TEST_F(Processor, IndexOutsideTheCountGivesZero) {
    Decode(ProcessorOf(0x41));
    for (const int index : {-1, 1, 256, 2147483647, -2147483647 - 1}) {
        EXPECT_EQ(m_record.GetProcessorFamily(index), 0) << index;
        EXPECT_EQ(m_record.GetProcessorSpeed(index), 0) << index;
    }
}

TEST_F(Processor, MoreThanTheNamedMaximumAreKept) {
    for (int i = 0; i < 1000; ++i) {
        Decode(ProcessorOf(0x41, static_cast<uint8_t>(i), static_cast<uint16_t>(2000 + i)));
    }
    EXPECT_EQ(m_record.GetProcessorSlots(), 1000);
    ASSERT_EQ(m_record.GetActiveProcessors(), 1000);
    for (const int i : {0, 255, 256, 257, 999}) {
        EXPECT_EQ(m_record.GetProcessorFamily(i), i % 256) << i;
        EXPECT_EQ(m_record.GetProcessorSpeed(i), 2000 + i) << i;
    }
}

TEST_F(Processor, CountersWrapAsSixteenBits) {
    const Bytes bytes = ProcessorOf(0x41).Encode(0);
    PaddedBytes padded(bytes);
    for (int i = 0; i < 32768; ++i) {
        m_record.FindTable4(padded.At(0));
    }
    EXPECT_EQ(m_record.GetActiveProcessors(), -32768);
    EXPECT_EQ(m_record.GetProcessorSlots(), -32768);
    EXPECT_EQ(m_record.GetProcessorFamily(0), 0);
    for (int i = 0; i < 32769; ++i) {
        m_record.FindTable4(padded.At(0));
    }
    EXPECT_EQ(m_record.GetActiveProcessors(), 1);
    EXPECT_EQ(m_record.GetProcessorFamily(0), 0xB3);
    EXPECT_EQ(m_record.GetProcessorFamily(1), 0);
}

// --- The next structure -------------------------------------------------------------------------

TEST_F(Processor, NextStructureFollowsTheStringSet) {
    EXPECT_EQ(Decode(ProcessorOf(0x41)), SizeOf(ProcessorOf(0x41)));
    const Structure structure = ProcessorOf(0x41).Text("serial").Text("tag");
    EXPECT_EQ(Decode(structure), SizeOf(structure));
}

TEST_F(Processor, EmptySetWithoutNumbersEndsOneByteEarly) {
    EXPECT_EQ(Decode(Structure(4, 0x23)), 0x23 + 1);
}

TEST_F(Processor, StringIsSkippedForEachNumberEvenWhenTheSetIsEmpty) {
    EXPECT_EQ(Decode(Structure(4, 0x23).Byte(0x04, 1)), 0x23 + 1 + 1);
    EXPECT_EQ(Decode(Structure(4, 0x23).Byte(0x07, 1)), 0x23 + 1 + 1);
    EXPECT_EQ(Decode(Structure(4, 0x23).Byte(0x10, 1)), 0x23 + 1 + 1);
    EXPECT_EQ(Decode(Structure(4, 0x23).Byte(0x04, 1).Byte(0x07, 2).Byte(0x10, 3)), 0x23 + 3 + 1);
}

TEST_F(Processor, StringIsSkippedForAZeroFieldAsLongAsItIsNotEmpty) {
    // Two strings go to fields that name none; the third field then takes the closing NUL.
    const Structure structure = Structure(4, 0x23).Text("a").Text("b").Byte(0x10, 1);
    EXPECT_EQ(Decode(structure), SizeOf(structure) + 1);
}

TEST_F(Processor, OtherFieldsTakeNoString) {
    const Structure structure =
        Structure(4, 0x23).Byte(0x05, 1).Byte(0x20, 1).Byte(0x21, 1).Byte(0x22, 1).Text("a");
    EXPECT_EQ(Decode(structure), SizeOf(structure));
}

TEST_F(Processor, LengthByteIsSigned) {
    // -16 leads to the strings before the structure.
    Bytes bytes = {'a', 'b', 0, 'c', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 4, 0xF0};
    bytes.resize(64);
    EXPECT_EQ(::Decode(m_record, kDecoder, bytes, 16), 6);
    EXPECT_EQ(m_record.GetProcessorSlots(), 1);
}

TEST_F(Processor, LengthOf128LeadsFarthestBack) {
    EXPECT_EQ(::Decode(m_record, kDecoder, Bytes{4, 0x80}), -128 + 1);
}

}  // namespace
