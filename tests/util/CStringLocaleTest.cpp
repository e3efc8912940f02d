// The library keeps to the "C" locale, whatever locale the program around it has chosen.
// Compiles a locale of its own, so that it does not depend on those that are installed.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cctype>
#include <clocale>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <string>

#include "support/TemporaryFolder.h"
#include "util/CLParams.h"
#include "util/CString.h"

namespace {

void WriteCharacterMap(const std::string& path) {
    std::ofstream map(path);
    map << "<code_set_name> SINGLE-BYTES\n<escape_char> /\nCHARMAP\n"
        << std::hex << std::setfill('0');
    for (int byte = 0; byte < 256; ++byte) {
        map << "<U" << std::uppercase << std::setw(4) << byte << "> /x" << std::nouppercase
            << std::setw(2) << byte << " byte\n";
    }
    map << "END CHARMAP\n";
}

/// E4 is the small letter of C4, and the decimal point is a comma.
void WriteLocale(const std::string& path) {
    std::ofstream(path) << "escape_char /\n"
                           "LC_CTYPE\n"
                           "upper <U0041>..<U005A>;<U00C4>\n"
                           "lower <U0061>..<U007A>;<U00E4>\n"
                           "toupper (<U0061>,<U0041>);(<U00E4>,<U00C4>)\n"
                           "tolower (<U0041>,<U0061>);(<U00C4>,<U00E4>)\n"
                           "END LC_CTYPE\n"
                           "LC_NUMERIC\n"
                           "decimal_point \"<U002C>\"\n"
                           "thousands_sep \"<U002E>\"\n"
                           "grouping 3\n"
                           "END LC_NUMERIC\n";
}

/// Each test runs in a program that has chosen a locale of other letters and numbers.
class OtherLocale : public testing::Test {
  protected:
    void SetUp() override {
        const std::string folder = m_folder.path().string();
        WriteCharacterMap(folder + "/map");
        WriteLocale(folder + "/source");
        const std::string command =
            "cd '" + folder + "' && localedef -c -i source -f map ./other >localedef.log 2>&1";
        const int status = std::system(command.c_str());
        // Its 1 stands for warnings: the locale leaves categories out.
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) <= 1)
            << "cannot compile a locale: is libc-bin with its localedef installed?";
        setenv("LOCPATH", folder.c_str(), 1);
        ASSERT_NE(std::setlocale(LC_ALL, "other"), nullptr);
        ASSERT_EQ(std::toupper(0xE4), 0xC4);
        ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    }
    void TearDown() override {
        std::setlocale(LC_ALL, "C");
        unsetenv("LOCPATH");
    }

  private:
    support::TemporaryFolder m_folder;
};

TEST_F(OtherLocale, CaseConversionKnowsTheAsciiLettersAlone) {
    EXPECT_STREQ(CString("az\xE4").Upper().GetBuffer(), "AZ\xE4");
    EXPECT_STREQ(CString("AZ\xC4").Lower().GetBuffer(), "az\xC4");
    EXPECT_STREQ(CString("az\xE4").ToUpper().GetBuffer(), "AZ\xE4");
    EXPECT_STREQ(CString("AZ\xC4").ToLower().GetBuffer(), "az\xC4");
}

TEST_F(OtherLocale, CaseConversionOfOneCharacterToo) {
    CString string("a\xE4\xC4");
    EXPECT_STREQ(string.ToUpper(1).GetBuffer(), "a\xE4\xC4");
    EXPECT_STREQ(string.ToLower(2).GetBuffer(), "a\xE4\xC4");
    EXPECT_STREQ(string.ToUpper(0).GetBuffer(), "A\xE4\xC4");
}

TEST_F(OtherLocale, ComparisonWithoutCaseToo) {
    EXPECT_GT(CString("\xE4").CompareNoCase("\xC4"), 0);
    EXPECT_LT(CString("\xC4").CompareNoCase("\xE4"), 0);
    EXPECT_FALSE(CString("a\xE4").EqualsNoCase("A\xC4"));
    EXPECT_TRUE(CString("a\xE4").EqualsNoCase("A\xE4"));
}

TEST_F(OtherLocale, SwitchesMatchByTheirAsciiLetters) {
    CCLParams table;
    table.Add("/s\xE4", CLP_SWITCH, false);
    EXPECT_FALSE(table.IsSwitch("/S\xC4", false));
    EXPECT_TRUE(table.IsSwitch("/S\xE4", false));
}

TEST_F(OtherLocale, NumbersHaveAPoint) {
    EXPECT_STREQ(CString(0.5).GetBuffer(), "0.5");
    EXPECT_STREQ(CString(0.1F).GetBuffer(), "0.1");
    EXPECT_STREQ(CString(-1234567.0).GetBuffer(), "-1.23457e+06");
    EXPECT_STREQ(CString(0.0001).GetBuffer(), "0.0001");
    CString string;
    string.ToString(2.5);
    EXPECT_STREQ(string.GetBuffer(), "2.5");
    string.ToString(-2.5F);
    EXPECT_STREQ(string.GetBuffer(), "-2.5");
}

TEST_F(OtherLocale, NumbersWithoutAPointStay) {
    EXPECT_STREQ(CString(100.0).GetBuffer(), "100");
    EXPECT_STREQ(CString(1e6).GetBuffer(), "1e+06");
    EXPECT_STREQ(CString(1234567).GetBuffer(), "1234567");
    EXPECT_STREQ(CString(4294967295UL).GetBuffer(), "4294967295");
}

TEST_F(OtherLocale, TextIsReadAsANumberWithoutGroups) {
    EXPECT_EQ(CString("1.234").ToInt(), 1);
    EXPECT_EQ(CString("1,5").ToInt(), 1);
}

}  // namespace
