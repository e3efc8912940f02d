// systally-export: reads reports and writes them in the shape that another tool reads.
// A filter: it looks at no machine itself, and writes nothing but what an option names.
#include <getopt.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "export/Facter.h"
#include "export/Html.h"
#include "export/Json.h"
#include "export/Output.h"
#include "export/Prometheus.h"
#include "export/ReportParser.h"
#include "export/Shape.h"

namespace {

using report::Output;
using report::Report;
using report::ReportParser;
using report::Shape;

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kUsageError = 2;

constexpr char kUsage[] =
    "usage: systally-export SHAPE [-o FILE] [REPORT...]\n"
    "\n"
    "Reads reports of systally /i or systally /p, from standard input unless files are named,\n"
    "and writes them in another shape:\n"
    "  --json          one JSON object per machine, each on a line of its own\n"
    "  --facter        key=value lines for an external fact of Facter; one machine\n"
    "  --ansible       JSON for an executable in Ansible's facts.d; one machine\n"
    "  --prometheus    metrics for the node exporter's textfile collector\n"
    "  --html          a page to look at; of several machines, with a table to choose from\n"
    "\n"
    "  -o, --output FILE\n"
    "                  write FILE, which appears whole or not at all\n"
    "  --pci-ids FILE  take the names of --html from FILE instead of the system's pci.ids\n"
    "  -h, --help      print this text\n"
    "  -V, --version   print the version\n";

struct Options;

struct ShapeOption {
    const char* name;
    std::unique_ptr<Shape> (*make)(const Options& options);
};

struct Options {
    const ShapeOption* shape = nullptr;
    std::string output;
    std::string pciIds;
    std::vector<std::string> inputs;
};

constexpr ShapeOption kShapes[] = {
    {"json", [](const Options&) { return report::MakeJsonLines(); }},
    {"facter", [](const Options&) { return report::MakeFacterFacts(); }},
    {"ansible", [](const Options&) { return report::MakeAnsibleFacts(); }},
    {"prometheus", [](const Options&) { return report::MakePrometheusMetrics(); }},
    {"html", [](const Options& options) { return report::MakeHtmlPage(options.pciIds); }},
};

int Explain(const std::string& message, int status) {
    std::fprintf(stderr, "systally-export: %s\n", message.c_str());
    return status;
}

// What getopt_long returns for the options without a letter: their place in the table of shapes,
// from here on.
constexpr int kFirstShape = 256;

std::vector<option> LongOptions() {
    std::vector<option> options = {{"output", required_argument, nullptr, 'o'},
                                   {"pci-ids", required_argument, nullptr, 'p'},
                                   {"help", no_argument, nullptr, 'h'},
                                   {"version", no_argument, nullptr, 'V'}};
    int value = kFirstShape;
    for (const ShapeOption& shape : kShapes) {
        options.push_back({shape.name, no_argument, nullptr, value++});
    }
    options.push_back({nullptr, 0, nullptr, 0});
    return options;
}

int Print(const char* text) {
    return std::fputs(text, stdout) < 0 || std::fflush(stdout) != 0
               ? Explain("cannot write standard output", kFailed)
               : kDone;
}

/// Fills `options`. Returns -1 when there is work to do, and otherwise the status to end with.
int ParseCommandLine(int argc, char** argv, Options& options) {
    const std::vector<option> longOptions = LongOptions();
    for (int found = 0;
         (found = getopt_long(argc, argv, "o:hV", longOptions.data(), nullptr)) != -1;) {
        if (found == 'h') {
            return Print(kUsage);
        }
        if (found == 'V') {
            return Print("systally-export " SYSTALLY_VERSION "\n");
        }
        if (found == 'o') {
            options.output = optarg;
        } else if (found == 'p') {
            options.pciIds = optarg;
        } else if (found < kFirstShape) {
            return Explain("try systally-export --help", kUsageError);
        } else if (options.shape != nullptr) {
            return Explain("one shape at a time, please", kUsageError);
        } else {
            options.shape = &kShapes[found - kFirstShape];
        }
    }
    options.inputs.assign(argv + optind, argv + argc);
    if (options.inputs.empty()) {
        options.inputs.emplace_back("-");
    }
    return options.shape != nullptr
               ? -1
               : Explain("no shape is given; try systally-export --help", kUsageError);
}

/// One run over all inputs.
class Export {
  public:
    explicit Export(const Options& options)
        : m_options(options), m_shape(options.shape->make(options)) {}

    int Run() {
        const std::string& names = m_options.pciIds;
        if (!names.empty() && access(names.c_str(), R_OK) != 0) {
            return Explain(names + ": cannot read: " + std::strerror(errno), kFailed);
        }
        if (const std::string failure = m_output.Open(m_options.output); !failure.empty()) {
            return Explain(failure, kFailed);
        }
        for (const std::string& input : m_options.inputs) {
            if (const std::string failure = ReadReports(input); !failure.empty()) {
                return Explain(failure, kFailed);
            }
        }
        std::string rest;
        m_shape->Finish(rest);
        std::string failure = m_output.Write(rest);
        if (failure.empty()) {
            failure = m_output.Commit();
        }
        return failure.empty() ? kDone : Explain(failure, kFailed);
    }

  private:
    /// Returns an empty text, or why the work ends here.
    std::string ReadReports(const std::string& input) {
        ReportParser parser(input);
        const size_t before = m_count;
        for (;;) {
            Report report;
            switch (parser.Next(report)) {
                case ReportParser::Outcome::kDamage:
                    return parser.Damage();
                case ReportParser::Outcome::kEnd:
                    return m_count == before ? parser.Source() + ":1: no report, the file is empty"
                                             : "";
                case ReportParser::Outcome::kReport:
                    break;
            }
            if (std::string failure = Add(report); !failure.empty()) {
                return failure;
            }
        }
    }

    std::string Add(const Report& report) {
        const std::string place = report.source + ":" + std::to_string(report.line) + ": ";
        if (++m_count > 1 && !m_shape->TakesSeveral()) {
            return place + "a second report, and --" + m_options.shape->name +
                   " describes one machine";
        }
        const auto listed = static_cast<int>(report.pciFunctions.size());
        if (listed < report.pciTotal) {
            Explain(place + "warning: the report counts " + std::to_string(report.pciTotal) +
                        " PCI functions and lists " + std::to_string(listed),
                    kDone);
        }
        std::string text;
        const std::string failure = m_shape->Add(report, text);
        return failure.empty() ? m_output.Write(text) : place + failure;
    }

    const Options& m_options;
    std::unique_ptr<Shape> m_shape;
    Output m_output;
    size_t m_count = 0;
};

}  // namespace

int main(int argc, char** argv) {
    try {
        Options options;
        const int status = ParseCommandLine(argc, argv, options);
        return status < 0 ? Export(options).Run() : status;
    } catch (const std::exception& error) {
        return Explain(error.what(), kFailed);
    }
}
