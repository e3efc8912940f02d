// CIniFile: reading, writing back, and the list of lines.
#include <type_traits>

#include "util/IniFixture.h"

namespace {

namespace fs = std::filesystem;

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

TEST_F(IniReading, SearchInVainGivesTheLastLineItLookedAt) {
    CString line("old");
    EXPECT_FALSE(Load("").FindItem("A", "x", line));
    EXPECT_STREQ(line.GetBuffer(), "old");
    EXPECT_FALSE(Load("[A]\nk=1\n; c\n").FindItem("A", "x", line));
    EXPECT_STREQ(line.GetBuffer(), "; c");
    EXPECT_FALSE(Load("[A]\nk=1\n\n").FindItem("A", "x", line));
    EXPECT_STREQ(line.GetBuffer(), "");
    EXPECT_FALSE(Load("[A]\nk=1\n[B]\nx=2\n").FindItem("A", "x", line));
    EXPECT_STREQ(line.GetBuffer(), "[B]");
    EXPECT_FALSE(Load("[A]\nx=1\n").FindItem("C", "x", line));
    EXPECT_STREQ(line.GetBuffer(), "x=1");
}

TEST_F(IniReading, EmptyKeyFindsAnEntryWithoutAName) {
    Load("[A]\n = v\n[]\nk=w\n");
    EXPECT_EQ(Read("A", ""), "v");
    EXPECT_EQ(Read("", ""), "default");
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

using IniSaving = Ini;

TEST_F(IniSaving, FlushSaysWhetherChangesAreUnsaved) {
    CIniFile& ini = Load("[A]\n");
    EXPECT_FALSE(ini.Flush());
    ini.WriteString("A", "k", "1", false, false);
    EXPECT_FALSE(ini.Flush());
    CIniFile lost(CString("/no/such/dir/file.ini"), false);
    lost.WriteString("A", "k", "1", false, false);
    EXPECT_TRUE(lost.Flush());
    EXPECT_TRUE(lost.WriteIniFile());
}

TEST_F(IniSaving, FullDeviceLeavesTheChangesUnsaved) {
    CIniFile ini(CString(File().c_str()), false);
    fs::create_symlink("/dev/full", File());
    ini.WriteString("A", "k", "1", false, false);
    EXPECT_TRUE(ini.Flush());
    EXPECT_FALSE(ini.WriteIniFile("/dev/full"));
    fs::remove(File());
    EXPECT_FALSE(ini.Flush());
    EXPECT_EQ(CIniFile(CString(File().c_str()), false).ReadInteger("A", "k"), 1);
}

TEST_F(IniSaving, UnchangedFileIsNotWritten) {
    const CIniFile& ini = Load(" [A] \n k = 1 ");
    CString line;
    EXPECT_TRUE(ini.FindItem("A", "k", line));
    EXPECT_EQ(Saved(), " [A] \n k = 1 ");
}

TEST_F(IniSaving, FlushFlagAndDestructorWrite) {
    {
        CIniFile ini(CString(File().c_str()), false);
        ini.WriteString("A", "k", "1", false, true);
        EXPECT_TRUE(fs::exists(File()));
        ini.WriteString("A", "k", "2", false, false);
    }
    EXPECT_EQ(CIniFile(CString(File().c_str()), false).ReadInteger("A", "k"), 2);
}

TEST_F(IniSaving, WithoutTheFlushFlagNothingIsWrittenYet) {
    CIniFile& ini = Load("[A]\nk=1\n");
    EXPECT_TRUE(ini.WriteString("A", "k", "2", false, false));
    EXPECT_EQ(OnDisk(), "[A]\nk=1\n");
    EXPECT_TRUE(ini.WriteInteger("A", "l", 3));
    EXPECT_TRUE(ini.WriteInteger("A", "m", 4, true));
    EXPECT_EQ(OnDisk(), "[A]\nk=1\n");
    EXPECT_TRUE(ini.RemoveString("A", "l", "", false, false));
    EXPECT_EQ(OnDisk(), "[A]\nk=1\n");
    EXPECT_FALSE(ini.Flush());
    EXPECT_EQ(OnDisk(), "[A]\nk=2\nm=4\n");
}

TEST_F(IniSaving, RemovalWithTheFlushFlagIsWrittenAtOnce) {
    EXPECT_TRUE(Load("[A]\nk=1\n").RemoveString("A", "k", "", false, true));
    EXPECT_EQ(OnDisk(), "[A]\n");
}

TEST_F(IniSaving, FailureToWriteAtOnceDoesNotChangeTheResult) {
    CIniFile ini(CString("/no/such/dir/file.ini"), false);
    EXPECT_TRUE(ini.WriteString("A", "k", "1", false, true));
    EXPECT_TRUE(ini.RemoveString("A", "k", "", false, true));
    EXPECT_TRUE(ini.Flush());
}

TEST_F(IniSaving, DestructorTriesAgainWhatFailed) {
    const fs::path folder = Folder() / "later";
    {
        CIniFile ini(CString((folder / "file.ini").c_str()), false);
        ini.WriteString("A", "k", "1", false, true);
        EXPECT_TRUE(ini.Flush());
        fs::create_directory(folder);
    }
    EXPECT_EQ(Contents(folder / "file.ini"), "[A]\nk=1\n");
}

TEST_F(IniSaving, SavedObjectWritesNothingMore) {
    CIniFile& ini = Load("[A]\n");
    ini.WriteString("A", "k", "1", false, true);
    fs::remove(File());
    EXPECT_FALSE(ini.Flush());
    EXPECT_FALSE(fs::exists(File()));
}

TEST_F(IniSaving, InitializeStartsAnewWithAnotherFile) {
    const fs::path other = Folder() / "other.ini";
    std::ofstream(other) << "[B]\n x=1\n";
    CIniFile& ini = Load("[A]\nk=1\n");
    ini.WriteString("A", "k", "2", false, false);
    ini.Initialize(other.c_str(), true);
    EXPECT_EQ(Read("A", "k"), "default");
    EXPECT_EQ(Read("B", "x"), "1");
    EXPECT_FALSE(ini.Flush());
    EXPECT_EQ(Contents(other), "[B]\n x=1\n");
    ini.WriteString("B", "y", "2", false, true);
    EXPECT_EQ(OnDisk(), "[A]\nk=1\n");
    EXPECT_EQ(Contents(other), "[B]\nx=1\ny = 2\n");
}

TEST(IniObjects, AreNeverCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<CIniFile>);
    EXPECT_FALSE(std::is_copy_assignable_v<CIniFile>);
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

TEST_F(IniList, EmptyListTakesNoNoticeOfALineThatIsNotItsOwn) {
    CIniFile& ini = Load("");
    const std::unique_ptr<CIniFile::IniLineDef> loose(ini.MakeNewLine(""));
    EXPECT_EQ(ini.RemoveLine(loose.get()), loose.get());
    EXPECT_EQ(ini.RewindBlanks(loose.get()), loose.get());
    EXPECT_TRUE(ini.InsertLine(loose.get(), "a"));
    EXPECT_TRUE(ini.WriteIniFile(File().c_str()));
    EXPECT_EQ(OnDisk(), "a\n");
}

TEST_F(IniList, NothingIsInsertedBeforeALineWithoutAPredecessor) {
    CIniFile& ini = Load("a\n");
    const std::unique_ptr<CIniFile::IniLineDef> loose(ini.MakeNewLine(""));
    EXPECT_FALSE(ini.InsertLine(loose.get(), "b"));
    EXPECT_TRUE(ini.WriteIniFile(File().c_str()));
    EXPECT_EQ(OnDisk(), "a\n");
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
