// Reads reports, one behind the other, in INI or Properties layout.
// Accepts what systally prints and nothing else: a report that was cut or mixed up is damage.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "export/LineReader.h"
#include "export/Report.h"
#include "export/ReportKeys.h"

namespace report {

class ReportParser {
  public:
    enum class Outcome { kReport, kEnd, kDamage };

    /// Reads `path`, or standard input when it is "-".
    explicit ReportParser(const std::string& path) : m_lines(path) {}

    /// The next report; the layout of each shows in its first line.
    [[nodiscard]] Outcome Next(Report& report);

    /// The last damage and its place: "web1.ini:12: expected ...".
    const std::string& Damage() const { return m_damage; }

    const std::string& Source() const { return m_lines.Source(); }

  private:
    // Each returns false when it met damage.
    bool Advance();
    bool SkipEmptyLines();
    bool StartReport(Report& report);
    bool ParseSystem(Report& report);
    bool ParseLists(std::span<const SystemKey> lists, int count, Report& report);
    bool ParseKey(const SystemKey& key, const std::string& name, Report& report);
    bool StartPci();
    bool ParsePci(Report& report);
    bool ParseFunction(int index, PciFunction& function);
    bool ExpectEndOfReport();
    bool TakeValue(const std::string& key, std::string_view& value);
    bool ExpectedReport();
    bool Expected(const std::string& what);
    bool Damaged(const std::string& what);

    void TakeLine();
    bool IsAt(const std::string& key) const;
    bool IsAtStart() const;

    LineReader m_lines;
    std::string_view m_line;
    bool m_hasStarted = false;
    bool m_hasLine = false;
    bool m_isProperties = false;
    bool m_hasCarriageReturns = false;
    const char* m_prefix = "";  ///< what the section's keys begin with
    size_t m_place = 0;
    std::string m_damage;
};

}  // namespace report
