// The report as JSON, as docs/report.schema.json describes it.
// Keeps no report: memory does not grow with their number.
#pragma once

#include <memory>

#include "export/Shape.h"

namespace report {

/// One object per machine, each on a line of its own.
std::unique_ptr<Shape> MakeJsonLines();

/// The same object for one machine, laid out for reading: what an executable in facts.d prints.
std::unique_ptr<Shape> MakeAnsibleFacts();

}  // namespace report
