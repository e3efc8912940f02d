// The report as an external fact of Facter: key=value lines.
// Pure ASCII: where Facter runs without a locale, one other byte would cost all facts.
#pragma once

#include <memory>

#include "export/Shape.h"

namespace report {

std::unique_ptr<Shape> MakeFacterFacts();

}  // namespace report
