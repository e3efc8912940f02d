// The parameter table: registration, matching and the values found.
// Reports by result codes alone; the program that owns the switches words the messages.
#include "util/CLParams.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "util/CStringInternals.h"

namespace {

using string_internals::TextBuilder;

constexpr int kMatched = 0;
constexpr int kNoMatch = 1;
constexpr int kUnknownMode = 2;

CString FoldedCase(const CString& text, bool caseSensitive) {
    return caseSensitive ? text : text.Upper();
}

/// Whether `arg`, folded already, is or begins with the entry's name.
bool MatchesName(const CCLParams::CLParamDef& node, const CString& arg, bool caseSensitive) {
    const CString name = FoldedCase(node.sName, caseSensitive);
    switch (node.eMode) {
        case CLP_SWITCH:
            return arg == name;
        case CLP_VALUE:
        case CLP_PATH:
            return arg.StartsWith(name);
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
    CLParamDef* node = MakeNewNode();
    if (node == nullptr) {
        return false;
    }
    node->sName = name;
    node->bRequired = required;
    node->eMode = mode;
    return true;
}

CCLParams::CLParamDef* CCLParams::MakeNewNode() {
    auto* node = new (std::nothrow) CLParamDef;
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
    const CString arg = FoldedCase(argv[i], m_bCaseSensitive);
    for (CLParamDef* node = m_pHead; node != nullptr; node = node->pNext) {
        if (node->bFound) {
            continue;
        }
        if (!IsKnownMode(node->eMode)) {
            return kUnknownMode;
        }
        if (MatchesArgument(*node, arg)) {
            node->bFound = true;
            TakeValue(*node, i, argc, argv);
            return kMatched;
        }
    }
    return kNoMatch;
}

bool CCLParams::MatchesArgument(const CLParamDef& node, const CString& arg) {
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

bool CCLParams::GetValue(CString name) {
    CString ignored;
    return GetValue(name, ignored);
}

bool CCLParams::GetValue(CString name, CString& value) {
    value.Empty();
    for (const CLParamDef* node = m_pHead; node != nullptr; node = node->pNext) {
        if (node->sName == name) {
            value = node->sValue;
            return node->bFound;
        }
    }
    return false;
}

bool CCLParams::GetValue(unsigned index, CString& value) {
    value.Empty();
    unsigned number = 0;
    for (const CLParamDef* node = m_pHead; node != nullptr; node = node->pNext) {
        if (++number == index) {
            value = node->sValue;
            return node->bFound;
        }
    }
    return false;
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
    const CString folded = FoldedCase(arg, caseSensitive);
    for (const CLParamDef* node = m_pHead; node != nullptr; node = node->pNext) {
        if (!node->bFound && MatchesName(*node, folded, caseSensitive)) {
            return true;
        }
    }
    return false;
}

int CCLParams::GetParam(int& i, int argc, char** argv, CString name, CString& value) {
    // Collected here and assigned once: a value may span as many arguments as the kernel takes.
    TextBuilder collected;
    collected.Append(TextBehind(name, argv[i]));
    for (++i; i < argc && !IsSwitch(argv[i], m_bCaseSensitive); ++i) {
        AppendArgument(collected, argv[i]);
    }
    value = collected.Text();
    return i;
}

int CCLParams::GetPathParam(int& i, int argc, char** argv, CString name, CString& value) {
    TextBuilder collected;
    collected.Append(TextBehind(name, argv[i]));
    ++i;
    size_t quotes = CountQuotes(collected.Text());
    while (quotes == 1 && i < argc && !IsSwitch(argv[i], m_bCaseSensitive)) {
        AppendArgument(collected, argv[i]);
        quotes += CountQuotes(argv[i]);
        ++i;
    }
    value = collected.Text();
    return i;
}
