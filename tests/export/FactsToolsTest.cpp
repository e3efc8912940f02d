// Facter and Ansible gather the facts of a machine.
#include "export/Consumer.h"

namespace {

namespace fs = std::filesystem;

using reports::Arlo2;
using reports::File;
using reports::kBare;
using reports::Replaced;
using support::TemporaryFolder;

/// Facter's answer to a question about the machine of a report, in a locale of its own.
std::string Facter(const std::string& report, const std::string& locale, const std::string& fact) {
    const TemporaryFolder folder;
    const File file(report);
    consumer::WriteScript(folder.path() / "systally.sh",
                          support::ProgramPath("systally-export") + " --facter " + file.path());
    const support::Result result =
        consumer::Run("facter", "facter", "LC_ALL=$1 exec facter --external-dir $2 $3",
                      {locale, folder.path(), fact});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
    return result.output;
}

TEST(FacterTool, KnowsTheSampleServer) {
    EXPECT_EQ(Facter(Arlo2(), "C.UTF-8", "systally_serial_number"), "QS0012345\n");
    EXPECT_EQ(Facter(Arlo2(), "C", "systally_pci_id_14e4_1639"), "4\n");
}

TEST(FacterTool, TakesTextsThatLookLikeItsOtherFormats) {
    const std::string report =
        Replaced(Replaced(Arlo2(), "= 7712", "= 7: {a"), "= 00X", "= b=c: d");
    EXPECT_EQ(Facter(report, "C.UTF-8", "systally_machine_type"), "7: {a\n");
    EXPECT_EQ(Facter(report, "C.UTF-8", "systally_model_number"), "b=c: d\n");
}

TEST(FacterTool, KeepsAllFactsInALocaleWithoutAccents) {
    EXPECT_EQ(Facter(Replaced(Arlo2(), "QS0012345", "caf\xE9"), "C", "systally_serial_number"),
              "caf?\n");
}

/// What Ansible's setup module finds in facts.d, as a text.
std::string LocalFacts(const std::string& report) {
    const TemporaryFolder folder;
    const File file(report);
    consumer::WriteScript(folder.path() / "systally.fact",
                          support::ProgramPath("systally-export") + " --ansible " + file.path());
    const support::Result result = consumer::Run(
        "ansible", "ansible-core",
        "HOME=$1 exec ansible -i localhost, -c local -m setup -a \"gather_subset=!all fact_path=$1 "
        "filter=ansible_local\" localhost",
        {folder.path()});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0) << result.output;
    return result.output;
}

void ExpectHolds(const std::string& text, const std::string& part) {
    EXPECT_NE(text.find(part), std::string::npos) << "no " << part << " in\n" << text;
}

TEST(AnsibleTool, KnowsTheSampleServerWithItsTypes) {
    const std::string facts = LocalFacts(Arlo2());
    ExpectHolds(facts, "\"serial_number\": \"QS0012345\"");
    ExpectHolds(facts, "\"blade_slot\": 14,");
    ExpectHolds(facts, "\"processor_x64\": true,");
    ExpectHolds(facts, "\"vendor_id\": \"14E4\"");
}

TEST(AnsibleTool, TakesTextsWithQuotesAndTemplates) {
    const std::string facts =
        LocalFacts(Replaced(kBare, "Serial_Number = ", "Serial_Number = \"{{ 1 }}\\ caf\xE9"));
    ExpectHolds(facts, "\"serial_number\": \"\\\"{{ 1 }}\\\\ caf");
    ExpectHolds(facts, "\"model_number\": null");
}

}  // namespace
