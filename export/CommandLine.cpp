// The command line of systally-export.
#include "export/CommandLine.h"

#include <getopt.h>

#include <cstdio>

#include "export/Facter.h"
#include "export/Html.h"
#include "export/Json.h"
#include "export/Message.h"
#include "export/Prometheus.h"

namespace report {

namespace {

constexpr char kUsage[] =
    "usage: systally-export SHAPE [-o FILE] [--pci-ids FILE] [REPORT...]\n"
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

constexpr ShapeOption kShapes[] = {
    {"json", [](const Options&, std::string&) { return MakeJsonLines(); }},
    {"facter", [](const Options&, std::string&) { return MakeFacterFacts(); }},
    {"ansible", [](const Options&, std::string&) { return MakeAnsibleFacts(); }},
    {"prometheus", [](const Options&, std::string&) { return MakePrometheusMetrics(); }},
    {"html", [](const Options& options,
                std::string& failure) { return MakeHtmlPage(options.pciIds, failure); }},
};

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

}  // namespace

std::span<const ShapeOption> Shapes() {
    return kShapes;
}

int ParseCommandLine(int argc, char** argv, Options& options) {
    const std::vector<option> longOptions = LongOptions();
    if (argc > 0) {
        // Messages of getopt_long begin with it, and ours with no path.
        static char name[] = "systally-export";
        argv[0] = name;
    }
    for (int found = 0;
         (found = getopt_long(argc, argv, "o:hV", longOptions.data(), nullptr)) != -1;) {
        if (found == 'h') {
            return Print(kUsage);
        }
        if (found == 'V') {
            return Print("systally-export " SYSTALLY_VERSION "\n");
        }
        if ((found == 'o' || found == 'p') && *optarg == '\0') {
            // Most likely a variable of a script that is not set.
            return Explain("the name of a file is empty", kUsageError);
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

}  // namespace report
