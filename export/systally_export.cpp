// systally-export: reads reports and writes them in the shape that another tool reads.
// A filter: it looks at no machine itself, and writes nothing but what an option names.
#include <exception>
#include <memory>
#include <string>

#include "export/CommandLine.h"
#include "export/MachineName.h"
#include "export/Message.h"
#include "export/Output.h"
#include "export/ReportParser.h"

namespace {

using report::Explain;
using report::kDone;
using report::kFailed;
using report::Options;
using report::Output;
using report::Report;
using report::ReportParser;
using report::Shape;

/// One run over all inputs.
class Export {
  public:
    explicit Export(const Options& options) : m_options(options), m_names(options.inputs) {}

    int Run() {
        std::string obstacle;
        m_shape = m_options.shape->make(m_options, obstacle);
        if (m_shape == nullptr) {
            return Explain(obstacle, kFailed);
        }
        if (const std::string failure = m_output.Open(m_options.output); !failure.empty()) {
            return Explain(failure, kFailed);
        }
        for (size_t input = 0; input < m_options.inputs.size(); ++input) {
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
    std::string ReadReports(size_t input) {
        ReportParser parser(m_options.inputs[input]);
        for (;;) {
            Report report;
            switch (parser.Next(report)) {
                case ReportParser::Outcome::kDamage:
                    return parser.Damage();
                case ReportParser::Outcome::kEnd:
                    return "";
                case ReportParser::Outcome::kReport:
                    break;
            }
            report.machine = m_names.Of(input, report.place);
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
            Explain(report.source + ":" + std::to_string(report.end) +
                        ": warning: the report counts " + std::to_string(report.pciTotal) +
                        " PCI functions and its list ends here, after " + std::to_string(listed) +
                        ": the others are outside buses 0 to 255, or the report was cut",
                    kDone);
        }
        std::string text;
        const std::string failure = m_shape->Add(report, text);
        return failure.empty() ? m_output.Write(text) : place + failure;
    }

    const Options& m_options;
    std::unique_ptr<Shape> m_shape;
    report::MachineNames m_names;
    Output m_output;
    size_t m_count = 0;
};

}  // namespace

int main(int argc, char** argv) {
    report::ReserveStandardDescriptors();
    try {
        Options options;
        const int status = ParseCommandLine(argc, argv, options);
        return status < 0 ? Export(options).Run() : status;
    } catch (const std::exception& error) {
        return Explain(error.what(), kFailed);
    }
}
