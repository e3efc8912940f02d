// What machines are called, by the files of their reports.
#include <gtest/gtest.h>

#include "export/MachineName.h"

namespace {

using Names = std::vector<std::string>;

/// The names of the first reports of these files.
Names NamesOf(const Names& inputs) {
    const report::MachineNames names(inputs);
    Names found;
    for (size_t i = 0; i < inputs.size(); ++i) {
        found.push_back(names.Of(i, 1));
    }
    return found;
}

TEST(MachineNames, AreThoseOfTheFiles) {
    EXPECT_EQ(NamesOf({"reports/web1.ini", "all.txt", "/srv/web2.properties", "web3.report"}),
              (Names{"web1", "all", "web2", "web3"}));
}

TEST(MachineNames, KeepWhatMayBelongToAHostsName) {
    EXPECT_EQ(NamesOf({"web1.example.org", ".ini"}), (Names{"web1.example.org", ".ini"}));
}

TEST(MachineNames, CountTheReportsOfAFile) {
    const report::MachineNames names({"all.ini", "-"});
    EXPECT_EQ(names.Of(0, 1), "all");
    EXPECT_EQ(names.Of(0, 2), "all#2");
    EXPECT_EQ(names.Of(1, 1), "#1");
    EXPECT_EQ(names.Of(1, 2), "#2");
}

TEST(MachineNames, FileMayBeCalledLikeStandardInput) {
    EXPECT_EQ(NamesOf({"standard input", "./-"}), (Names{"standard input", "-"}));
}

TEST(MachineNames, FilesOfOneNameAreToldApartByTheirFolders) {
    EXPECT_EQ(NamesOf({"r1/web1.ini", "r2/web1.ini", "r2/web2.ini"}),
              (Names{"r1/web1", "r2/web1", "web2"}));
    EXPECT_EQ(NamesOf({"/srv/east/reports/web1.ini", "/srv/west/reports/web1.txt"}),
              (Names{"east/reports/web1", "west/reports/web1"}));
    EXPECT_EQ(NamesOf({"web1.ini", "old/web1.ini"}), (Names{"web1", "old/web1"}));
    EXPECT_EQ(NamesOf({"/web1.ini", "/old/web1.ini"}), (Names{"web1", "old/web1"}));
}

TEST(MachineNames, FilesOfOneFolderAreToldApartByTheirSuffixes) {
    EXPECT_EQ(NamesOf({"r/web1.ini", "r/web1.txt"}), (Names{"web1.ini", "web1.txt"}));
    EXPECT_EQ(NamesOf({"r/web1.ini", "r/web1.txt", "web1.ini"}),
              (Names{"r/web1.ini", "r/web1.txt", "web1.ini"}));
}

TEST(MachineNames, FileThatIsNamedTwiceIsOne) {
    EXPECT_EQ(NamesOf({"r/web1.ini", "./r//web1.ini"}), (Names{"web1", "web1"}));
}

TEST(MachineNames, AreUtf8) {
    EXPECT_EQ(NamesOf({"caf\xE9.ini"}), (Names{"caf\xC3\xA9"}));
}

}  // namespace
