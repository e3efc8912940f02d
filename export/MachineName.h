// What a machine is called among several: reports carry no host name, so their files give it.
#pragma once

#include <string>

#include "export/Report.h"

namespace report {

/// "web1" for the report in reports/web1.ini, "all#2" for the second one in all.ini, "#2" for the
/// second one on standard input.
std::string MachineName(const Report& report);

}  // namespace report
