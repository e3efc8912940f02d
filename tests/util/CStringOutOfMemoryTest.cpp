// CString: every allocation that fails, in every operation, ends the process in the same way.
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "support/Allocation.h"
#include "util/CLParams.h"
#include "util/CString.h"

namespace {

const std::string kMemoryMessage =
    "\n\nMemory Allocation Error\n\n"
    "Not enough memory is available for this application.\n\n"
    "Please close some programs to free up memory and try running\n"
    "this application again.\n\n"
    "CString::CreateCharString\n";

constexpr int kSurvived = 42;

/// Runs the operation in as many processes as it makes allocations; in each another one of them
/// fails, with all those behind it.
void ExpectTheEndAtEveryAllocation(void (*operation)()) {
    const size_t before = support::CountAllocations();
    operation();
    const size_t needed = support::CountAllocations() - before;
    ASSERT_GT(needed, 0U);
    for (size_t allowed = 0; allowed < needed; ++allowed) {
        EXPECT_EXIT(
            {
                support::FailAllocationsAfter(allowed);
                operation();
                support::AllowAllocations();
                std::exit(kSurvived);
            },
            testing::ExitedWithCode(1), testing::Eq(kMemoryMessage))
            << allowed << " of " << needed << " allocations";
    }
}

// --- Every allocation ---------------------------------------------------------------------------

// The lists are longer than what a std::string holds without memory of its own.
constexpr char kList[] = "alpha beta gamma delta,beta beta beta beta beta,gamma,epsilon";

TEST(CStringOutOfMemory, ReadingTokens) {
    ExpectTheEndAtEveryAllocation([] { CString(kList).GetToken(1, ","); });
    ExpectTheEndAtEveryAllocation([] { CString(kList).FindToken("gamma", ","); });
    ExpectTheEndAtEveryAllocation([] { CString(kList).GetTokenNumber("gamma", ","); });
    ExpectTheEndAtEveryAllocation([] { CString(kList).GetNumberTokens(","); });
}

TEST(CStringOutOfMemory, ParsingTokens) {
    ExpectTheEndAtEveryAllocation([] {
        CString tokens[2];
        CString(kList).ParseTokens(tokens, 2, ",");
    });
}

TEST(CStringOutOfMemory, AddingATokenToAList) {
    ExpectTheEndAtEveryAllocation([] { CString(kList).AddToken("omega", ","); });
    ExpectTheEndAtEveryAllocation([] { CString().AddToken("omega", ","); });
}

TEST(CStringOutOfMemory, InsertingATokenBeforeAnother) {
    ExpectTheEndAtEveryAllocation([] { CString(kList).InsertToken("omega", "gamma", ","); });
}

TEST(CStringOutOfMemory, InsertingATokenByNumber) {
    ExpectTheEndAtEveryAllocation([] { CString(kList).InsertToken("omega", 1U, ","); });
}

TEST(CStringOutOfMemory, SortingTokens) {
    ExpectTheEndAtEveryAllocation([] { CString("gamma,beta beta beta beta,a").SortTokens(","); });
}

TEST(CStringOutOfMemory, RunningTokenizer) {
    ExpectTheEndAtEveryAllocation([] { CString().BufferInit(); });
    ExpectTheEndAtEveryAllocation([] {
        CString list(kList);
        list.StrTok(",");
        list.StrTok();
    });
    ExpectTheEndAtEveryAllocation([] {
        CString list(kList);
        list.StrBreak(",");
        list.StrBreak();
        list.StrTokIt();
    });
}

TEST(CStringOutOfMemory, ConstructionAndAppending) {
    ExpectTheEndAtEveryAllocation([] { CString(CString("abc")) += "d"; });
    ExpectTheEndAtEveryAllocation([] { CString('x', 5) = CString(-5); });
    ExpectTheEndAtEveryAllocation([] { CString(0.5) = 'c'; });
    ExpectTheEndAtEveryAllocation([] { 'a' + (CString("b") + "c" + 'd' + CString("e")); });
}

TEST(CStringOutOfMemory, BuffersOfTheCaller) {
    ExpectTheEndAtEveryAllocation([] { CString("abc").GetBuffer(10); });
    ExpectTheEndAtEveryAllocation([] { delete[] CString("abc").GetCharString(); });
    ExpectTheEndAtEveryAllocation([] {
        CString string;
        string.GetBuffer(10)[0] = '\0';
        string.ReleaseBuffer();
        string.RepeatChar('x', 3);
        string.ReleaseBuffer();
    });
}

TEST(CStringOutOfMemory, PartsCaseAndTrimming) {
    ExpectTheEndAtEveryAllocation([] { CString("abc").Left(1); });
    ExpectTheEndAtEveryAllocation([] { CString("abc").Mid(1, 1); });
    ExpectTheEndAtEveryAllocation([] { CString("abc").Right(1); });
    ExpectTheEndAtEveryAllocation([] { CString("abc").Upper(); });
    ExpectTheEndAtEveryAllocation([] { CString("abc").ToUpper(1); });
    ExpectTheEndAtEveryAllocation([] { CString(" abc ").Trim(" "); });
    ExpectTheEndAtEveryAllocation([] { CString("abc").RemoveSubstring("b"); });
}

TEST(CStringOutOfMemory, ValueOfASwitchOverSeveralArguments) {
    ExpectTheEndAtEveryAllocation([] {
        CCLParams table;
        char program[] = "program";
        char first[] = "/m:a value of some length";
        char second[] = "and a second one of some length";
        char* argv[] = {program, first, second};
        CString value;
        int i = 1;
        table.GetParam(i, 3, argv, "/m:", value);
    });
}

// --- More than can be counted -------------------------------------------------------------------

/// A text of `length` times 'x' that takes the memory of a small part of it.
class HugeText {
  public:
    explicit HugeText(size_t length) : m_size(length + 1) {
        const int file = memfd_create("part", MFD_CLOEXEC);
        if (file < 0 || ftruncate(file, kPart) != 0) {
            std::abort();
        }
        char* const part = Map(nullptr, kPart, file, MAP_SHARED);
        std::memset(part, 'x', kPart);
        munmap(part, kPart);
        m_text = Map(nullptr, m_size, -1, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE);
        for (size_t done = 0; done < m_size; done += kPart) {
            Map(m_text + done, std::min<size_t>(kPart, m_size - done), file,
                MAP_PRIVATE | MAP_FIXED);
        }
        close(file);
        m_text[length] = '\0';
    }
    HugeText(const HugeText&) = delete;
    HugeText& operator=(const HugeText&) = delete;
    ~HugeText() { munmap(m_text, m_size); }

    const char* Get() const { return m_text; }

  private:
    static constexpr int kPart = 1 << 24;

    static char* Map(void* where, size_t size, int file, int flags) {
        void* const memory = mmap(where, size, PROT_READ | PROT_WRITE, flags, file, 0);
        if (memory == MAP_FAILED) {
            std::abort();
        }
        return static_cast<char*>(memory);
    }

    size_t m_size;
    char* m_text = nullptr;
};

TEST(CStringOutOfMemory, TextLongerThanItsLengthCanCount) {
    const HugeText text(4294967296U);
    EXPECT_EXIT(CString string(text.Get()), testing::ExitedWithCode(1),
                testing::Eq(kMemoryMessage));
    EXPECT_EXIT(
        {
            CString string("abc");
            string = text.Get();
        },
        testing::ExitedWithCode(1), testing::Eq(kMemoryMessage));
}

TEST(CStringOutOfMemory, AppendingBeyondWhatTheLengthCanCount) {
    const HugeText text(4294967295U);
    EXPECT_EXIT(
        {
            CString string("x");
            string += text.Get();
        },
        testing::ExitedWithCode(1), testing::Eq(kMemoryMessage));
}

void PrintFailedSizes() {
    for (const size_t size : support::FailedSizes()) {
        std::fprintf(stderr, "%zu\n", size);
    }
}

TEST(CStringOutOfMemory, LargestLengthThatCanBeAskedFor) {
    EXPECT_EXIT(
        {
            std::atexit(PrintFailedSizes);
            support::FailAllocationsOf({4294967296U});
            CString string('x', 4294967295U);
        },
        testing::ExitedWithCode(1), testing::Eq(kMemoryMessage + "4294967296\n"));
}

}  // namespace
