// The report as one page that needs nothing else: no network, no other file.
// One machine's page has no script; the table of several has one to sort, filter and open them.
#pragma once

#include <memory>
#include <string>

#include "export/Shape.h"

namespace report {

/// `pciIds` is the list of PCI names; an empty path means the system's own. Null, with `failure`,
/// when that list has none.
[[nodiscard]] std::unique_ptr<Shape> MakeHtmlPage(const std::string& pciIds, std::string& failure);

}  // namespace report
