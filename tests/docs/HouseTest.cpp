// The documents about the house against the house: its arrows, its files, its version.
#include <filesystem>

#include "docs/Documents.h"

namespace {

namespace fs = std::filesystem;

using documents::Read;
using documents::Words;
using support::FindAll;
using support::FindWords;

const fs::path kSources = SYSTALLY_SOURCES;

const char* const kDocuments[] = {
    "README.md",         "CONTRIBUTING.md",      "CHANGELOG.md",
    "SECURITY.md",       "docs/architecture.md", "docs/performance.md",
    "examples/README.md"};

/// What CMake links, folder by folder: "app-to-util" and the like.
Words LinkedFolders() {
    return FindWords(SYSTALLY_LINKS, "[a-z]+-to-[a-z]+");
}

TEST(Architecture, PictureShowsTheLinksOfTheBuild) {
    EXPECT_EQ(FindWords(Read("docs/architecture.svg"), "id=\"([a-z]+-to-[a-z]+)\""),
              LinkedFolders());
}

TEST(Architecture, TableShowsTheLinksOfTheBuild) {
    Words links;
    for (const std::string& row :
         FindAll(Read("docs/architecture.md"), "^\\| `[a-z]+/` \\|[^|]*\\|[^|]*\\|$")) {
        const std::string folder = FindAll(row, "`([a-z]+)/`").front();
        for (const std::string& linked : FindAll(row, "`([a-z]+)`(?=[^|]*\\|$)")) {
            links.insert(folder + "-to-" + linked);
        }
    }
    EXPECT_EQ(links, LinkedFolders());
}

TEST(Architecture, BuildHasTheArrowsThatWereDecided) {
    EXPECT_EQ(LinkedFolders(),
              (Words{"app-to-smbios", "app-to-pci", "app-to-util", "pci-to-util"}));
}

TEST(Architecture, EachGroupOfTestsIsTold) {
    Words groups;
    for (const fs::directory_entry& entry : fs::directory_iterator(kSources / "tests")) {
        if (entry.is_directory() && entry.path().filename() != "support") {
            groups.insert(entry.path().filename());
        }
    }
    EXPECT_EQ(FindWords(Read("docs/architecture.md"), "`tests/([a-z]+)`"), groups);
}

TEST(Tests, EachFileIsCompiled) {
    size_t files = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(kSources / "tests")) {
        const std::string name = entry.path().filename();
        if (!name.ends_with("Test.cpp")) {
            continue;
        }
        ++files;
        const fs::path list = fs::relative(entry.path().parent_path(), kSources) / "CMakeLists.txt";
        EXPECT_TRUE(FindWords(Read(list), "[A-Za-z0-9]+\\.cpp").contains(name))
            << name << " is missing in " << list;
    }
    EXPECT_GE(files, 100U);
}

TEST(HouseDocuments, NameFilesThatExist) {
    const std::string folders =
        "app|smbios|pci|util|machine|export|tests|bench|docs|completions|examples|cmake|packaging";
    size_t names = 0;
    size_t links = 0;
    for (const char* document : kDocuments) {
        const std::string text = Read(document);
        for (const std::string& name : FindAll(text, "`((?:" + folders + ")/[A-Za-z0-9_./-]*)`")) {
            ++names;
            EXPECT_TRUE(fs::exists(kSources / name)) << name << " in " << document;
        }
        for (const std::string& link : FindAll(text, "\\]\\(([^):#]+)\\)")) {
            ++links;
            EXPECT_TRUE(fs::exists((kSources / document).parent_path() / link))
                << link << " in " << document;
        }
    }
    EXPECT_GE(names, 60U);
    EXPECT_GE(links, 8U);
}

TEST(HouseDocuments, TakeReportsAtTheAddressOfThePackages) {
    const std::string contact =
        FindAll(Read("packaging/CMakeLists.txt"), "CPACK_PACKAGE_CONTACT \".*<(.*)>\"").at(0);
    EXPECT_EQ(FindWords(Read("SECURITY.md"), "[a-z]+@[a-z.-]+[a-z]"), Words{contact});
    for (const char* package : {"systally", "libsystally-dev"}) {
        const std::string fields = "tests/package/" + std::string(package) + ".fields";
        EXPECT_EQ(FindWords(Read(fields), "^Maintainer: .*<(.*)>$"), Words{contact});
    }
}

TEST(HouseDocuments, NameCommandsOfTheFrontDoor) {
    const support::Result help = support::Run({(kSources / "dev").string(), "help"});
    EXPECT_EQ(help.status, 0);
    const Words commands = FindWords(help.output, "^\\./dev ([a-z]+)");
    EXPECT_GE(commands.size(), 10U);
    for (const char* document : kDocuments) {
        for (const std::string& command : FindWords(Read(document), "\\./dev ([a-z]+)")) {
            EXPECT_TRUE(commands.contains(command)) << command << " in " << document;
        }
    }
}

TEST(Changelog, NewestReleaseIsThisVersion) {
    const std::string changes = Read("CHANGELOG.md");
    const std::vector<std::string> headings =
        FindAll(changes, "^## ([0-9.]+), [0-9]{4}-[0-9]{2}-[0-9]{2}$");
    ASSERT_FALSE(headings.empty());
    EXPECT_EQ(headings.front(), SYSTALLY_VERSION);
    const std::vector<std::string> releases = FindAll(changes, "^[0-9]+\\. ([0-9.]+)$");
    EXPECT_EQ(std::vector<std::string>(releases.rbegin(), releases.rend()), headings);
}

TEST(Changelog, EachReleaseTellsWhatBecameOfTheOutput) {
    const std::string changes = Read("CHANGELOG.md");
    EXPECT_EQ(FindAll(changes, "^### Output changes\n\n[^\n]").size(),
              FindAll(changes, "^## ").size());
}

TEST(Changelog, ManualPagesAreOfTheNewestRelease) {
    const std::string date =
        FindAll(Read("CHANGELOG.md"), "^## [0-9.]+, ([0-9]{4}-[0-9]{2}-[0-9]{2})$").front();
    for (const char* page :
         {"systally.8", "systally-on.8", "systally-capture.8", "systally-export.1"}) {
        EXPECT_EQ(FindAll(documents::Page(page), "^\\.TH [A-Z-]+ [18] (\\S+) systally "),
                  std::vector<std::string>{date})
            << page;
    }
}

}  // namespace
