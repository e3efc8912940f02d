// CIniFile: reading, editing in place and writing back.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "support/TemporaryFolder.h"
#include "util/IniFile.h"

namespace {

namespace fs = std::filesystem;

/// One INI file on disk, and an object that edits it.
class Ini : public testing::Test {
  protected:
    CIniFile& Load(const std::string& text, bool spaced = false) {
        std::ofstream(m_file, std::ios::binary) << text;
        m_ini = std::make_unique<CIniFile>(CString(m_file.c_str()), spaced);
        return *m_ini;
    }
    /// The file once everything is written.
    std::string Saved() {
        m_ini->Flush();
        std::ostringstream text;
        text << std::ifstream(m_file, std::ios::binary).rdbuf();
        return text.str();
    }
    std::string Read(const char* section, const char* key, const char* def = "default") {
        return m_ini->ReadString(section, key, def).GetBuffer();
    }
    const fs::path& File() const { return m_file; }

  private:
    support::TemporaryFolder m_folder;
    fs::path m_file = m_folder.path() / "file.ini";
    std::unique_ptr<CIniFile> m_ini;
};

using IniReading = Ini;

TEST_F(IniReading, SectionsAndKeysIgnoreCase) {
    CIniFile& ini = Load("[A]\nk = 1\n");
    EXPECT_EQ(Read("a", "K"), "1");
    EXPECT_EQ(ini.ReadInteger("A", "k"), 1);
    EXPECT_EQ(Read("A", "x", "d"), "d");
    EXPECT_STREQ(ini.ReadString("", "k").GetBuffer(), "");
}

TEST_F(IniReading, LinesBeforeTheFirstHeaderAreTheUnnamedSection) {
    Load("; c\nk=v\n[A]\nz=1\n");
    EXPECT_EQ(Read("", "k"), "v");
    EXPECT_EQ(Read("", "z"), "default");
}

TEST_F(IniReading, CommentedEntriesAreNotFound) {
    Load("[A]\n; k=1\n#k=2\n");
    EXPECT_EQ(Read("A", "k"), "default");
    EXPECT_EQ(Read("A", "; k"), "default");
    EXPECT_EQ(Read("A", "#k"), "2");
}

TEST_F(IniReading, ValueIsTheTrimmedTextBehindTheFirstEqualsSign) {
    Load("[A]\n  k  =  a = b \t\nempty=\n");
    EXPECT_EQ(Read("A", "k"), "a = b");
    EXPECT_EQ(Read("A", "empty"), "");
}

TEST_F(IniReading, DefaultIsNotTrimmed) {
    Load("");
    EXPECT_EQ(Read("A", "k", " d "), " d ");
}

TEST_F(IniReading, OnlyTheFirstSectionOfANameIsSearched) {
    Load("[A]\na=1\n[B]\n[A]\nb=2\n");
    EXPECT_EQ(Read("A", "b"), "default");
}

TEST_F(IniReading, HeaderNameIsTrimmedAndMayLackItsBracket) {
    Load("[ A ] trailing\na=1\n[B\nb=2\n");
    EXPECT_EQ(Read("A", "a"), "1");
    EXPECT_EQ(Read("B", "b"), "2");
}

TEST_F(IniReading, IntegersHaveADefault) {
    CIniFile& ini = Load("[A]\nk=12abc\nn=-5\nt=text\n");
    EXPECT_EQ(ini.ReadInteger("A", "k"), 12);
    EXPECT_EQ(ini.ReadInteger("A", "n", 7), -5);
    EXPECT_EQ(ini.ReadInteger("A", "x", 7), 7);
    EXPECT_EQ(ini.ReadInteger("A", "x"), 0);
    EXPECT_EQ(ini.ReadInteger("A", "t", 7), 0);
}

TEST_F(IniReading, MissingFileIsEmptyAndExists) {
    CIniFile ini(CDir("/no/such/file.ini"), false);
    EXPECT_STREQ(ini.ReadString("A", "k", "d").GetBuffer(), "d");
    EXPECT_TRUE(ini.Exists());
}

TEST_F(IniReading, FindItemGivesTheLine) {
    const CIniFile& ini = Load("[A]\n k = 1 \n");
    CString line;
    EXPECT_TRUE(ini.FindItem("A", "k", line));
    EXPECT_STREQ(line.GetBuffer(), "k = 1");
    EXPECT_FALSE(ini.FindItem("A", "x", line));
}

TEST_F(IniReading, ResultTellsWhetherTheLastLineHasANewline) {
    CIniFile& ini = Load("a=1");
    EXPECT_TRUE(ini.ReadIniFile(File().c_str()));
    std::ofstream(File()) << "b=2\n";
    EXPECT_FALSE(ini.ReadIniFile(File().c_str()));
    EXPECT_EQ(Read("", "b"), "2");
    EXPECT_FALSE(ini.ReadIniFile("/no/such/file"));
}

TEST_F(IniReading, OddBytesAreKept) {
    Load(std::string("[A]\r\nk=\xE9\0x\r\n", 13));
    EXPECT_EQ(Read("A", "k"), "\xE9x");
}

using IniWriting = Ini;

TEST_F(IniWriting, ReplacesAnEntryInPlace) {
    EXPECT_TRUE(Load("[A]\nk = 1\nz=3\n").WriteString("A", "K", "2", false, false));
    EXPECT_EQ(Saved(), "[A]\nK=2\nz=3\n");
}

TEST_F(IniWriting, SpacedEntriesHaveBlanks) {
    CIniFile& ini = Load("[A]\nk=1\n", true);
    ini.WriteString("A", "k", "2", false, false);
    ini.WriteString("A", "n", "", false, false);
    EXPECT_EQ(Saved(), "[A]\nk = 2\nn =\n");
}

TEST_F(IniWriting, NewSectionIsSetOffByABlankLine) {
    Load("[A]\nk=1").WriteString("B", "x", "1", false, false);
    EXPECT_EQ(Saved(), "[A]\nk=1\n\n[B]\nx=1\n");
}

TEST_F(IniWriting, NewSectionOfAnEmptyFileNeedsNone) {
    Load("").WriteString("B", "x", "1", false, false);
    EXPECT_EQ(Saved(), "[B]\nx=1\n");
}

TEST_F(IniWriting, NewEntryStandsBeforeTheBlankLinesOfItsSection) {
    Load("[A]\nk=1\n\n[C]").WriteString("A", "y", "2", false, false);
    EXPECT_EQ(Saved(), "[A]\nk=1\ny=2\n\n[C]\n");
    Load("[A]\nk=1\n[C]").WriteString("A", "y", "2", false, false);
    EXPECT_EQ(Saved(), "[A]\nk=1\ny=2\n\n[C]\n");
}

TEST_F(IniWriting, BlankLinesAtTheEndStayThere) {
    Load("[A]\nk=1\n\n\n").WriteString("A", "y", "2", false, false);
    EXPECT_EQ(Saved(), "[A]\nk=1\ny=2\n\n\n");
    Load("[A]\nk=1\n\n\n").WriteString("B", "y", "2", false, false);
    EXPECT_EQ(Saved(), "[A]\nk=1\n\n[B]\ny=2\n\n\n");
}

TEST_F(IniWriting, EntryOfTheUnnamedSectionStandsBeforeTheFirstHeader) {
    Load("[A]\n").WriteString("", "k", "1", false, false);
    EXPECT_EQ(Saved(), "k=1\n\n[A]\n");
}

TEST_F(IniWriting, ValueWithoutAKeyIsALineOfItsOwn) {
    CIniFile& ini = Load("[A]\nv\n");
    EXPECT_FALSE(ini.WriteString("A", "", "v", false, false));
    EXPECT_FALSE(ini.Flush());
    EXPECT_TRUE(ini.WriteString("A", "", "v", true, false));
    EXPECT_TRUE(ini.WriteString("A", "", "V", false, false));
    EXPECT_EQ(Saved(), "[A]\nv\nv\nV\n");
}

TEST_F(IniWriting, EmptyEntryOfANewSectionLeavesTheHeaderAlone) {
    Load("").WriteString("A", "", "", false, false);
    EXPECT_EQ(Saved(), "[A]\n");
    Load("[A]\n[B]\n").WriteString("A", "", "", true, false);
    EXPECT_EQ(Saved(), "[A]\n[B]\n");
}

TEST_F(IniWriting, IntegersAreWrittenInDecimal) {
    CIniFile& ini = Load("[A]\n");
    EXPECT_TRUE(ini.WriteInteger("A", "k", -5));
    EXPECT_TRUE(ini.WriteInteger("A", "l", 6, true));
    EXPECT_EQ(Saved(), "[A]\nk=-5\nl=6\n");
}

TEST_F(IniWriting, FlushSaysWhetherChangesAreUnsaved) {
    CIniFile& ini = Load("[A]\n");
    EXPECT_FALSE(ini.Flush());
    ini.WriteString("A", "k", "1", false, false);
    EXPECT_FALSE(ini.Flush());
    CIniFile lost(CString("/no/such/dir/file.ini"), false);
    lost.WriteString("A", "k", "1", false, false);
    EXPECT_TRUE(lost.Flush());
    EXPECT_TRUE(lost.WriteIniFile());
}

TEST_F(IniWriting, FullDeviceLeavesTheChangesUnsaved) {
    CIniFile ini(CString(File().c_str()), false);
    fs::create_symlink("/dev/full", File());
    ini.WriteString("A", "k", "1", false, false);
    EXPECT_TRUE(ini.Flush());
    EXPECT_FALSE(ini.WriteIniFile("/dev/full"));
    fs::remove(File());
    EXPECT_FALSE(ini.Flush());
    EXPECT_EQ(CIniFile(CString(File().c_str()), false).ReadInteger("A", "k"), 1);
}

TEST_F(IniWriting, UnchangedFileIsNotWritten) {
    const CIniFile& ini = Load(" [A] \n k = 1 ");
    CString line;
    EXPECT_TRUE(ini.FindItem("A", "k", line));
    EXPECT_EQ(Saved(), " [A] \n k = 1 ");
}

TEST_F(IniWriting, FlushFlagAndDestructorWrite) {
    {
        CIniFile ini(CString(File().c_str()), false);
        ini.WriteString("A", "k", "1", false, true);
        EXPECT_TRUE(fs::exists(File()));
        ini.WriteString("A", "k", "2", false, false);
    }
    EXPECT_EQ(CIniFile(CString(File().c_str()), false).ReadInteger("A", "k"), 2);
}

using IniRemoving = Ini;

TEST_F(IniRemoving, TakesTheFirstEntryOfAKey) {
    Load("[A]\nk=1\nK=2\n").RemoveString("a", "k", "", false, false);
    EXPECT_EQ(Saved(), "[A]\nK=2\n");
}

TEST_F(IniRemoving, SectionGoesWithTheBlankLineBeforeIt) {
    Load("x=1\n\n[A]\nk=1\n\n[B]").RemoveString("A", "", "", false, false);
    EXPECT_EQ(Saved(), "x=1\n\n[B]\n");
}

TEST_F(IniRemoving, LineBehindARemovedValueIsPassedOver) {
    Load("[A]\nv\nv\nv\nw\n").RemoveString("A", "", "v", false, false);
    EXPECT_EQ(Saved(), "[A]\nv\nw\n");
}

TEST_F(IniRemoving, PassingOverMayLeadIntoTheNextSection) {
    Load("[A]\nv\n[B]\nv\n").RemoveString("A", "", "v", false, false);
    EXPECT_EQ(Saved(), "[A]\n[B]\n");
}

TEST_F(IniRemoving, FirstOnlyStops) {
    Load("[A]\nv\nx\nv\n").RemoveString("A", "", "v", true, false);
    EXPECT_EQ(Saved(), "[A]\nx\nv\n");
}

TEST_F(IniRemoving, LastLineEndsTheWalk) {
    Load("[A]\nv").RemoveString("A", "", "v", false, false);
    EXPECT_EQ(Saved(), "[A]\n");
}

TEST_F(IniRemoving, FirstSectionTakesAnEmptyLastLineWithIt) {
    Load("[A]\nk=1\n[B]\nb=1\n\n").RemoveString("A", "", "", false, false);
    EXPECT_EQ(Saved(), "[B]\nb=1\n");
}

TEST_F(IniRemoving, UnnamedSectionIsEmptiedUpToTheFirstHeader) {
    Load("a=1\n\n; c\n[A]\nk=1\n").RemoveString("", "", "", false, false);
    EXPECT_EQ(Saved(), "\n[A]\nk=1\n");
}

TEST_F(IniRemoving, NothingFoundCountsAsAChange) {
    CIniFile& ini = Load(" [A] ");
    EXPECT_TRUE(ini.RemoveString("X", "k", "", false, false));
    EXPECT_EQ(Saved(), "[A]\n");
    EXPECT_TRUE(ini.RemoveString("X", "k", "", false, true));
}

using IniList = Ini;

TEST_F(IniList, LinesArePutInAndTakenOut) {
    CIniFile& ini = Load("");
    EXPECT_TRUE(ini.AddLine(" b "));
    EXPECT_TRUE(ini.InsertLine(nullptr, "c"));
    EXPECT_EQ(ini.RemoveLine(nullptr), nullptr);
    EXPECT_EQ(ini.RewindBlanks(nullptr), nullptr);
    const std::unique_ptr<CIniFile::IniLineDef> line(ini.MakeNewLine(" x\t"));
    EXPECT_STREQ(line->m_sLine.GetBuffer(), "x");
    EXPECT_EQ(line->m_pPrev, nullptr);
    EXPECT_EQ(line->m_pNext, nullptr);
    EXPECT_TRUE(ini.WriteIniFile(File().c_str()));
    EXPECT_EQ(Saved(), "b\nc\n");
    ini.DeleteLines();
    EXPECT_TRUE(ini.WriteIniFile(File().c_str()));
    EXPECT_EQ(Saved(), "");
}

TEST_F(IniList, HundredThousandLinesAreLoadedAndWritten) {
    std::string text;
    for (int i = 0; i < 100'000; ++i) {
        text += "key" + std::to_string(i) + "=" + std::to_string(i) + "\n";
    }
    CIniFile& ini = Load(text);
    EXPECT_EQ(ini.ReadInteger("", "KEY99999"), 99999);
    ini.WriteInteger("", "key0", 1);
    EXPECT_EQ(Saved().size(), text.size());
}

}  // namespace
