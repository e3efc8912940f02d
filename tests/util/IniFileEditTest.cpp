// CIniFile: where entries and sections are put in, and what a removal takes along.
#include "util/IniFixture.h"

namespace {

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

TEST_F(IniWriting, EmptyEntryOfASectionBeforeAnotherIsASuccessThatAddsNothing) {
    EXPECT_TRUE(Load("[A]\nk=1\n[B]\n").WriteString("A", "", "", false, false));
    EXPECT_EQ(Saved(), "[A]\nk=1\n[B]\n");
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

TEST_F(IniWriting, IntegerWithoutAKeyIsALineThatIsThereOnceUnlessMayBeTwice) {
    CIniFile& ini = Load("[A]\n5\n");
    EXPECT_FALSE(ini.WriteInteger("A", "", 5));
    EXPECT_FALSE(ini.WriteInteger("A", "", 5, false));
    EXPECT_EQ(Saved(), "[A]\n5\n");
    EXPECT_TRUE(ini.WriteInteger("A", "", 5, true));
    EXPECT_EQ(Saved(), "[A]\n5\n5\n");
}

TEST_F(IniWriting, FileMayBeNamedByADirectoryObject) {
    Load("[A]\nk=1\n");
    {
        CIniFile ini(CDir(File().c_str()), true);
        EXPECT_STREQ(ini.ReadString("A", "k").GetBuffer(), "1");
        EXPECT_TRUE(ini.WriteString("A", "l", "2", false, false));
    }
    EXPECT_EQ(OnDisk(), "[A]\nk=1\nl = 2\n");
}

TEST_F(IniWriting, BlankLastLineIsNotBeforeTheFirstHeader) {
    Load("[A]\n\n").WriteString("", "k", "1", false, false);
    EXPECT_EQ(Saved(), "k=1\n\n[A]\n\n");
}

TEST_F(IniWriting, EntryOfBlankLinesAloneStandsAboveThem) {
    Load("\n\n").WriteString("", "k", "1", false, false);
    EXPECT_EQ(Saved(), "k=1\n\n\n");
}

TEST_F(IniWriting, NewSectionOfBlankLinesAloneStandsAboveThem) {
    Load("\n\n").WriteString("B", "x", "1", false, false);
    EXPECT_EQ(Saved(), "[B]\nx=1\n\n\n");
}

TEST_F(IniWriting, CommentedEntryIsReplacedUnderItsFullKey) {
    Load("[A]\n; k=1\n").WriteString("A", "; k", "2", false, false);
    EXPECT_EQ(Saved(), "[A]\n; k=2\n");
    Load("[A]\n; k=1\n").WriteString("A", "k", "2", false, false);
    EXPECT_EQ(Saved(), "[A]\n; k=1\nk=2\n");
}

TEST_F(IniWriting, CommentCountsAsALineThatIsAlreadyThere) {
    EXPECT_FALSE(Load("[A]\n; c\n").WriteString("A", "", "; c", false, false));
    EXPECT_EQ(Saved(), "[A]\n; c\n");
}

TEST_F(IniWriting, ReplacedEntryIsTrimmedAtItsEndsAlone) {
    Load("[A]\nk=1\n").WriteString("A", "k", " 2 ", false, false);
    EXPECT_EQ(Saved(), "[A]\nk= 2\n");
    Load("[A]\nk=1\n", true).WriteString("A", "k", "", false, false);
    EXPECT_EQ(Saved(), "[A]\nk =\n");
}

TEST_F(IniWriting, KeyWithABlankBeforeItReplacesNothing) {
    Load("[A]\nk=1\n").WriteString("A", " k", "2", false, false);
    EXPECT_EQ(Saved(), "[A]\nk=1\nk=2\n");
}

TEST_F(IniWriting, ValueOfBlanksWithoutAKeyIsABlankLine) {
    EXPECT_TRUE(Load("[A]\nk=1\n").WriteString("A", "", " \t", false, false));
    EXPECT_EQ(Saved(), "[A]\nk=1\n\n");
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

TEST_F(IniRemoving, ValuesAreComparedExactly) {
    Load("[A]\nv\nV\nv\n").RemoveString("A", "", "V", false, false);
    EXPECT_EQ(Saved(), "[A]\nv\nv\n");
    Load("[A]\nv\n").RemoveString("A", "", "V", true, false);
    EXPECT_EQ(Saved(), "[A]\nv\n");
}

TEST_F(IniRemoving, FirstOnlyDoesNotSpareTheRestOfASection) {
    Load("[A]\nk=1\nj=2\n[B]\n").RemoveString("A", "", "", true, false);
    EXPECT_EQ(Saved(), "[B]\n");
    Load("a=1\nb=2\n[A]\n").RemoveString("", "", "", true, false);
    EXPECT_EQ(Saved(), "[A]\n");
}

TEST_F(IniRemoving, CommentedEntryGoesUnderItsFullKey) {
    Load("[A]\n; k=1\nk=2\n").RemoveString("A", "; K", "", false, false);
    EXPECT_EQ(Saved(), "[A]\nk=2\n");
}

// Each edit finds the lines as the one before has linked them.
using IniEditing = Ini;

TEST_F(IniEditing, EntriesOfOneSectionFollowEachOther) {
    CIniFile& ini = Load("[A]\nk=1\n[B]\n");
    ini.WriteString("A", "x", "1", false, false);
    ini.WriteString("A", "y", "2", false, false);
    EXPECT_EQ(Saved(), "[A]\nk=1\nx=1\ny=2\n\n[B]\n");
}

TEST_F(IniEditing, LinesAreAddedAtBothEnds) {
    CIniFile& ini = Load("[A]\nk=3\n");
    ini.WriteString("", "a", "1", false, false);
    ini.WriteString("A", "l", "4", false, false);
    ini.WriteString("", "b", "2", false, false);
    ini.WriteString("A", "m", "5", false, false);
    EXPECT_EQ(Saved(), "a=1\nb=2\n\n[A]\nk=3\nl=4\nm=5\n");
}

TEST_F(IniEditing, EntryTakesTheRemovedOnesPlace) {
    CIniFile& ini = Load("[A]\nk=1\nx=1\n\n[B]\n");
    ini.RemoveString("A", "x", "", false, false);
    ini.WriteString("A", "y", "2", false, false);
    EXPECT_EQ(Saved(), "[A]\nk=1\ny=2\n\n[B]\n");
}

TEST_F(IniEditing, EntryFollowsTheLastLineThatIsLeft) {
    CIniFile& ini = Load("[A]\nk=1\nx=1\n");
    ini.RemoveString("A", "x", "", false, false);
    ini.WriteString("A", "y", "2", false, false);
    EXPECT_EQ(Saved(), "[A]\nk=1\ny=2\n");
}

TEST_F(IniEditing, EntryFollowsTheLastLineWhenTheFirstIsGone) {
    CIniFile& ini = Load("a=1\nb=2\nc=3\n");
    ini.RemoveString("", "a", "", false, false);
    ini.WriteString("", "d", "4", false, false);
    EXPECT_EQ(Saved(), "b=2\nc=3\nd=4\n");
}

TEST_F(IniEditing, EmptiedFileIsFilledAgain) {
    CIniFile& ini = Load("a=1\n");
    ini.RemoveString("", "a", "", false, false);
    ini.WriteString("", "b", "2", false, false);
    ini.WriteString("", "c", "3", false, false);
    EXPECT_EQ(Saved(), "b=2\nc=3\n");
}

}  // namespace
