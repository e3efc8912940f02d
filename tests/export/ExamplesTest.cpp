// The examples as they stand, on machines of folders.
#include "export/Consumer.h"
#include "machine/MachineBuilder.h"

namespace {

namespace fs = std::filesystem;

using machine::MachineBuilder;
using machine::PciFunction;
using machine::Structure;
using reports::Contents;
using support::Arguments;
using support::Result;
using support::TemporaryFolder;

/// A folder of programs in which systally answers for a machine.
class Installed {
  public:
    explicit Installed(const fs::path& machine) {
        consumer::WriteScript(
            m_folder.path() / "systally",
            "exec " + support::ProgramPath("systally-on") + " " + machine.string() + " \"$@\"");
        fs::create_symlink(support::ProgramPath("systally-export"),
                           m_folder.path() / "systally-export");
    }

    /// Runs a shell command that finds these programs first.
    Result Run(const std::string& command, const Arguments& arguments = {}) const {
        Arguments shell = {"sh", "-c", "PATH=" + m_folder.path().string() + ":$PATH; " + command,
                           "sh"};
        shell.insert(shell.end(), arguments.begin(), arguments.end());
        return support::Run(shell);
    }

  private:
    TemporaryFolder m_folder;
};

const std::string kExamples = SYSTALLY_EXAMPLES;

Result Deploy(const MachineBuilder& machine) {
    const TemporaryFolder folder;
    machine.WriteTo(folder.path() / "machine");
    return Installed(folder.path() / "machine").Run(kExamples + "/deploy.sh");
}

MachineBuilder Server(const std::string& product) {
    return MachineBuilder().Add(
        Structure(1, 0x1B).String(0x04, "QEV").String(0x05, product).String(0x07, "QS1"));
}

TEST(DeployExample, ChoosesByMachineTypeAndVendor) {
    const Result blade = Installed(support::Arlo2Folder()).Run(kExamples + "/deploy.sh");
    EXPECT_EQ(blade.output, "profile=blade\nnetwork_ports=4\nbonding=yes\n");
    EXPECT_EQ(blade.errors, "");
    EXPECT_EQ(blade.status, 0);
    EXPECT_EQ(Deploy(Server("Cedar 1 -[7730]-").Add(PciFunction{.vendorId = 0x14E4})).output,
              "profile=database\nnetwork_ports=1\nbonding=no\n");
    EXPECT_EQ(Deploy(Server("Birch -[7709]-")).output,
              "profile=plain\nnetwork_ports=0\nbonding=no\n");
}

TEST(DeployExample, LeavesOtherServersAlone) {
    const Result result =
        Deploy(MachineBuilder().Add(Structure(1, 0x1B).String(0x04, "Other").String(0x05, "Box")));
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "deploy: no server of the family\n");
    EXPECT_EQ(result.status, 2);
}

TEST(DeployExample, SaysWhenItCannotTell) {
    const Result result = Deploy(MachineBuilder().NoEntryPoint());
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "deploy: the firmware cannot be read; root may do that\n");
    EXPECT_EQ(result.status, 1);
}

TEST(DeployExample, CountsManyFunctionsAndOne) {
    for (const int count : {1, 2, 100, 155, 156, 200, 255}) {
        MachineBuilder machine = Server("Birch -[7709]-");
        for (int i = 0; i < count; ++i) {
            machine.Add(PciFunction{.device = static_cast<uint16_t>(i / 8),
                                    .function = static_cast<uint16_t>(i % 8),
                                    .vendorId = 0x14E4});
        }
        const Result result = Deploy(machine);
        EXPECT_EQ(result.output, "profile=plain\nnetwork_ports=" + std::to_string(count) +
                                     "\nbonding=" + (count > 1 ? "yes" : "no") + "\n");
        EXPECT_EQ(result.errors, "");
    }
}

TEST(DeployExample, TakesAListThatCannotBeReadForNoCount) {
    const TemporaryFolder folder;
    // All answers but that of /vid: are those of the sample server.
    consumer::WriteScript(
        folder.path() / "systally",
        "case $1 in /s) exit 0;; /vid:*) echo Cannot open; exit 1;; esac; exit 0");
    const Result result = support::Run(
        {"sh", "-c", "PATH=" + folder.path().string() + ":$PATH " + kExamples + "/deploy.sh"});
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors, "deploy: the PCI list cannot be read\n");
    EXPECT_EQ(result.status, 1);
}

TEST(AnsibleExample, PlayPrintsATableOfTheFleet) {
    const TemporaryFolder folder;
    consumer::Require("ansible-playbook", "ansible-core");
    const Result result = Installed(support::Arlo2Folder())
                              .Run(
                                  "cd $1 && HOME=$2 exec ansible-playbook -i localhost,other, "
                                  "-c local -e ansible_become=false -e facts_folder=$2/facts.d "
                                  "fleet.yml",
                                  {kExamples + "/ansible", folder.path()});
    EXPECT_EQ(result.status, 0) << result.output << result.errors;
    for (const char* line :
         {"\"HOST                 PRODUCT          TYPE   SERIAL       CPUS  MEMORY MB  PCI\"",
          "\"localhost            Arlo 2           7712   QS0012345       3      11280   20\"",
          "\"other                Arlo 2           7712   QS0012345       3      11280   20\""}) {
        EXPECT_NE(result.output.find(line), std::string::npos) << line << result.output;
    }
}

TEST(FacterExample, ServerIsKnownToFacter) {
    consumer::Require("facter", "facter");
    const Result result =
        Installed(support::Arlo2Folder())
            .Run("exec facter --external-dir $1 systally_product_name systally_pci_class_0200",
                 {kExamples + "/facter"});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.output, "systally_pci_class_0200 => 4\nsystally_product_name => Arlo 2 \n");
}

TEST(TimerExample, ServiceWritesMetricsForTheCollector) {
    const TemporaryFolder folder;
    consumer::Require("promtool", "prometheus");
    const std::string command =
        "command=$(sed -n 's|/var/lib/prometheus/node-exporter|'$2'|; s/^ExecStart=//p' "
        "$1/systemd/systally-metrics.service); eval \"$command\" && promtool check metrics "
        "<$2/systally.prom";
    const Result result =
        Installed(support::Arlo2Folder()).Run(command, {kExamples, folder.path()});
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_EQ(result.status, 0);
    EXPECT_NE(Contents(folder.path() / "systally.prom").find("systally_memory_bytes 11827937280\n"),
              std::string::npos);
}

TEST(TimerExample, UnitsAreInOrder) {
    consumer::Require("systemd-analyze", "systemd");
    const Result result = support::Run({"systemd-analyze", "verify", "--man=no",
                                        kExamples + "/systemd/systally-metrics.service",
                                        kExamples + "/systemd/systally-metrics.timer"});
    EXPECT_EQ(result.output + result.errors, "");
    EXPECT_EQ(result.status, 0);
}

}  // namespace
