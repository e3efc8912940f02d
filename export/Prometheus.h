// The report as metrics in Prometheus' text format, for the node exporter's textfile collector.
// Without timestamps, which that collector refuses.
#pragma once

#include <memory>

#include "export/Shape.h"

namespace report {

/// For one machine the collector's own labels say which one it is; of several, each has the label
/// "machine".
std::unique_ptr<Shape> MakePrometheusMetrics();

}  // namespace report
