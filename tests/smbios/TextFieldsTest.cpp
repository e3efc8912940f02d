// The setters that copy a text into a field of fixed length.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "smbios/srvinfo.h"

namespace {

struct TextField {
    const char* name;
    bool (SERVER_INFORMATION::*set)(const char*);
    char* (SERVER_INFORMATION::*get)() const;
    size_t length;  ///< of the longest text
};

void PrintTo(const TextField& field, std::ostream* stream) {
    *stream << field.name;
}

constexpr TextField kFields[] = {
    {"MachineBIOSName", &SERVER_INFORMATION::SetMachineBIOSName,
     &SERVER_INFORMATION::GetMachineBIOSName, 127},
    {"MachineBIOSBuildID", &SERVER_INFORMATION::SetMachineBIOSBuildID,
     &SERVER_INFORMATION::GetMachineBIOSBuildID, 31},
    {"MachineBIOSLanguage", &SERVER_INFORMATION::SetMachineBIOSLanguage,
     &SERVER_INFORMATION::GetMachineBIOSLanguage, 31},
    {"MachineBIOSVersion", &SERVER_INFORMATION::SetMachineBIOSVersion,
     &SERVER_INFORMATION::GetMachineBIOSVersion, 31},
    {"MachineBIOSDate", &SERVER_INFORMATION::SetMachineBIOSDate,
     &SERVER_INFORMATION::GetMachineBIOSDate, 31},
    {"Manufacturer", &SERVER_INFORMATION::SetManufacturer, &SERVER_INFORMATION::GetManufacturer,
     127},
    {"ProductName", &SERVER_INFORMATION::SetProductName, &SERVER_INFORMATION::GetProductName, 127},
    {"MachineType", &SERVER_INFORMATION::SetMachineType, &SERVER_INFORMATION::GetMachineType, 31},
    {"ModelNumber", &SERVER_INFORMATION::SetModelNumber, &SERVER_INFORMATION::GetModelNumber, 31},
    {"MachineSerialNumber", &SERVER_INFORMATION::SetMachineSerialNumber,
     &SERVER_INFORMATION::GetMachineSerialNumber, 127},
    {"ROMDiagnosticsBuild", &SERVER_INFORMATION::SetROMDiagnosticsBuild,
     &SERVER_INFORMATION::GetROMDiagnosticsBuild, 31},
    {"TESKBuild", &SERVER_INFORMATION::SetTESKBuild, &SERVER_INFORMATION::GetTESKBuild, 31},
    {"KORUBuild", &SERVER_INFORMATION::SetKORUBuild, &SERVER_INFORMATION::GetKORUBuild, 31},
};

class TextFieldTest : public testing::TestWithParam<TextField> {
  protected:
    bool Set(const std::string& text) { return (m_record.*GetParam().set)(text.c_str()); }
    std::string Get() const { return (m_record.*GetParam().get)(); }
    /// A text of ascending letters, so that a shifted copy shows.
    static std::string TextOf(size_t length) {
        std::string text;
        while (text.size() < length) {
            text += static_cast<char>('a' + text.size() % 26);
        }
        return text;
    }

    SERVER_INFORMATION m_record;
};

TEST_P(TextFieldTest, KeepsTheText) {
    EXPECT_TRUE(Set("Some Text 1.0"));
    EXPECT_EQ(Get(), "Some Text 1.0");
}

TEST_P(TextFieldTest, TakesTheEmptyText) {
    Set("before");
    EXPECT_TRUE(Set(""));
    EXPECT_EQ(Get(), "");
}

TEST_P(TextFieldTest, ShorterTextReplacesALongerOne) {
    Set("a longer text");
    Set("short");
    EXPECT_EQ(Get(), "short");
}

TEST_P(TextFieldTest, TextOfTheFullLengthFits) {
    const std::string text = TextOf(GetParam().length);
    EXPECT_TRUE(Set(text));
    EXPECT_EQ(Get(), text);
}

TEST_P(TextFieldTest, LongerTextIsTruncatedToTheLengthLessOne) {
    for (const size_t length : {GetParam().length + 1, size_t{300}, size_t{70000}}) {
        EXPECT_TRUE(Set(TextOf(length)));
        EXPECT_EQ(Get(), TextOf(GetParam().length)) << length;
    }
}

TEST_P(TextFieldTest, KeepsEightBitBytes) {
    Set("\x80\xE9\xFF\x01");
    EXPECT_EQ(Get(), "\x80\xE9\xFF\x01");
}

TEST_P(TextFieldTest, LeavesTheOtherFieldsAlone) {
    Set(TextOf(300));
    for (const TextField& field : kFields) {
        if (std::string(field.name) != GetParam().name) {
            EXPECT_STREQ((m_record.*field.get)(), "") << field.name;
        }
    }
    EXPECT_STREQ(m_record.GetBuses(), "");
}

INSTANTIATE_TEST_SUITE_P(Fields, TextFieldTest, testing::ValuesIn(kFields),
                         [](const auto& field) { return std::string(field.param.name); });

}  // namespace
