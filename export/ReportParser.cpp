// Reads reports in INI or Properties layout.
#include "export/ReportParser.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "export/Utf8.h"

namespace report {

namespace {

constexpr char kIniStart[] = "[System]";
constexpr char kIniPci[] = "[PCI]";
constexpr char kSystemPrefix[] = "System_";
constexpr char kPciPrefix[] = "PCI_";
// How systally says that it has no report, in place of one.
constexpr std::string_view kFailures[] = {"Critical error in srvinfo", "Catastrophic ",
                                          "Cannot open /proc/bus/pci"};

constexpr char kBetween[] = " =";  // and a blank, which editors like to drop where no value follows

template <typename Integer>
bool ToNumber(std::string_view text, int base, Integer& number) {
    const char* const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, number, base);
    return error == std::errc() && last == end;
}

/// Stores a value in the field of its kind; false when it is no such value.
struct Store {
    bool operator()(Text field) const {
        report.*field = ToUtf8(value);
        return true;
    }
    bool operator()(Number field) const { return ToNumber(value, 10, report.*field); }
    bool operator()(Flag field) const {
        report.*field = value == "TRUE";
        return report.*field || value == "FALSE";
    }
    bool operator()(OptionalNumber field) const {
        return value.empty() || ToNumber(value, 10, (report.*field).emplace());
    }
    bool operator()(NumberList field) const {
        return ToNumber(value, 10, (report.*field).emplace_back());
    }
    bool operator()(HexList field) const {
        return ToNumber(value, 16, (report.*field).emplace_back());
    }

    Report& report;
    std::string_view value;
};

/// What a field of this kind holds, for messages.
struct Describe {
    const char* operator()(Text) const { return "a text"; }
    const char* operator()(Number) const { return "a number"; }
    const char* operator()(Flag) const { return "TRUE or FALSE"; }
    const char* operator()(OptionalNumber) const { return "a number or nothing"; }
    const char* operator()(NumberList) const { return "a number"; }
    const char* operator()(HexList) const { return "a hexadecimal number"; }
};

/// A line as it may stand in a message: short, and without bytes that move the cursor.
std::string Quote(std::string_view line) {
    constexpr size_t kMost = 60;
    std::string quoted = "\"";
    for (const char c : line.substr(0, kMost)) {
        quoted += ' ' <= c && c <= '~' ? c : '?';
    }
    return quoted + (line.size() > kMost ? "...\"" : "\"");
}

std::string Indexed(const char* key, int index) {
    return std::string(key) + "." + std::to_string(index);
}

}  // namespace

ReportParser::Outcome ReportParser::Next(Report& report) {
    m_damage.clear();
    if (!m_hasStarted) {
        m_hasStarted = true;
        if (!Advance()) {
            return Outcome::kDamage;
        }
    }
    if (!SkipEmptyLines()) {
        return Outcome::kDamage;
    }
    if (!m_hasLine) {
        return m_place > 0 || ExpectedReport() ? Outcome::kEnd : Outcome::kDamage;
    }
    report = {};
    const bool isWhole = StartReport(report) && ParseSystem(report) && StartPci() &&
                         ParsePci(report) && ExpectEndOfReport();
    return isWhole ? Outcome::kReport : Outcome::kDamage;
}

/// Goes to the next line. Behind the last one there is none, which is no damage yet.
bool ReportParser::Advance() {
    const LineReader::Status status = m_lines.Next();
    m_hasLine = status == LineReader::Status::kLine;
    TakeLine();
    return status != LineReader::Status::kFailure || Damaged(m_lines.Failure());
}

void ReportParser::TakeLine() {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    m_line = m_hasLine ? m_lines.Line() : std::string_view();
    if (m_lines.Number() == 1 && m_line.starts_with(kByteOrderMark)) {
        m_line.remove_prefix(kByteOrderMark.size());
    }
    if (m_hasCarriageReturns && m_line.ends_with('\r')) {
        m_line.remove_suffix(1);
    }
}

bool ReportParser::SkipEmptyLines() {
    while (m_hasLine && (m_line.empty() || m_line == "\r")) {
        if (!Advance()) {
            return false;
        }
    }
    return true;
}

bool ReportParser::IsAtStart() const {
    return m_line == kIniStart || m_line == "[System]\r" ||
           m_line.starts_with("System_Machine_Type =");
}

/// The first line tells the layout, and whether a transfer has put carriage returns before the
/// line ends.
bool ReportParser::StartReport(Report& report) {
    report.source = m_lines.Source();
    report.line = m_lines.Number();
    report.place = ++m_place;
    if (std::any_of(std::begin(kFailures), std::end(kFailures),
                    [this](std::string_view failure) { return m_line.starts_with(failure); })) {
        return Damaged("no report: systally itself failed and said " + Quote(m_line));
    }
    if (!IsAtStart()) {
        return ExpectedReport();
    }
    m_hasCarriageReturns = m_lines.Line().ends_with('\r');
    TakeLine();
    m_isProperties = m_line != kIniStart;
    m_prefix = m_isProperties ? kSystemPrefix : "";
    return m_isProperties || Advance();
}

bool ReportParser::ParseSystem(Report& report) {
    const std::span<const SystemKey> keys = SystemKeys();
    for (size_t first = 0; first < keys.size();) {
        size_t next = first + 1;
        if (!keys[first].IsList()) {
            if (!ParseKey(keys[first], keys[first].name, report)) {
                return false;
            }
        } else {
            while (keys[next].IsList()) {
                ++next;
            }
            const int count = report.*std::get<Number>(keys[first - 1].field);
            if (!ParseLists(keys.subspan(first, next - first), count, report)) {
                return false;
            }
        }
        first = next;
    }
    return true;
}

bool ReportParser::ParseLists(std::span<const SystemKey> lists, int count, Report& report) {
    for (int i = 0; i < count; ++i) {
        for (const SystemKey& key : lists) {
            if (!ParseKey(key, Indexed(key.name, i), report)) {
                return false;
            }
        }
    }
    return true;
}

bool ReportParser::ParseKey(const SystemKey& key, const std::string& name, Report& report) {
    if (key.mayBeMissing && !IsAt(name)) {
        return true;
    }
    std::string_view value;
    if (!TakeValue(name, value)) {
        return false;
    }
    if (!std::visit(Store{report, value}, key.field)) {
        return Expected(name + " to be " + std::visit(Describe(), key.field));
    }
    return Advance();
}

bool ReportParser::StartPci() {
    m_prefix = m_isProperties ? kPciPrefix : "";
    if (m_isProperties) {
        return true;
    }
    if (!SkipEmptyLines()) {
        return false;
    }
    return m_line == kIniPci ? Advance() : Expected("\"[PCI]\"");
}

bool ReportParser::ParsePci(Report& report) {
    std::string_view value;
    if (!TakeValue(kPciTotal, value)) {
        return false;
    }
    if (!ToNumber(value, 10, report.pciTotal) || report.pciTotal < 0) {
        return Expected(std::string(kPciTotal) + " to be a number");
    }
    if (!Advance()) {
        return false;
    }
    // The kernel may have functions that the report has no keys for: they count, and are not here.
    // Those of a PCI domain from 256 on are such, and many machines have one.
    const char* const firstKey = PciKeys().front().name;
    for (int i = 0; i < report.pciTotal && IsAt(Indexed(firstKey, i)); ++i) {
        if (!ParseFunction(i, report.pciFunctions.emplace_back())) {
            return false;
        }
    }
    report.end = m_lines.Number() - 1;
    return true;
}

bool ReportParser::ParseFunction(int index, PciFunction& function) {
    for (const PciKey& key : PciKeys()) {
        const std::string name = Indexed(key.name, index);
        std::string_view value;
        if (!TakeValue(name, value)) {
            return false;
        }
        uint32_t& number = function.*key.field;
        const int base = key.hexDigits == 0 ? 10 : 16;
        if (!ToNumber(value, base, number) || number > key.largest) {
            return Expected(name + " to be a " + (base == 16 ? "hexadecimal " : "") + "number");
        }
        if (!Advance()) {
            return false;
        }
    }
    return true;
}

bool ReportParser::ExpectEndOfReport() {
    const bool isEnd = !m_hasLine || m_line.empty() || m_line == "\r" || IsAtStart();
    return isEnd || Expected("the end of the report");
}

/// Whether the line is that of `key`.
bool ReportParser::IsAt(const std::string& key) const {
    const std::string start = m_prefix + key + kBetween;
    return m_line == start || m_line.starts_with(start + " ");
}

bool ReportParser::TakeValue(const std::string& key, std::string_view& value) {
    if (!IsAt(key)) {
        return Expected("\"" + std::string(m_prefix) + key + " = \"");
    }
    const size_t start = std::string_view(m_prefix).size() + key.size() + sizeof kBetween;
    value = m_line.substr(std::min(start, m_line.size()));
    return true;
}

bool ReportParser::ExpectedReport() {
    return Expected("a report, which begins with \"[System]\" or \"System_Machine_Type = \"");
}

bool ReportParser::Expected(const std::string& what) {
    return Damaged("expected " + what + ", found " +
                   (m_hasLine ? Quote(m_line) : "the end of the file"));
}

/// Keeps the message. Returns false, so that callers can hand it on.
bool ReportParser::Damaged(const std::string& what) {
    const std::string line = m_lines.Number() == 0 ? "" : ":" + std::to_string(m_lines.Number());
    m_damage = m_lines.Source() + line + ": " + what;
    return false;
}

}  // namespace report
