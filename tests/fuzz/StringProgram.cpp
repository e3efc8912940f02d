// Random programs on strings: each step does the same to a CString and to its model, and both must
// agree on the answer and on what they hold afterwards.
#include <cctype>
#include <utility>

#include "fuzz/Input.h"
#include "fuzz/StringModel.h"
#include "util/CString.h"

namespace {

using fuzz::Input;
using fuzz::RequireEqual;
using fuzz::StringModel;

/// A string and what it should be.
struct Pair {
    CString real;
    StringModel model;
};

std::string Text(const CString& text) {
    return text.GetBuffer();
}

long Sign(long number) {
    return (number > 0 ? 1 : 0) - (number < 0 ? 1 : 0);
}

void Change(Pair& s, Input& input) {
    const std::string text = input.Text();
    const char* const raw = text.c_str();
    switch (input.Byte() % 10) {
        case 0:
            s.real = raw;
            s.model.Assign(text);
            break;
        case 1:
            s.real += raw;
            s.model.Append(text);
            break;
        case 2: {
            const auto c = static_cast<char>(input.Byte());
            s.real += c;
            s.model.Append(c == '\0' ? "" : std::string(1, c));
            break;
        }
        case 3: {
            const unsigned count = input.Byte() % 40;
            s.real.RepeatChar(raw[0], count);
            s.model.Repeat(raw[0], count);
            break;
        }
        case 4: {
            const unsigned index = input.Byte() % 40;
            const auto c = static_cast<char>(input.Byte());
            RequireEqual(s.real.SetAt(index, c), s.model.SetAt(index, c), "SetAt");
            break;
        }
        case 5:
            RequireEqual(s.real -= raw, s.model.Remove(text), "-=");
            break;
        case 6:
            s.real.Empty();
            s.model.Empty();
            break;
        case 7: {
            const unsigned size = input.Byte() % 40;
            s.real.GetBuffer(size);
            s.model.Lock(size);
            break;
        }
        case 8:
            s.real.ReleaseBuffer();
            s.model.Release();
            break;
        default:
            // From a pointer into the string's own buffer.
            s.real = std::as_const(s.real).GetBuffer() + s.real.GetLength() / 2;
            s.model.Assign(s.model.text.substr(s.model.text.size() / 2));
            break;
    }
}

void TrimOrConvert(Pair& s, Input& input) {
    const std::string set = input.Text();
    const auto index = static_cast<unsigned>(input.Byte() % 40);
    const auto whole = static_cast<unsigned>(s.model.text.size());
    switch (input.Byte() % 7) {
        case 0: {
            const std::string result = s.real.TrimLeft(set.c_str());
            RequireEqual(result, s.model.TrimLeft(set) ? s.model.text : "", "TrimLeft");
            break;
        }
        case 1: {
            const std::string result = s.real.TrimRight(set.c_str());
            s.model.TrimRight(set);
            RequireEqual(result, s.model.text, "TrimRight");
            break;
        }
        case 2: {
            const std::string result = s.real.Trim(set.c_str());
            s.model.TrimLeft(set);
            s.model.TrimRight(set);
            RequireEqual(result, s.model.text, "Trim");
            break;
        }
        case 3: {
            const std::string result = Text(s.real.ToUpper());
            const bool changes = s.model.Convert(0, whole, std::toupper);
            RequireEqual(result, changes ? s.model.text : "", "ToUpper");
            break;
        }
        case 4: {
            const std::string result = Text(s.real.ToLower());
            const bool changes = s.model.Convert(0, whole, std::tolower);
            RequireEqual(result, changes ? s.model.text : "", "ToLower");
            break;
        }
        case 5: {
            const std::string result = Text(s.real.ToUpper(index));
            const bool changes = s.model.Convert(index, index + 1, std::toupper);
            RequireEqual(result, changes ? s.model.text : "", "ToUpper of one character");
            break;
        }
        default: {
            const std::string result = Text(s.real.ToLower(index));
            const bool changes = s.model.Convert(index, index + 1, std::tolower);
            RequireEqual(result, changes ? s.model.text : "", "ToLower of one character");
            break;
        }
    }
}

void Ask(const Pair& s, const Pair& other, Input& input) {
    const std::string text = input.Text();
    const char* const raw = text.c_str();
    const unsigned number = input.Byte() % 48;
    const int start = static_cast<int>(input.Byte()) - 20;
    const StringModel& model = s.model;
    RequireEqual(s.real.Find(raw), model.Find(text, 1), "Find");
    RequireEqual(s.real.Find(raw, number), model.Find(text, number), "Find the nth");
    RequireEqual(s.real.ReverseFind(raw), model.Find(text, 0), "ReverseFind");
    RequireEqual(s.real.IsSubstring(raw), model.Find(text, 1) >= 0, "IsSubstring");
    RequireEqual(s.real.StartsWith(raw), !text.empty() && model.text.starts_with(text),
                 "StartsWith");
    RequireEqual(s.real.EndsWith(raw), !text.empty() && model.text.ends_with(text), "EndsWith");
    RequireEqual(s.real.GetNumberOccurances(raw), model.CountOccurrences(text),
                 "GetNumberOccurances");
    RequireEqual(Text(s.real.Left(start)), model.Left(start), "Left");
    RequireEqual(Text(s.real.Mid(start, number)), model.Mid(start, number), "Mid");
    RequireEqual(Text(s.real.Right(number)), model.Right(number), "Right");
    RequireEqual(s.real.GetAt(number), number < model.text.size() ? model.text[number] : '\0',
                 "GetAt");
    RequireEqual(s.real.GetLastChar(), model.text.empty() ? '\0' : model.text.back(),
                 "GetLastChar");
    RequireEqual(Text(s.real + other.real), model.text + other.model.text, "+");
    RequireEqual(Text(s.real + raw), model.text + text, "+ text");
    RequireEqual(Text(raw + s.real), text + model.text, "text +");
    RequireEqual(Sign(s.real.Compare(other.real)), Sign(model.text.compare(other.model.text)),
                 "Compare");
    RequireEqual(s.real < other.real, model.text < other.model.text, "<");
    RequireEqual(s.real == raw, model.text == text, "==");
}

void UseTokens(Pair& s, Input& input) {
    const std::string text = input.Text();
    const std::string second = input.Text();
    const std::string delim = input.Text();
    const char* const raw = text.c_str();
    const char* const mark = delim.c_str();
    const unsigned index = input.Byte() % 12;
    StringModel& model = s.model;
    switch (input.Byte() % 10) {
        case 0:
            s.real.AddToken(raw, mark);
            model.AddToken(text, delim);
            break;
        case 1:
            RequireEqual(s.real.InsertToken(raw, CString(second.c_str()), mark),
                         model.InsertBefore(text, second, delim), "InsertToken before another");
            break;
        case 2:
            s.real.InsertToken(raw, index, mark);
            model.InsertAt(text, index, delim);
            break;
        case 3:
            s.real.SortTokens(mark);
            model.Sort(delim);
            break;
        case 4:
            RequireEqual(Text(s.real.StrTok(mark)), model.StartTokens(delim), "StrTok");
            break;
        case 5:
            RequireEqual(Text(s.real.StrTok()), model.NextToken(), "the next StrTok");
            break;
        case 6:
            RequireEqual(Text(s.real.StrTokIt()), model.CutToken(), "StrTokIt");
            break;
        case 7:
            RequireEqual(Text(s.real.StrBreak(mark)), model.Break(delim), "StrBreak");
            break;
        case 8:
            RequireEqual(Text(s.real.StrBreak()), model.remainder, "the rest of StrBreak");
            break;
        default: {
            CString array[4];
            const unsigned count = s.real.ParseTokens(array, 4, mark);
            RequireEqual(count, std::min(4, model.CountTokens(delim)), "ParseTokens");
            for (unsigned i = 0; i < count; ++i) {
                RequireEqual(Text(array[i]), model.GetToken(i, delim), "a parsed token");
            }
            break;
        }
    }
    RequireEqual(s.real.GetNumberTokens(mark), model.CountTokens(delim), "GetNumberTokens");
    RequireEqual(Text(s.real.GetToken(index, mark)), model.GetToken(index, delim), "GetToken");
    RequireEqual(s.real.FindToken(raw, mark), model.FindToken(text, delim), "FindToken");
    RequireEqual(s.real.IsToken(raw, mark), model.FindToken(text, delim) >= 0, "IsToken");
    RequireEqual(s.real.GetTokenNumber(raw, mark), model.NumberOfToken(text, delim),
                 "GetTokenNumber");
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr int kMostSteps = 200;
    constexpr size_t kLongestText = 500;  // the model takes its time, to sort above all
    Input input(data, size);
    Pair pairs[2];
    for (int step = 0; step < kMostSteps && !input.IsEmpty(); ++step) {
        const uint8_t choice = input.Byte();
        Pair& chosen = pairs[choice & 1];
        switch (choice / 2 % 4) {
            case 0:
                Change(chosen, input);
                break;
            case 1:
                TrimOrConvert(chosen, input);
                break;
            case 2:
                Ask(chosen, pairs[1 - (choice & 1)], input);
                break;
            default:
                UseTokens(chosen, input);
                break;
        }
        RequireEqual(Text(chosen.real), chosen.model.text, "the text after a step");
        if (chosen.model.text.size() > kLongestText) {
            break;
        }
    }
    return 0;
}
