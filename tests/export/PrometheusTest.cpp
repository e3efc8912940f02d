// The report as metrics.
#include <gtest/gtest.h>

#include "export/Prometheus.h"
#include "export/Reports.h"

namespace {

using report::Report;

std::string Metrics(const std::vector<Report>& reports) {
    std::string text;
    const std::unique_ptr<report::Shape> shape = report::MakePrometheusMetrics();
    for (const Report& report : reports) {
        EXPECT_EQ(shape->Add(report, text), "");
    }
    EXPECT_EQ(text, "");
    shape->Finish(text);
    return text;
}

Report From(const std::string& machine) {
    Report report;
    report.machine = machine;
    return report;
}

/// The lines of a family, HELP and TYPE included.
std::string Family(const std::string& metrics, const std::string& name) {
    std::istringstream lines(metrics);
    std::string found;
    for (std::string line; std::getline(lines, line);) {
        const bool isComment =
            line.starts_with("# HELP " + name + " ") || line.starts_with("# TYPE " + name + " ");
        const bool isSample = line.starts_with(name + "{") || line.starts_with(name + " ");
        found += isComment || isSample ? line + "\n" : "";
    }
    return found;
}

TEST(Prometheus, IdentityIsAMetricThatIsAlways1) {
    Report report = From("web1");
    report.machineType = "7712";
    report.modelNumber = "00X";
    report.serialNumber = "QS1";
    report.productName = "Arlo 2 ";
    report.manufacturer = "QEV";
    report.systemUuid = "5A";
    EXPECT_EQ(Family(Metrics({report}), "systally_system_info"),
              "# HELP systally_system_info The machine's identity; always 1.\n"
              "# TYPE systally_system_info gauge\n"
              "systally_system_info{machine_type=\"7712\",model_number=\"00X\","
              "serial_number=\"QS1\",product_name=\"Arlo 2 \",manufacturer=\"QEV\","
              "system_uuid=\"5A\"} 1\n");
}

TEST(Prometheus, FirmwareThatSaysNothingGivesTheCountsAlone) {
    Report report = From("web1");
    report.machineType = "XXXX";
    const std::string metrics = Metrics({report});
    EXPECT_EQ(Family(metrics, "systally_bios_info"),
              "# HELP systally_bios_info The machine's BIOS; always 1.\n"
              "# TYPE systally_bios_info gauge\n"
              "systally_bios_info 1\n");
    EXPECT_EQ(Family(metrics, "systally_build_level_info"), "");
    EXPECT_EQ(Family(metrics, "systally_blade_info"), "");
    EXPECT_EQ(Family(metrics, "systally_pci_functions"), "");
    EXPECT_EQ(Family(metrics, "systally_pci_all_functions"),
              "# HELP systally_pci_all_functions PCI functions of the kernel, those outside buses "
              "0 to 255 included.\n"
              "# TYPE systally_pci_all_functions gauge\n"
              "systally_pci_all_functions 0\n");
}

TEST(Prometheus, MemoryAndSpeedAreInBaseUnits) {
    Report report = From("web1");
    report.memoryMb = 2147483647;
    report.processorSpeeds = {2933, 2000};
    const std::string metrics = Metrics({report});
    EXPECT_EQ(Family(metrics, "systally_memory_bytes"),
              "# HELP systally_memory_bytes The sizes of all memory devices together.\n"
              "# TYPE systally_memory_bytes gauge\n"
              "systally_memory_bytes 2251799812636672\n");
    EXPECT_EQ(Family(metrics, "systally_processor_speed_hertz"),
              "# HELP systally_processor_speed_hertz An active processor's current speed.\n"
              "# TYPE systally_processor_speed_hertz gauge\n"
              "systally_processor_speed_hertz{processor=\"0\"} 2933000000\n"
              "systally_processor_speed_hertz{processor=\"1\"} 2000000000\n");
}

TEST(Prometheus, FunctionsAreCountedByClass) {
    Report report = From("web1");
    report.pciTotal = 3;
    report.pciFunctions.resize(3);
    report.pciFunctions[0].classCode = 0x0C0320;
    report.pciFunctions[1].classCode = 0x020000;
    report.pciFunctions[2].classCode = 0x0C0300;
    EXPECT_EQ(Family(Metrics({report}), "systally_pci_functions"),
              "# HELP systally_pci_functions PCI functions by class: base class and sub-class, two "
              "hexadecimal digits each.\n"
              "# TYPE systally_pci_functions gauge\n"
              "systally_pci_functions{class=\"0200\"} 1\n"
              "systally_pci_functions{class=\"0C03\"} 2\n");
}

TEST(Prometheus, QuotesAndBackslashesAreEscaped) {
    Report report = From("web1");
    report.biosVersion = "a\"b\\c{}\xC3\xA9";
    EXPECT_NE(Metrics({report}).find("systally_bios_info{version=\"a\\\"b\\\\c{}\xC3\xA9\"} 1\n"),
              std::string::npos);
}

TEST(Prometheus, LineEndsInTheNameOfAFileAreEscaped) {
    EXPECT_EQ(Family(Metrics({From("web\n1"), From("web2")}), "systally_processor_slots"),
              "# HELP systally_processor_slots Processor sockets.\n"
              "# TYPE systally_processor_slots gauge\n"
              "systally_processor_slots{machine=\"web\\n1\"} 0\n"
              "systally_processor_slots{machine=\"web2\"} 0\n");
}

TEST(Prometheus, MachinesOfAFleetHaveTheirNames) {
    EXPECT_EQ(
        Family(Metrics({From("web1"), From("east/web2"), From("#2")}), "systally_processor_slots"),
        "# HELP systally_processor_slots Processor sockets.\n"
        "# TYPE systally_processor_slots gauge\n"
        "systally_processor_slots{machine=\"web1\"} 0\n"
        "systally_processor_slots{machine=\"east/web2\"} 0\n"
        "systally_processor_slots{machine=\"#2\"} 0\n");
}

TEST(Prometheus, TwoMachinesOfOneNameAreRefused) {
    std::string text;
    const std::unique_ptr<report::Shape> shape = report::MakePrometheusMetrics();
    EXPECT_EQ(shape->Add(From("web1"), text), "");
    EXPECT_EQ(shape->Add(From("web1"), text),
              "a second machine called web1, and metrics need a name of its own");
}

}  // namespace
