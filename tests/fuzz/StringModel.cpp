// CString as its documentation tells it, step by step.
// Takes the long way wherever the class takes a short one.
#include "fuzz/StringModel.h"

#include <algorithm>
#include <cctype>

namespace fuzz {

namespace {

const std::string kBlanks = " \t\n";

bool Contains(const std::string& set, char c) {
    return set.find(c) != std::string::npos;
}

std::string Trimmed(std::string text) {
    while (!text.empty() && Contains(kBlanks, text.front())) {
        text.erase(0, 1);
    }
    while (!text.empty() && Contains(kBlanks, text.back())) {
        text.pop_back();
    }
    return text;
}

}  // namespace

// --- Changes ------------------------------------------------------------------------------------

void StringModel::Empty() {
    if (lock == 0) {
        text.clear();
        emptyToken = false;
    }
}

void StringModel::Assign(const std::string& other) {
    if (other.empty()) {
        Empty();
    } else if (lock == 0) {
        text = other;
    }
}

void StringModel::Append(const std::string& other) {
    if (lock == 0) {
        text += other;
    }
}

void StringModel::Repeat(char c, unsigned count) {
    if (lock != 0) {
        return;
    }
    if (count == 0) {
        Empty();
    } else {
        text = c == '\0' ? "" : std::string(count, c);
    }
}

bool StringModel::SetAt(unsigned index, char c) {
    if (lock != 0 || index >= text.size()) {
        return false;
    }
    text[index] = c;
    text = text.substr(0, text.find('\0'));
    return true;
}

bool StringModel::Remove(const std::string& sub) {
    const size_t position = sub.empty() ? std::string::npos : text.find(sub);
    if (lock != 0 || position == std::string::npos) {
        return false;
    }
    Assign(text.substr(0, position) + text.substr(position + sub.size()));
    return true;
}

bool StringModel::TrimLeft(const std::string& set) {
    if (lock != 0) {
        return false;
    }
    std::string kept = text;
    while (!kept.empty() && Contains(set, kept.front())) {
        kept.erase(0, 1);
    }
    Assign(kept);
    return true;
}

void StringModel::TrimRight(const std::string& set) {
    std::string kept = text;
    while (!kept.empty() && Contains(set, kept.back())) {
        kept.pop_back();
    }
    // A locked text that would become empty stays: emptying looks at the lock.
    if (kept.empty()) {
        Empty();
    } else {
        text = kept;
    }
}

bool StringModel::Convert(unsigned first, unsigned last, int (*convert)(int)) {
    if (lock != 0 || first >= last || last > text.size()) {
        return false;
    }
    for (unsigned i = first; i < last; ++i) {
        text[i] = static_cast<char>(convert(static_cast<unsigned char>(text[i])));
    }
    return true;
}

void StringModel::Lock(unsigned size) {
    if (size == 0) {
        Empty();
    } else {
        text = text.substr(0, size);
    }
    lock = size;
}

void StringModel::Release() {
    if (text.empty()) {
        Empty();
    }
    token.clear();
    remainder.clear();
    delimiter.clear();
    lock = 0;
}

// --- Questions ----------------------------------------------------------------------------------

int StringModel::Find(const std::string& sub, unsigned nth) const {
    if (sub.empty()) {
        return -1;
    }
    int last = -1;
    unsigned count = 0;
    for (size_t i = 0; i + sub.size() <= text.size(); ++i) {
        if (text.compare(i, sub.size(), sub) == 0) {
            last = static_cast<int>(i);
            if (++count == nth) {
                return last;
            }
        }
    }
    return nth == 0 ? last : -1;
}

int StringModel::CountOccurrences(const std::string& sub) const {
    if (sub.empty()) {
        return 0;
    }
    int count = 0;
    for (size_t i = text.find(sub); i != std::string::npos; i = text.find(sub, i + sub.size())) {
        ++count;
    }
    return count;
}

std::string StringModel::Left(int count) const {
    return count < 0 ? text : text.substr(0, static_cast<size_t>(count));
}

std::string StringModel::Mid(int start, unsigned count) const {
    const auto first = static_cast<size_t>(std::max(start, 0));
    if (first >= text.size()) {
        return "";
    }
    return text.substr(first, count == 0 ? std::string::npos : count);
}

std::string StringModel::Right(unsigned count) const {
    return count < text.size() ? text.substr(text.size() - count) : text;
}

// --- Tokens -------------------------------------------------------------------------------------

int StringModel::CountTokens(const std::string& delim) const {
    if (emptyToken) {
        return 1;
    }
    return text.empty() || delim.empty() ? 0 : CountOccurrences(delim) + 1;
}

std::string StringModel::GetToken(unsigned index, const std::string& delim) const {
    StringModel copy;
    copy.text = Trimmed(text);
    if (delim.empty() || copy.text.empty()) {
        return "";
    }
    size_t start = 0;
    if (index > 0) {
        const int position = copy.Find(delim, index);
        if (position < 0) {
            return "";
        }
        start = static_cast<size_t>(position) + delim.size();
    }
    const std::string rest = copy.text.substr(start);
    return rest.substr(0, rest.find(delim));
}

int StringModel::FindToken(const std::string& wanted, const std::string& delim) const {
    if (emptyToken) {
        return wanted.empty() ? 0 : -1;
    }
    std::string rest = Trimmed(text);
    if (delim.empty() || rest.empty()) {
        return -1;
    }
    size_t offset = 0;
    for (size_t i = rest.find(delim); i != std::string::npos; i = rest.find(delim)) {
        if (rest.substr(0, i) == wanted) {
            return static_cast<int>(offset);
        }
        offset += i + delim.size();
        rest = rest.substr(i + delim.size());
    }
    return rest == wanted ? static_cast<int>(offset) : -1;
}

int StringModel::NumberOfToken(const std::string& wanted, const std::string& delim) const {
    const int count = CountTokens(delim);
    int number = 0;
    while (number < count && GetToken(static_cast<unsigned>(number), delim) != wanted) {
        ++number;
    }
    return number;
}

void StringModel::AddToken(const std::string& added, const std::string& delim) {
    if (emptyToken || !text.empty()) {
        Append(delim);
    }
    if (emptyToken) {
        emptyToken = false;
    } else if (text.empty() && added.empty()) {
        emptyToken = true;
    }
    Append(added);
}

int StringModel::InsertBefore(const std::string& added, const std::string& before,
                              const std::string& delim) {
    const int count = CountTokens(delim);
    StringModel list;
    int position = -1;
    for (int i = 0; i < count; ++i) {
        const std::string current = GetToken(static_cast<unsigned>(i), delim);
        if (position < 0 && (before.empty() || current == before)) {
            position = i;
            list.AddToken(added, delim);
        }
        list.AddToken(current, delim);
    }
    if (position < 0) {
        position = count;
        list.AddToken(added, delim);
    }
    Assign(list.text);
    return position;
}

void StringModel::InsertAt(const std::string& added, unsigned index, const std::string& delim) {
    const auto count = static_cast<unsigned>(CountTokens(delim));
    StringModel list;
    for (unsigned i = 0; i < count; ++i) {
        if (i == index) {
            list.AddToken(added, delim);
        }
        list.AddToken(GetToken(i, delim), delim);
    }
    if (index >= count) {
        list.AddToken(added, delim);
    }
    Assign(list.text);
}

void StringModel::Sort(const std::string& delim) {
    const int count = CountTokens(delim);
    StringModel sorted;
    for (int i = 0; i < count; ++i) {
        const std::string current = GetToken(static_cast<unsigned>(i), delim);
        const int sortedCount = sorted.CountTokens(delim);
        bool inserted = false;
        for (int j = 0; j < sortedCount && !inserted; ++j) {
            const std::string candidate = sorted.GetToken(static_cast<unsigned>(j), delim);
            if (candidate > current) {
                sorted.InsertBefore(current, candidate, delim);
                inserted = true;
            }
        }
        if (!inserted) {
            sorted.AddToken(current, delim);
        }
    }
    if (!sorted.text.empty()) {
        Assign(sorted.text);
    }
}

std::string StringModel::StartTokens(const std::string& delim) {
    token = text;
    remainder.clear();
    delimiter = delim;
    return CutToken();
}

std::string StringModel::NextToken() {
    token = remainder;
    remainder.clear();
    return CutToken();
}

std::string StringModel::CutToken() {
    const size_t position = delimiter.empty() ? std::string::npos : token.find(delimiter);
    if (position != std::string::npos) {
        remainder = token.substr(position + delimiter.size());
        token = token.substr(0, position);
    }
    return token;
}

std::string StringModel::Break(const std::string& delim) {
    token = text;
    remainder.clear();
    const size_t position = delim.empty() ? std::string::npos : text.find(delim);
    if (position != std::string::npos) {
        token = text.substr(0, position + delim.size());
        remainder = text.substr(position + delim.size());
    }
    return token;
}

}  // namespace fuzz
