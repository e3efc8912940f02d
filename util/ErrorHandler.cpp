// Composes error messages from a fixed table and writes them to standard error.
// Allocates nothing and never writes past its message buffer.
#include "util/ErrorHandler.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace {

constexpr size_t kMessageSize = 512;

/// What a kind of error puts before and behind the caller's detail.
struct KindText {
    const char* before;
    const char* after;
    bool showsDetail;
};

// In the order of the kinds' values.
constexpr KindText kKindTexts[] = {
    {"", "", false},
    {"General System Error\n\n", "", true},
    {"General Program Error\n\n", "", true},
    {"", "", true},
    {"Memory Allocation Error\n\n"
     "Not enough memory is available for this application.\n\n"
     "Please close some programs to free up memory and try running\n"
     "this application again.\n\n",
     "", true},
    {"File Open Error\n\nUnable to open file...\n\n", "", true},
    {"File Read Error\n\nUnable to read from file...\n\n", "", true},
    {"File Write Error\n\nUnable to write to file...\n\n", "", true},
    {"File Close Error\n\nUnable to close file...\n\n", "", true},
    {"Parse Error\n\nUnable to parse data file...\n\n",
     "The data file may not be in the correct format or it may be corrupt.\n\n", true},
    {"TCP/IP Error\n\n", "", true},
};

const KindText& TextOfKind(CErrorHandler::ErrorCodeDef kind) {
    const auto index = static_cast<unsigned>(kind);
    return kKindTexts[index < std::size(kKindTexts) ? index : 0];
}

/// A parse error shows its detail when there is one or when its first character is not NUL. The
/// second question is asked for a missing detail only, and reads through the null pointer.
bool ParseErrorShowsDetail(const char* detail) {
    // NOLINTNEXTLINE(clang-analyzer-core.NullDereference)
    return detail != nullptr || *static_cast<const volatile char*>(detail) != '\0';
}

/// A message that drops what does not fit.
class Message {
  public:
    void Append(const char* text) {
        const size_t length = strnlen(text, kMessageSize - 1 - m_length);
        std::memcpy(m_text + m_length, text, length);
        m_length += length;
    }
    const char* Text() const { return m_text; }

  private:
    char m_text[kMessageSize] = {};
    size_t m_length = 0;
};

Message Compose(CErrorHandler::ErrorCodeDef kind, const char* detail) {
    const KindText& text = TextOfKind(kind);
    Message message;
    message.Append("\n");
    message.Append(text.before);
    if (kind == CErrorHandler::PARSE_ERROR) {
        if (ParseErrorShowsDetail(detail)) {
            message.Append(detail);
            message.Append("\n\n");
        }
    } else if (text.showsDetail) {
        message.Append(detail);
    }
    message.Append(text.after);
    return message;
}

/// The next character of standard input that is no blank; EOF when there is none.
int NextVisibleCharacter() {
    int c = std::getchar();
    while (c != EOF && std::isspace(c) != 0) {
        c = std::getchar();
    }
    return c;
}

/// Whether the person at the terminal wants to go on. Reads a second non-blank character before
/// it answers, which has no meaning; without any input the answer is no.
bool UserWantsToContinue() {
    std::fputs("\nContinue anyway? ", stderr);
    const int answer = NextVisibleCharacter();
    NextVisibleCharacter();
    return answer == 'y' || answer == 'Y';
}

}  // namespace

CErrorHandler::CErrorHandler() = default;

CErrorHandler::~CErrorHandler() = default;

void CErrorHandler::ErrorHandler(ErrorCodeDef response, ErrorCodeDef kind, char* detail) {
    std::fprintf(stderr, "\n%s\n", Compose(kind, detail).Text());
    const bool fatal =
        response == ERROR_FATAL || (response == ERROR_QUERY && !UserWantsToContinue());
    if (fatal) {
        std::exit(EXIT_FAILURE);
    }
}
