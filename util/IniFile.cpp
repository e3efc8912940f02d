// INI files: reading, searching, editing and writing back.
// Replaces the whole file when it writes; a failure leaves the changes marked as unsaved.
#include "util/IniFile.h"

#include <algorithm>
#include <memory>
#include <new>
#include <string_view>

#include "util/CStringInternals.h"
#include "util/ErrorHandler.h"
#include "util/MyFileIO.h"

namespace {

using string_internals::Trimmed;
using string_internals::WithoutBlanks;

bool EqualsNoCase(std::string_view text, const CString& other) {
    using string_internals::LowerCase;
    return text.size() == other.GetLength() &&
           std::equal(text.begin(), text.end(), other.GetBuffer(),
                      [](char a, char b) { return LowerCase(a) == LowerCase(b); });
}

bool IsHeader(const CString& line) {
    return *line.GetBuffer() == '[';
}

bool IsHeaderOf(const CString& line, const CString& section) {
    if (!IsHeader(line)) {
        return false;
    }
    const std::string_view text = line.GetBuffer() + 1;
    return EqualsNoCase(WithoutBlanks(text.substr(0, text.find(']'))), section);
}

bool IsEntryOf(const CString& line, const CString& key) {
    const std::string_view text = line.GetBuffer();
    const size_t equals = text.find('=');
    return equals != std::string_view::npos &&
           EqualsNoCase(WithoutBlanks(text.substr(0, equals)), key);
}

}  // namespace

CIniFile::CIniFile(CString name, bool spaced) {
    Initialize(name, spaced);
}

CIniFile::CIniFile(CDir name, bool spaced) {
    Initialize(name.ToString(), spaced);
}

CIniFile::~CIniFile() {
    WriteIniFile();
    DeleteLines();
}

void CIniFile::Initialize(CString name, bool spaced) {
    DeleteLines();
    m_bModified = false;
    m_bSpaced = spaced;
    m_sFileName = name;
    ReadIniFile(name);
}

bool CIniFile::Exists() const {
    return CDir().Exists(m_sFileName);
}

// --- Reading ------------------------------------------------------------------------------------

CString CIniFile::ReadString(CString section, CString key) {
    return ReadString(section, key, "");
}

CString CIniFile::ReadString(CString section, CString key, CString def) {
    CString line;
    if (FindItem(section, key, line)) {
        m_sValue = Trimmed(line.Mid(line.Find("=") + 1, 0));
    } else {
        m_sValue = def;
    }
    return m_sValue;
}

int CIniFile::ReadInteger(CString section, CString key) {
    return ReadInteger(section, key, 0);
}

int CIniFile::ReadInteger(CString section, CString key, int def) {
    return ReadString(section, key, def).ToInt();
}

bool CIniFile::FindItem(CString section, CString key, CString& line) const {
    bool inSection = section.IsEmpty();
    bool found = false;
    const IniLineDef* last = nullptr;
    for (const IniLineDef* current = m_pLines; current != nullptr; current = current->m_pNext) {
        last = current;
        const CString& text = current->m_sLine;
        if (text.IsEmpty() || *text.GetBuffer() == ';') {
            continue;
        }
        if (!inSection) {
            inSection = IsHeaderOf(text, section);
            continue;
        }
        found = !IsHeader(text) && IsEntryOf(text, key);
        if (found || IsHeader(text)) {
            break;
        }
    }
    if (last != nullptr) {
        line = last->m_sLine;
    }
    return found;
}

// --- Writing entries ----------------------------------------------------------------------------

bool CIniFile::WriteString(CString section, CString key, CString value, bool allowDuplicate,
                           bool flush) {
    return WriteIt(section, key, value, allowDuplicate, flush);
}

bool CIniFile::WriteInteger(CString section, CString key, int n) {
    return WriteInteger(section, key, n, false);
}

bool CIniFile::WriteInteger(CString section, CString key, int n, bool allowDuplicate) {
    return WriteString(section, key, n, allowDuplicate, false);
}

bool CIniFile::WriteIt(CString section, CString key, CString value, bool allowDuplicate,
                       bool flush) {
    const CString entry = EntryLine(key, value);
    bool inSection = section.IsEmpty();
    // Unlike FindItem, this looks at comment lines too.
    for (IniLineDef* line = m_pLines; line != nullptr; line = line->m_pNext) {
        if (line->m_sLine.IsEmpty()) {
            continue;
        }
        if (!inSection) {
            inSection = IsHeaderOf(line->m_sLine, section);
        } else if (IsHeader(line->m_sLine)) {
            return InsertEntryBefore(line, entry) && MarkChanged(flush);
        } else if (!key.IsEmpty() && IsEntryOf(line->m_sLine, key)) {
            line->m_sLine = Trimmed(entry);
            return MarkChanged(flush);
        } else if (key.IsEmpty() && !allowDuplicate && line->m_sLine == value) {
            return false;
        }
    }
    return AppendEntry(section, inSection, entry) && MarkChanged(flush);
}

CString CIniFile::EntryLine(const CString& key, const CString& value) const {
    return key.IsEmpty() ? value : key + (m_bSpaced ? " = " : "=") + value;
}

/// Puts the entry at the end of the section before `header`, so that one blank line at least
/// separates the two sections.
bool CIniFile::InsertEntryBefore(IniLineDef* header, const CString& entry) {
    if (entry.IsEmpty()) {
        return true;
    }
    IniLineDef* const blanks = RewindBlanks(header);
    return InsertLine(blanks, entry) && (blanks != header || InsertLine(header, ""));
}

/// Where lines are added at the end: before the empty lines there; null stands for the end itself.
CIniFile::IniLineDef* CIniFile::EndOfLines() const {
    if (m_pLines == nullptr || !m_pLines->m_pPrev->m_sLine.IsEmpty()) {
        return nullptr;
    }
    IniLineDef* const last = m_pLines->m_pPrev;
    return RewindBlanks(last);
}

/// Adds the entry at the end of the lines, below a new header when there is no such section.
bool CIniFile::AppendEntry(const CString& section, bool inSection, const CString& entry) {
    IniLineDef* const end = EndOfLines();
    if (!inSection) {
        const bool needsBlank = m_pLines != nullptr && !IsFirst(end);
        if ((needsBlank && !InsertLine(end, "")) || !InsertLine(end, "[" + section + "]")) {
            return false;
        }
    }
    return entry.IsEmpty() || InsertLine(end, entry);
}

bool CIniFile::MarkChanged(bool flush) {
    m_bModified = true;
    if (flush) {
        Flush();
    }
    return true;
}

// --- Removing entries ---------------------------------------------------------------------------

bool CIniFile::RemoveString(CString section, CString key, CString value, bool firstOnly,
                            bool flush) {
    return RemoveIt(section, key, value, firstOnly, flush);
}

bool CIniFile::RemoveIt(CString section, CString key, CString value, bool firstOnly, bool flush) {
    const bool removesSection = key.IsEmpty() && value.IsEmpty();
    const auto isMeant = [&](const CString& text) {
        return !text.IsEmpty() &&
               (removesSection || (key.IsEmpty() ? text == value : IsEntryOf(text, key)));
    };
    bool inSection = section.IsEmpty();
    for (IniLineDef* line = m_pLines; line != nullptr;) {
        const CString& text = line->m_sLine;
        if (inSection && IsHeader(text)) {
            break;
        }
        const bool entersSection = !inSection && IsHeaderOf(text, section);
        const bool removes = inSection ? isMeant(text) : entersSection && removesSection;
        inSection = inSection || entersSection;
        if (!removes) {
            line = line->m_pNext;
            continue;
        }
        line = entersSection ? RemoveHeader(line) : RemoveLine(line);
        if (!key.IsEmpty() || (firstOnly && !removesSection)) {
            break;
        }
        if (!removesSection && line != nullptr) {
            // The line behind a removed one is passed over.
            line = line->m_pNext;
        }
    }
    return MarkChanged(flush);
}

/// Removes a header and the line before it when that is empty. Before the first line stands, by
/// its link, the last one. Returns the line that followed the header.
CIniFile::IniLineDef* CIniFile::RemoveHeader(IniLineDef* header) {
    IniLineDef* const before = header->m_pPrev;
    if (before != nullptr && before->m_sLine.IsEmpty()) {
        RemoveLine(before);
    }
    return RemoveLine(header);
}

// --- The file -----------------------------------------------------------------------------------

bool CIniFile::Flush() {
    return WriteIniFile();
}

bool CIniFile::WriteIniFile() {
    if (m_bModified) {
        m_bModified = !WriteIniFile(m_sFileName);
    }
    return m_bModified;
}

bool CIniFile::ReadIniFile(CString name) {
    CMyFileIO file;
    if (!file.OpenFile(name, "r")) {
        return false;
    }
    bool result = true;
    while (result && !file.IsEOF()) {
        CString line;
        // A newline at the end of the file leads to one more read, which finds nothing.
        result = file.ReadString(line) && AddLine(line);
    }
    return result;
}

bool CIniFile::WriteIniFile(CString name) {
    CMyFileIO file;
    if (!file.OpenFile(name, "w+")) {
        return false;
    }
    bool result = true;
    for (const IniLineDef* line = m_pLines; line != nullptr && result; line = line->m_pNext) {
        result = file.WriteStringNL(line->m_sLine);
    }
    // Closing stores the rest: a full disk may show only here.
    return file.Close() && result;
}

// --- The list of lines --------------------------------------------------------------------------

CIniFile::IniLineDef* CIniFile::MakeNewLine(CString text) const {
    auto* line = new (std::nothrow) IniLineDef;
    if (line != nullptr) {
        line->m_sLine = Trimmed(text);
    }
    return line;
}

bool CIniFile::AddLine(CString text) {
    std::unique_ptr<IniLineDef> line(MakeNewLine(text));
    if (line == nullptr) {
        char where[] = "IniFile.AddLine()";
        CErrorHandler().ErrorHandler(CErrorHandler::ERROR_CONTINUE,
                                     CErrorHandler::MEMORY_ALLOCATION_ERROR, where);
        return false;
    }
    if (m_pLines == nullptr) {
        m_pLines = line.get();
    } else if (m_pLines->m_pPrev == nullptr) {
        return false;
    } else {
        m_pLines->m_pPrev->m_pNext = line.get();
        line->m_pPrev = m_pLines->m_pPrev;
    }
    m_pLines->m_pPrev = line.release();
    return true;
}

bool CIniFile::InsertLine(IniLineDef* before, CString text) {
    if (before == nullptr || m_pLines == nullptr) {
        return AddLine(text);
    }
    std::unique_ptr<IniLineDef> line(MakeNewLine(text));
    if (line == nullptr || before->m_pPrev == nullptr) {
        return false;
    }
    line->m_pNext = before;
    line->m_pPrev = before->m_pPrev;
    if (IsFirst(before)) {
        m_pLines = line.get();
    } else {
        before->m_pPrev->m_pNext = line.get();
    }
    before->m_pPrev = line.release();
    return true;
}

CIniFile::IniLineDef* CIniFile::RemoveLine(IniLineDef* line) {
    if (line == nullptr || m_pLines == nullptr) {
        return line;
    }
    const std::unique_ptr<IniLineDef> removed(line);
    IniLineDef* const next = line->m_pNext;
    if (IsFirst(line)) {
        m_pLines = next;
    } else {
        // No link leads to a removed line, which the analyzer cannot know.
        line->m_pPrev->m_pNext = next;  // NOLINT(clang-analyzer-cplusplus.NewDelete)
    }
    // Behind the last line the first one takes over the link, as it always points to the last.
    IniLineDef* const keeper = next != nullptr ? next : m_pLines;
    if (keeper != nullptr) {
        keeper->m_pPrev = line->m_pPrev;
    }
    return next;
}

CIniFile::IniLineDef* CIniFile::RewindBlanks(IniLineDef* line) const {
    if (line == nullptr || m_pLines == nullptr) {
        return line;
    }
    while (!IsFirst(line) && line->m_pPrev->m_sLine.IsEmpty()) {
        line = line->m_pPrev;
    }
    return line;
}

void CIniFile::DeleteLines() {
    while (m_pLines != nullptr) {
        const std::unique_ptr<IniLineDef> line(m_pLines);
        m_pLines = line->m_pNext;
    }
}
