// CIniFile on files that nobody should write: headers and entries that lack a part, sections that
// stand twice, NUL bytes, mixed line ends and bytes above 127.
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <random>
#include <sstream>

#include "support/TemporaryFolder.h"
#include "util/IniFile.h"

namespace {

class BadIni : public testing::Test {
  protected:
    CIniFile& Load(const std::string& text) {
        std::ofstream(m_file, std::ios::binary) << text;
        m_ini = std::make_unique<CIniFile>(CString(m_file.c_str()), false);
        return *m_ini;
    }
    std::string Read(const char* section, const char* key) {
        return m_ini->ReadString(section, key, "none").GetBuffer();
    }
    void Write(const char* section, const char* key, const char* value) {
        EXPECT_TRUE(m_ini->WriteString(section, key, value, false, false));
    }
    void Remove(const char* section, const char* key, const char* value) {
        EXPECT_TRUE(m_ini->RemoveString(section, key, value, false, false));
    }
    /// The lines as the file would hold them.
    std::string Lines() {
        EXPECT_TRUE(m_ini->WriteIniFile(CString(m_file.c_str())));
        std::ostringstream text;
        text << std::ifstream(m_file, std::ios::binary).rdbuf();
        return text.str();
    }

  private:
    support::TemporaryFolder m_folder;
    std::filesystem::path m_file = m_folder.path() / "file.ini";
    std::unique_ptr<CIniFile> m_ini;
};

// --- Headers ------------------------------------------------------------------------------------

using BadIniHeader = BadIni;

TEST_F(BadIniHeader, WithoutItsBracketIsReadWrittenAndRemoved) {
    Load("[ A \na=1\n[B\nb=2\n");
    EXPECT_EQ(Read("a", "a"), "1");
    EXPECT_EQ(Read("B", "b"), "2");
    Write("A", "n", "3");
    EXPECT_EQ(Lines(), "[ A\na=1\nn=3\n\n[B\nb=2\n");
    Remove("A", "", "");
    EXPECT_EQ(Lines(), "\n[B\nb=2\n");
}

TEST_F(BadIniHeader, OfOneBracketEndsTheUnnamedSection) {
    Load("a=1\n[\nb=2\n");
    EXPECT_EQ(Read("", "a"), "1");
    EXPECT_EQ(Read("", "b"), "none");
    Write("", "n", "3");
    EXPECT_EQ(Lines(), "a=1\nn=3\n\n[\nb=2\n");
}

TEST_F(BadIniHeader, WithoutANameCannotBeAddressed) {
    Load("[]\na=1\n[ ]\nb=2\n");
    EXPECT_EQ(Read("", "a"), "none");
    EXPECT_EQ(Read(" ", "b"), "none");
    EXPECT_EQ(Read("]", "a"), "none");
}

TEST_F(BadIniHeader, NameEndsAtTheFirstClosingBracket) {
    Load("[A]B]\na=1\n[[C]]\nc=2\n");
    EXPECT_EQ(Read("A", "a"), "1");
    EXPECT_EQ(Read("A]B", "a"), "none");
    EXPECT_EQ(Read("[C", "c"), "2");
}

TEST_F(BadIniHeader, MustStandAtTheBeginningOfItsLine) {
    Load("x [A]\n]A[\na=1\n");
    EXPECT_EQ(Read("A", "a"), "none");
    EXPECT_EQ(Read("", "a"), "1");
}

TEST_F(BadIniHeader, WrittenWithABracketInItsNameIsReadByWhatStandsBefore) {
    Load("");
    Write("A]B", "k", "1");
    EXPECT_EQ(Lines(), "[A]B]\nk=1\n");
    EXPECT_EQ(Read("A]B", "k"), "none");
    EXPECT_EQ(Read("A", "k"), "1");
}

// --- Entries ------------------------------------------------------------------------------------

using BadIniEntry = BadIni;

TEST_F(BadIniEntry, KeyWithoutAnEqualsSignHasNoValueAndStays) {
    Load("[A]\nk\n");
    EXPECT_EQ(Read("A", "k"), "none");
    Write("A", "k", "1");
    EXPECT_EQ(Lines(), "[A]\nk\nk=1\n");
    Remove("A", "k", "");
    Remove("A", "k", "");
    EXPECT_EQ(Lines(), "[A]\nk\n");
}

TEST_F(BadIniEntry, KeyWithoutAValueHasAnEmptyOne) {
    CIniFile& ini = Load("[A]\nk=\nl =  \n");
    EXPECT_EQ(Read("A", "k"), "");
    EXPECT_EQ(Read("A", "l"), "");
    EXPECT_EQ(ini.ReadInteger("A", "k", 7), 0);
}

TEST_F(BadIniEntry, ValueWithoutAKeyBelongsToTheEmptyKey) {
    CIniFile& ini = Load("[A]\n=v\n = w\n");
    EXPECT_EQ(Read("A", ""), "v");
    EXPECT_FALSE(ini.WriteString("A", "", "=v", false, false));
    Remove("A", "", "=v");
    EXPECT_EQ(Lines(), "[A]\n= w\n");
    EXPECT_EQ(Read("A", ""), "w");
}

TEST_F(BadIniEntry, EqualsSignsAloneAreAnEmptyKeyAndItsValue) {
    Load("===\n");
    EXPECT_EQ(Read("", ""), "==");
}

TEST_F(BadIniEntry, StandingTwiceIsReadReplacedAndRemovedInItsFirstPlace) {
    Load("k=1\nK=2\n");
    EXPECT_EQ(Read("", "k"), "1");
    Write("", "k", "3");
    EXPECT_EQ(Lines(), "k=3\nK=2\n");
    Remove("", "k", "");
    EXPECT_EQ(Read("", "k"), "2");
}

TEST_F(BadIniEntry, MayBeAMegabyteLong) {
    const std::string key(1 << 20, 'k');
    const std::string value(1 << 20, 'v');
    Load(key + "=" + value);
    EXPECT_EQ(Read("", key.c_str()), value);
    EXPECT_EQ(Lines(), key + "=" + value + "\n");
}

// --- Sections that stand twice ------------------------------------------------------------------

using BadIniSection = BadIni;

TEST_F(BadIniSection, StandingTwiceIsReadInItsFirstPlaceAlone) {
    Load("[A]\na=1\n[B]\n[a]\nb=2\n");
    EXPECT_EQ(Read("A", "a"), "1");
    EXPECT_EQ(Read("A", "b"), "none");
}

TEST_F(BadIniSection, StandingTwiceIsWrittenInItsFirstPlaceAlone) {
    Load("[A]\na=1\n[A]\nb=2\n");
    Write("A", "b", "3");
    EXPECT_EQ(Lines(), "[A]\na=1\nb=3\n\n[A]\nb=2\n");
}

TEST_F(BadIniSection, StandingTwiceLosesItsFirstPlaceAlone) {
    Load("[A]\na=1\n[A]\nb=2\n");
    Remove("A", "b", "");
    EXPECT_EQ(Lines(), "[A]\na=1\n[A]\nb=2\n");
    Remove("A", "", "");
    EXPECT_EQ(Lines(), "[A]\nb=2\n");
}

// --- Bytes --------------------------------------------------------------------------------------

using BadIniBytes = BadIni;

TEST_F(BadIniBytes, NulBytesAreDropped) {
    Load(std::string("[\0A]\n\0k\0=1\0\n\0\0\n\0", 16));
    EXPECT_EQ(Read("A", "k"), "1");
    EXPECT_EQ(Lines(), "[A]\nk=1\n\n");
}

TEST_F(BadIniBytes, LineEndsOfEveryKindAreWrittenAsNewlines) {
    Load("[A]\r\nk=1\n\rm=2\r\r\n\r\nn=3\r");
    EXPECT_EQ(Read("A", "m"), "2");
    EXPECT_EQ(Lines(), "[A]\nk=1\nm=2\n\nn=3\n");
}

TEST_F(BadIniBytes, CarriageReturnsAloneMakeOneLine) {
    Load("[A]\rk=1\r");
    EXPECT_EQ(Read("A", "k"), "none");
    EXPECT_EQ(Lines(), "[A]k=1\n");
}

TEST_F(BadIniBytes, LinesOfBlanksAreEmptyLines) {
    Load("k=1\n \t \n\t\n[A]\n");
    Write("", "l", "2");
    EXPECT_EQ(Lines(), "k=1\nl=2\n\n\n[A]\n");
}

TEST_F(BadIniBytes, BytesAbove127AreKeptAndHaveNoCase) {
    Load("[\xC4]\n\xE4=\xFC\n");
    EXPECT_EQ(Read("\xC4", "\xE4"), "\xFC");
    EXPECT_EQ(Read("\xE4", "\xE4"), "none");
    EXPECT_EQ(Read("\xC4", "\xC4"), "none");
    Write("\xC4", "\xE4", "\xFF");
    EXPECT_EQ(Lines(), "[\xC4]\n\xE4=\xFF\n");
}

TEST_F(BadIniBytes, ByteOrderMarkKeepsTheFirstHeaderFromBeingOne) {
    Load("\xEF\xBB\xBF[A]\nk=1\n");
    EXPECT_EQ(Read("A", "k"), "none");
    EXPECT_EQ(Read("", "k"), "1");
    EXPECT_EQ(Lines(), "\xEF\xBB\xBF[A]\nk=1\n");
}

/// Text that consists of what an INI file gives a meaning to.
std::string Jumble(std::minstd_rand& random) {
    const std::string alphabet("[]=;#/\r\n\n\n \tkA\0\xE9", 16);
    std::string text;
    for (auto length = random() % 60; length > 0; --length) {
        text += alphabet[random() % alphabet.size()];
    }
    return text;
}

TEST_F(BadIniBytes, WhateverAFileHoldsIsTheSameWhenSavedAndLoadedAgain) {
    std::minstd_rand random(1);
    for (int i = 0; i < 100; ++i) {
        Load(Jumble(random));
        const std::string saved = Lines();
        Load(saved);
        EXPECT_EQ(Lines(), saved);
    }
}

TEST_F(BadIniBytes, WhateverAFileHoldsAnEntryWrittenIsReadAndOneRemovedIsGone) {
    std::minstd_rand random(2);
    for (int i = 0; i < 100; ++i) {
        const std::string text = Jumble(random);
        Load(text);
        const std::string before = Lines();
        Write("new", "entry", "value");
        EXPECT_EQ(Read("new", "entry"), "value") << before;
        Remove("new", "entry", "");
        EXPECT_EQ(Read("new", "entry"), "none") << before;
        Remove("A", "", "");
        Remove("A", "", "k");
        Remove("", "", "");
        Load(Lines());
        EXPECT_EQ(Read("new", "entry"), "none") << before;
    }
}

}  // namespace
