// The parameter table: registration, matching and the values found.
// Reports by result codes alone; the program that owns the switches words the messages.
#include "util/CLParams.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "util/CStringInternals.h"

namespace {

using string_internals::TextBuilder;
using string_internals::UpperCase;

constexpr int kMatched = 0;
constexpr int kNoMatch = 1;
constexpr int kUnknownMode = 2;

/// Whether two characters are the same, by their upper case unless case matters.
bool SameCharacter(char a, char b, bool caseSensitive) {
    return a == b || (!caseSensitive && UpperCase(a) == UpperCase(b));
}

/// What of `arg` stands behind `name`, null when it does not begin with it.
const char* RestBehindName(const char* arg, const char* name, bool caseSensitive) {
    for (; *name != '\0'; ++arg, ++name) {
        if (!SameCharacter(*arg, *name, caseSensitive)) {
            return nullptr;
        }
    }
    return arg;
}

bool IsSameText(const char* left, const char* right, bool caseSensitive) {
    const char* const rest = RestBehindName(left, right, caseSensitive);
    return rest != nullptr && *rest == '\0';
}

/// Whether `arg` is, or begins with, the entry's name. No argument begins with an empty one.
bool MatchesName(const CCLParams::CLParamDef& node, const char* arg, bool caseSensitive) {
    const char* const name = node.sName.GetBuffer();
    switch (node.eMode) {
        case CLP_SWITCH:
            return IsSameText(arg, name, caseSensitive);
        case CLP_VALUE:
        case CLP_PATH:
            return *name != '\0' && RestBehindName(arg, name, caseSensitive) != nullptr;
    }
    return false;
}

bool IsKnownMode(CLParamModes mode) {
    return mode == CLP_SWITCH || mode == CLP_VALUE || mode == CLP_PATH;
}

/// A blank and the argument; for an argument that is itself a single blank, the blank alone.
void AppendArgument(TextBuilder& value, const char* arg) {
    value.Append(' ');
    if (std::strcmp(arg, " ") != 0) {
        value.Append(arg);
    }
}

/// What GetValue answers for an entry, or for none. Requires: value is empty.
bool CopyValue(const CCLParams::CLParamDef* node, CString& value) {
    if (node == nullptr) {
        return false;
    }
    value = node->sValue;
    return node->bFound;
}

const char* TextBehind(const CString& name, const char* arg) {
    return arg + strnlen(arg, name.GetLength());
}

size_t CountQuotes(const char* text) {
    return static_cast<size_t>(std::count(text, text + std::strlen(text), '"'));
}

}  // namespace

CCLParams::CCLParams() = default;

CCLParams::~CCLParams() {
    DeleteNodes();
}

bool CCLParams::Add(CString name, CLParamModes mode, bool required) {
    auto* const node = new (std::nothrow)
        CLParamDef{.sName = name, .sValue = {}, .bRequired = required, .eMode = mode};
    return Append(node) != nullptr;
}

CCLParams::CLParamDef* CCLParams::MakeNewNode() {
    return Append(new (std::nothrow) CLParamDef);
}

/// Links an entry behind the last one; passes null on.
CCLParams::CLParamDef* CCLParams::Append(CLParamDef* node) {
    if (node == nullptr) {
        return nullptr;
    }
    if (m_pHead == nullptr) {
        m_pHead = node;
    } else {
        node->pPrev = m_pHead->pPrev;
        node->pPrev->pNext = node;
    }
    m_pHead->pPrev = node;
    return node;
}

void CCLParams::DeleteNodes() {
    while (m_pHead != nullptr) {
        CLParamDef* const node = m_pHead;
        m_pHead = node->pNext;
        delete node;
    }
}

int CCLParams::Parse(int argc, char** argv, bool caseSensitive) {
    m_bCaseSensitive = caseSensitive;
    const CDir program(CString(argc > 0 ? argv[0] : nullptr));
    int result = kMatched;
    for (int i = 1; i < argc && result == kMatched;) {
        result = ParseArgument(i, argc, argv);
    }
    if (result == kMatched && !AllRequiredFound()) {
        result = kNoMatch;
    }
    m_nCmdLineChars =
        static_cast<int32_t>(program.GetFileName().GetLength()) + CountFoundCharacters();
    return result;
}

/// Gives argv[i] to the first entry that matches it, and moves i behind what that entry took.
int CCLParams::ParseArgument(int& i, int argc, char** argv) {
    for (CLParamDef* node = m_pHead; node != nullptr; node = node->pNext) {
        if (node->bFound) {
            continue;
        }
        if (!IsKnownMode(node->eMode)) {
            return kUnknownMode;
        }
        if (MatchesArgument(*node, argv[i])) {
            node->bFound = true;
            TakeValue(*node, i, argc, argv);
            return kMatched;
        }
    }
    return kNoMatch;
}

bool CCLParams::MatchesArgument(const CLParamDef& node, const char* arg) {
    const bool isPositionalPath = node.eMode == CLP_PATH && node.sName.IsEmpty();
    return isPositionalPath ? !IsSwitch(arg, m_bCaseSensitive)
                            : MatchesName(node, arg, m_bCaseSensitive);
}

void CCLParams::TakeValue(CLParamDef& node, int& i, int argc, char** argv) {
    switch (node.eMode) {
        case CLP_SWITCH:
            ++i;
            break;
        case CLP_VALUE:
            GetParam(i, argc, argv, node.sName, node.sValue);
            break;
        case CLP_PATH:
            GetPathParam(i, argc, argv, node.sName, node.sValue);
            break;
    }
}

bool CCLParams::AllRequiredFound() const {
    for (const CLParamDef* node = m_pHead; node != nullptr; node = node->pNext) {
        if (node->bRequired && !node->bFound) {
            return false;
        }
    }
    return true;
}

int32_t CCLParams::CountFoundCharacters() const {
    size_t count = 0;
    for (const CLParamDef* node = m_pHead; node != nullptr; node = node->pNext) {
        if (node->bFound) {
            count += size_t{1} + node->sName.GetLength() + node->sValue.GetLength();
        }
    }
    return static_cast<int32_t>(count);
}

int CCLParams::GetNumberOfCommandLineCharacters() const {
    return m_nCmdLineChars;
}

const CCLParams::CLParamDef* CCLParams::FindNode(const CString& name) const {
    const CLParamDef* node = m_pHead;
    const char* const text = name.GetBuffer();
    while (node != nullptr && !IsSameText(node->sName.GetBuffer(), text, true)) {
        node = node->pNext;
    }
    return node;
}

const CCLParams::CLParamDef* CCLParams::FindNode(unsigned index) const {
    const CLParamDef* node = index == 0 ? nullptr : m_pHead;
    for (; node != nullptr && index > 1; --index) {
        node = node->pNext;
    }
    return node;
}

bool CCLParams::GetValue(CString name) {
    const CLParamDef* const node = FindNode(name);
    return node != nullptr && node->bFound;
}

bool CCLParams::GetValue(CString name, CString& value) {
    value.Empty();
    return CopyValue(FindNode(name), value);
}

bool CCLParams::GetValue(unsigned index, CString& value) {
    value.Empty();
    return CopyValue(FindNode(index), value);
}

bool CCLParams::GetValue(CString name, CDir& value) {
    CString text;
    const bool found = GetValue(name, text);
    if (found) {
        value = text;
    }
    return found;
}

bool CCLParams::GetValue(unsigned index, CDir& value) {
    CString text;
    const bool found = GetValue(index, text);
    if (found) {
        value = text;
    }
    return found;
}

bool CCLParams::IsSwitch(CString arg, bool caseSensitive) {
    for (const CLParamDef* node = m_pHead; node != nullptr; node = node->pNext) {
        if (!node->bFound && MatchesName(*node, arg.GetBuffer(), caseSensitive)) {
            return true;
        }
    }
    return false;
}

int CCLParams::GetParam(int& i, int argc, char** argv, CString name, CString& value) {
    value = TextBehind(name, argv[i]);
    // Collected, then appended once: a value may span as many arguments as the kernel takes.
    TextBuilder more;
    for (++i; i < argc && !IsSwitch(argv[i], m_bCaseSensitive); ++i) {
        AppendArgument(more, argv[i]);
    }
    value += more.Text();
    return i;
}

int CCLParams::GetPathParam(int& i, int argc, char** argv, CString name, CString& value) {
    value = TextBehind(name, argv[i]);
    ++i;
    size_t quotes = CountQuotes(value.GetBuffer());
    // The quotes of a locked value stay what they are: only a switch ends its arguments.
    const bool locked = !value.SetAt(0, value.GetAt(0));
    TextBuilder more;
    while (quotes == 1 && i < argc && !IsSwitch(argv[i], m_bCaseSensitive)) {
        AppendArgument(more, argv[i]);
        quotes += locked ? 0 : CountQuotes(argv[i]);
        ++i;
    }
    value += more.Text();
    return i;
}
