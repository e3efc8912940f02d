// What still works, and what is refused, when memory is short: copies with smaller buffers, and
// lists and argument vectors that cannot grow.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "support/Allocation.h"
#include "support/TemporaryFolder.h"
#include "util/CLParams.h"
#include "util/Exec.h"
#include "util/IniFile.h"
#include "util/MyFileIO.h"

namespace {

namespace fs = std::filesystem;

using Sizes = std::vector<size_t>;

class ShortMemory : public testing::Test {
  protected:
    ShortMemory() = default;
    ShortMemory(const ShortMemory&) = delete;
    ShortMemory& operator=(const ShortMemory&) = delete;
    ~ShortMemory() override { support::AllowAllocations(); }

    CString Path(const char* name) const { return (m_folder.path() / name).c_str(); }
    CString Written(const char* name, const std::string& text) const {
        std::ofstream(m_folder.path() / name, std::ios::binary) << text;
        return Path(name);
    }
    std::string Contents(const char* name) const {
        std::ostringstream text;
        text << std::ifstream(m_folder.path() / name, std::ios::binary).rdbuf();
        return text.str();
    }

  private:
    support::TemporaryFolder m_folder;
};

// --- Copies -------------------------------------------------------------------------------------

/// The sizes of copying buffers, from the one that is wanted to the one that must do.
const Sizes kBufferSizes = {65280, 32640, 16320, 8160, 4080, 2040, 1020, 510, 255, 1};

std::string Pattern(size_t size) {
    std::string text(size, '\0');
    for (size_t i = 0; i < size; ++i) {
        text[i] = static_cast<char>(i % 251);
    }
    return text;
}

class ShortMemoryCopy : public ShortMemory {
  protected:
    /// Copies `size` bytes while allocations of these sizes fail; returns what CopyFile says.
    bool CopyWithout(const Sizes& sizes, size_t size) const {
        const CString from = Written("from", Pattern(size));
        const CString to = Path("to");
        support::FailAllocationsOf(sizes);
        const bool copied = CMyFileIO::CopyFile(from, to);
        support::AllowAllocations();
        return copied;
    }
};

TEST_F(ShortMemoryCopy, TakesTheLargestBufferOfTheListThatThereIsMemoryFor) {
    for (size_t refused = 0; refused + 1 < kBufferSizes.size(); ++refused) {
        const size_t granted = kBufferSizes[refused];
        const Sizes sizes(kBufferSizes.data(), kBufferSizes.data() + refused);
        // A source that ends with the buffer shows which one was taken: it counts as a failure.
        EXPECT_FALSE(CopyWithout(sizes, granted)) << granted;
        EXPECT_EQ(Contents("to"), Pattern(granted));
        EXPECT_TRUE(CopyWithout(sizes, granted - 1)) << granted;
        EXPECT_EQ(Contents("to"), Pattern(granted - 1));
        EXPECT_TRUE(CopyWithout(sizes, granted + 1)) << granted;
        EXPECT_EQ(Contents("to"), Pattern(granted + 1));
        EXPECT_EQ(support::FailedSizes(), sizes);
    }
}

TEST_F(ShortMemoryCopy, WithABufferOfOneByteIsCompleteThoughItReportsFailure) {
    const Sizes allButOne(kBufferSizes.begin(), kBufferSizes.end() - 1);
    for (const size_t size : {1U, 2U, 1000U}) {
        EXPECT_FALSE(CopyWithout(allButOne, size));
        EXPECT_EQ(Contents("to"), Pattern(size));
        EXPECT_EQ(support::FailedSizes(), allButOne);
    }
}

TEST_F(ShortMemoryCopy, WithoutAnyBufferFailsAfterTenAttemptsAndLeavesAnEmptyFile) {
    EXPECT_FALSE(CopyWithout(kBufferSizes, 10));
    EXPECT_EQ(support::FailedSizes(),
              (Sizes{65280, 32640, 16320, 8160, 4080, 2040, 1020, 510, 255, 1}));
    EXPECT_TRUE(fs::exists(Path("to").GetBuffer()));
    EXPECT_EQ(Contents("to"), "");
}

TEST_F(ShortMemoryCopy, WithoutAnyBufferStillTakesTheTimesOver) {
    const CString from = Written("from", "x");
    const CString to = Path("to");
    const timespec times[] = {{1'000'000'000, 0}, {1'100'000'000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, from.GetBuffer(), times, 0), 0);
    support::FailAllocationsOf(kBufferSizes);
    EXPECT_FALSE(CMyFileIO::CopyFile(from, to));
    support::AllowAllocations();
    struct stat status = {};
    ASSERT_EQ(stat(to.GetBuffer(), &status), 0);
    EXPECT_EQ(status.st_mtime, 1'100'000'000);
}

// --- INI files ----------------------------------------------------------------------------------

constexpr char kLineMessage[] =
    "\n\nMemory Allocation Error\n\n"
    "Not enough memory is available for this application.\n\n"
    "Please close some programs to free up memory and try running\n"
    "this application again.\n\n"
    "IniFile.AddLine()\n";

const Sizes kLineSize = {sizeof(CIniFile::IniLineDef)};

class ShortMemoryIni : public ShortMemory {
  protected:
    CIniFile& Load(const std::string& text) {
        m_ini = std::make_unique<CIniFile>(Written("f.ini", text), false);
        return *m_ini;
    }

    /// What `change` says while no line can be allocated.
    template <class Change>
    bool WithoutLines(Change change) {
        testing::internal::CaptureStderr();
        support::FailAllocationsOf(kLineSize);
        const bool result = change();
        support::AllowAllocations();
        m_message = testing::internal::GetCapturedStderr();
        return result;
    }
    const std::string& Message() const { return m_message; }

    std::string Lines() const {
        EXPECT_TRUE(m_ini->WriteIniFile(Path("lines")));
        return Contents("lines");
    }

  private:
    std::unique_ptr<CIniFile> m_ini;
    std::string m_message;
};

TEST_F(ShortMemoryIni, AddLineIsFalseWithAMessageAndLeavesTheLines) {
    CIniFile& ini = Load("[A]\nk=1\n");
    EXPECT_FALSE(WithoutLines([&] { return ini.AddLine("x"); }));
    EXPECT_EQ(Message(), kLineMessage);
    EXPECT_EQ(Lines(), "[A]\nk=1\n");
    EXPECT_TRUE(ini.AddLine("x"));
    EXPECT_EQ(Lines(), "[A]\nk=1\nx\n");
}

TEST_F(ShortMemoryIni, AddLineToNoLinesIsFalseWithAMessage) {
    CIniFile& ini = Load("");
    EXPECT_FALSE(WithoutLines([&] { return ini.AddLine("x"); }));
    EXPECT_EQ(Message(), kLineMessage);
    EXPECT_EQ(Lines(), "");
    EXPECT_TRUE(ini.AddLine("x"));
    EXPECT_EQ(Lines(), "x\n");
}

TEST_F(ShortMemoryIni, MakeNewLineIsNullWithoutAMessage) {
    CIniFile& ini = Load("[A]\n");
    EXPECT_TRUE(WithoutLines([&] { return ini.MakeNewLine("x") == nullptr; }));
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(Lines(), "[A]\n");
}

TEST_F(ShortMemoryIni, InsertLineBeforeNothingIsFalseWithAMessageAndLeavesTheLines) {
    CIniFile& ini = Load("[A]\nk=1\n");
    EXPECT_FALSE(WithoutLines([&] { return ini.InsertLine(nullptr, "x"); }));
    EXPECT_EQ(Message(), kLineMessage);
    EXPECT_EQ(Lines(), "[A]\nk=1\n");
}

TEST_F(ShortMemoryIni, InsertLineBeforeALineIsFalseWithoutAMessageAndLeavesTheLines) {
    CIniFile& ini = Load("[A]\nk=1\n");
    const std::unique_ptr<CIniFile::IniLineDef> first(ini.MakeNewLine("first"));
    const std::unique_ptr<CIniFile::IniLineDef> second(ini.MakeNewLine("second"));
    first->m_pNext = second.get();
    second->m_pPrev = first.get();
    EXPECT_FALSE(WithoutLines([&] { return ini.InsertLine(second.get(), "x"); }));
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(first->m_pNext, second.get());
    EXPECT_EQ(second->m_pPrev, first.get());
    EXPECT_EQ(Lines(), "[A]\nk=1\n");
}

TEST_F(ShortMemoryIni, LineWithoutAPredecessorTakesNoneBeforeItself) {
    CIniFile& ini = Load("[A]\nk=1\n");
    const std::unique_ptr<CIniFile::IniLineDef> alone(ini.MakeNewLine("alone"));
    EXPECT_FALSE(ini.InsertLine(alone.get(), "x"));
    EXPECT_EQ(alone->m_pPrev, nullptr);
    EXPECT_EQ(Lines(), "[A]\nk=1\n");
}

TEST_F(ShortMemoryIni, NewEntryBeforeAHeaderIsRefusedAndNothingIsModified) {
    CIniFile& ini = Load("[A]\n[B]\n");
    EXPECT_FALSE(WithoutLines([&] { return ini.WriteString("A", "k", "1", false, true); }));
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(Lines(), "[A]\n[B]\n");
    EXPECT_FALSE(ini.Flush());
    EXPECT_TRUE(ini.WriteString("A", "k", "1", false, true));
    EXPECT_EQ(Contents("f.ini"), "[A]\nk=1\n\n[B]\n");
}

TEST_F(ShortMemoryIni, NewSectionIsRefusedWithAMessageAndNothingIsModified) {
    CIniFile& ini = Load(" [A] ");
    EXPECT_FALSE(WithoutLines([&] { return ini.WriteInteger("B", "k", 1); }));
    EXPECT_EQ(Message(), kLineMessage);
    EXPECT_FALSE(ini.Flush());
    EXPECT_EQ(Contents("f.ini"), " [A] ");
    EXPECT_EQ(Lines(), "[A]\n");
}

TEST_F(ShortMemoryIni, EntryThatIsThereIsReplacedAllTheSame) {
    CIniFile& ini = Load("[A]\nk=1\n");
    EXPECT_TRUE(WithoutLines([&] { return ini.WriteString("A", "k", "2", false, false); }));
    EXPECT_EQ(Message(), "");
    EXPECT_EQ(Lines(), "[A]\nk=2\n");
}

TEST_F(ShortMemoryIni, ReadingStopsAtTheFirstLineWithOneMessage) {
    CIniFile& ini = Load("[A]\n");
    const CString more = Written("more", "x\ny\nz");
    EXPECT_FALSE(WithoutLines([&] { return ini.ReadIniFile(more); }));
    EXPECT_EQ(Message(), kLineMessage);
    EXPECT_EQ(Lines(), "[A]\n");
}

// --- The parameter table ------------------------------------------------------------------------

TEST_F(ShortMemory, FirstSwitchIsRefusedAndALaterOneIsTheFirst) {
    CCLParams table;
    support::FailAllocationsOf({sizeof(CCLParams::CLParamDef)});
    EXPECT_FALSE(table.Add("/a", CLP_SWITCH, true));
    EXPECT_EQ(table.MakeNewNode(), nullptr);
    support::AllowAllocations();
    EXPECT_TRUE(table.Add("/b", CLP_SWITCH, false));
    char program[] = "x";
    char argument[] = "/b";
    char* argv[] = {program, argument};
    EXPECT_EQ(table.Parse(2, argv, true), 0);
    CString value;
    EXPECT_TRUE(table.GetValue(1U, value));
    EXPECT_FALSE(table.GetValue("/a"));
}

TEST_F(ShortMemory, SwitchBetweenTwoIsRefusedAndTheyStayNeighbours) {
    CCLParams table;
    EXPECT_TRUE(table.Add("/a", CLP_SWITCH, false));
    support::FailAllocationsOf({sizeof(CCLParams::CLParamDef)});
    EXPECT_FALSE(table.Add("/lost", CLP_SWITCH, true));
    support::AllowAllocations();
    EXPECT_TRUE(table.Add("/c", CLP_SWITCH, false));
    char program[] = "x";
    char argument[] = "/c";
    char* argv[] = {program, argument};
    EXPECT_EQ(table.Parse(2, argv, true), 0);
    CString value;
    EXPECT_FALSE(table.GetValue(1U, value));
    EXPECT_TRUE(table.GetValue(2U, value));
    EXPECT_FALSE(table.GetValue(3U, value));
}

// --- The launcher -------------------------------------------------------------------------------

TEST_F(ShortMemory, WithoutAnArgumentVectorNothingIsExecutedAndNoErrorNoted) {
    // Three arguments behind the name, and a null pointer behind them.
    const Sizes vectorSize = {5 * sizeof(char*)};
    EXPECT_EXIT(
        {
            CExec exec("a b c/true");
            support::FailAllocationsOf(vectorSize);
            const bool executed = exec.Execute();
            support::AllowAllocations();
            const bool refused = support::FailedSizes() == vectorSize;
            std::exit(!executed && refused && exec.GetLastError() == 0 ? 42 : 1);
        },
        testing::ExitedWithCode(42), "");
}

TEST_F(ShortMemory, WithoutAnArgumentVectorTheEarlierErrorStays) {
    const Sizes vectorSize = {3 * sizeof(char*)};
    EXPECT_EXIT(
        {
            setenv("PATH", "/usr/bin:/bin", 1);  // a folder that is closed to us is another error
            CExec exec;
            const bool failed = !exec.Execute("no-such-program") && exec.GetLastError() == ENOENT;
            support::FailAllocationsOf(vectorSize);
            const bool executed = exec.Execute("/true");
            support::AllowAllocations();
            std::exit(failed && !executed && exec.GetLastError() == ENOENT ? 42 : 1);
        },
        testing::ExitedWithCode(42), "");
}

}  // namespace
