// The completion at work in an interactive bash, whose line editor reads the keys of a test.
// The programs are replaced by functions that show the words with which they would be called.
#include "docs/Documents.h"
#include "support/TemporaryFolder.h"

namespace {

using documents::OptionsOf;
using documents::Words;
using support::TemporaryFolder;

using Line = std::vector<std::string>;

// What a person presses: Tab, and the key that inserts every completion at once.
#define TAB "\t"
#define ALL "\033*"

/// The words behind the program's name in the command line that these keys make. bash sees a
/// machine and stands in `folder`.
Line TypedOn(const std::filesystem::path& machine, const std::string& keys,
             const std::string& folder = "/") {
    const TemporaryFolder work;
    const std::string script = work.path() / "keys";
    std::ofstream(script) << "unset HISTFILE\n"
                             ". '" SYSTALLY_SOURCES
                             "/completions/systally'\n"
                             "systally() { printf '%s\\n' \"$@\"; }\n"
                             "systally-on() { systally \"$@\"; }\n"
                             "systally-capture() { systally \"$@\"; }\n"
                             "systally-export() { systally \"$@\"; }\n"
                             "cd '"
                          << folder << "'\n"
                          << keys << "\n";
    const support::Result result = support::RunOnMachine(
        machine,
        {"sh", "-c", "INPUTRC=/dev/null TERM=dumb exec bash --norc --noprofile -i <" + script});
    EXPECT_EQ(result.status, 0) << result.errors;
    return support::FindAll(result.output, "[^\n]+");
}

Line Typed(const std::string& keys, const std::string& folder = "/") {
    return TypedOn(support::Arlo2Folder(), keys, folder);
}

Words WordsTyped(const std::string& keys) {
    const Line line = Typed(keys);
    return {line.begin(), line.end()};
}

/// A folder that holds the empty folders "rack 7" and "row", and the file "report.ini".
class Completion : public testing::Test {
  protected:
    Completion() {
        std::filesystem::create_directory(m_folder.path() / "rack 7");
        std::filesystem::create_directory(m_folder.path() / "row");
        std::ofstream(m_folder.path() / "report.ini");
    }

    Line TypedThere(const std::string& keys) const { return Typed(keys, m_folder.path()); }

  private:
    TemporaryFolder m_folder;
};

TEST_F(Completion, OffersAllSwitchesAtFirst) {
    const Words all = {
        "/s",         "/i",    "/p",    "/m:",    "/x64",   "/dump", "/dumpINI", "/dumpProp",
        "/qMachType", "/vid:", "/did:", "/svid:", "/sdid:", "/bn:",  "/dn:",     "/add:"};
    EXPECT_EQ(WordsTyped("systally " ALL), all);
    EXPECT_EQ(WordsTyped("systally /" ALL), all);
}

TEST_F(Completion, LeavesNoBlankBeforeAValue) {
    EXPECT_EQ(Typed("systally /vi" TAB "1"), (Line{"/vid:1"}));
    EXPECT_EQ(Typed("systally /q" TAB "1"), (Line{"/qMachType1"}));
}

TEST_F(Completion, LeavesABlankBehindASwitchWithoutOne) {
    EXPECT_EQ(Typed("systally /x" TAB "1"), (Line{"/x64", "1"}));
    EXPECT_EQ(Typed("systally /dumpP" TAB "1"), (Line{"/dumpProp", "1"}));
}

TEST_F(Completion, TakesUpperAndLowerCaseForTheSame) {
    EXPECT_EQ(Typed("systally /VI" TAB "1"), (Line{"/vid:1"}));
    EXPECT_EQ(Typed("systally /DUMPi" TAB), (Line{"/dumpINI"}));
}

TEST_F(Completion, CompletesBehindTheColon) {
    EXPECT_EQ(Typed("systally /m:771" ALL), (Line{"/m:7710", "7711", "7712"}));
    EXPECT_EQ(Typed("systally /m:773" TAB "0"), (Line{"/m:7730"}));
    EXPECT_EQ(Typed("systally /m:7709" TAB), (Line{"/m:7709"}));
}

TEST_F(Completion, CompletesBehindTheColonWhereItSplitsNoWords) {
    EXPECT_EQ(Typed("COMP_WORDBREAKS=${COMP_WORDBREAKS//:}\nsystally /m:771" ALL),
              (Line{"/m:7710", "/m:7711", "/m:7712"}));
}

TEST_F(Completion, OffersTheVendorsAtHandAndTheirDevices) {
    const TemporaryFolder folder;
    const std::filesystem::path machine = folder.path() / "machine";
    machine::MachineBuilder().WriteTo(machine);
    // As the kernel lists them: place, vendor and device, interrupt, and more.
    std::ofstream(machine / "pci/devices") << "0000\t80863406\t0\t0\n"
                                              "0100\t14e41639\t1f\t0\n"
                                              "0101\t14e4163a\t1f\t0\n"
                                              "0600\t102b0534\t10\t0\n";
    EXPECT_EQ(TypedOn(machine, "systally /vid:" ALL), (Line{"/vid:102b", "14e4", "8086"}));
    EXPECT_EQ(TypedOn(machine, "systally /vid:10" TAB "/add:1"), (Line{"/vid:102b", "/add:1"}));
    EXPECT_EQ(TypedOn(machine, "systally /vid:14E4 /did:" ALL),
              (Line{"/vid:14E4", "/did:1639", "163a"}));
    EXPECT_EQ(TypedOn(machine, "systally /add:1 /did:0" TAB), (Line{"/add:1", "/did:0534"}));
}

TEST_F(Completion, OffersWhatGoesWithAnIdentifier) {
    EXPECT_EQ(WordsTyped("systally /vid:8086 /" ALL),
              (Words{"/vid:8086", "/did:", "/svid:", "/sdid:", "/bn:", "/dn:", "/add:"}));
}

TEST_F(Completion, OffersNoSecondQuestion) {
    EXPECT_EQ(Typed("systally /x" TAB), (Line{"/x64"}));
    for (const char* question : {"/i", "/dumpProp", "/s", "/m:7712", "/M:1", "/qMachType7712"}) {
        EXPECT_EQ(Typed("systally " + std::string(question) + " /x" TAB), (Line{question, "/x"}));
        EXPECT_EQ(Typed("systally " + std::string(question) + " /v" TAB), (Line{question, "/v"}));
    }
    EXPECT_EQ(Typed("systally /add:1 /x" TAB), (Line{"/add:1", "/x"}));
    EXPECT_EQ(Typed("systally /add:1 /v" TAB), (Line{"/add:1", "/vid:"}));
}

TEST_F(Completion, CompletesWhereTheCursorStands) {
    const std::string twoLeft = "\002\002";
    EXPECT_EQ(Typed("systally /vi /a" + twoLeft + "\002" TAB "1"), (Line{"/vid:1", "/a"}));
}

TEST_F(Completion, OffersFilesForARedirectedReport) {
    EXPECT_EQ(TypedThere("systally /i >rep" TAB "\ncat report.ini"), (Line{"/i"}));
}

TEST_F(Completion, OnOffersItsOptionsAndFolders) {
    EXPECT_EQ(TypedThere("systally-on " ALL),
              (Line{"--help", "--this", "--version", "rack 7", "row"}));
    EXPECT_EQ(TypedThere("systally-on ra" TAB "/s"), (Line{"rack 7//s"}));
    EXPECT_EQ(TypedThere("systally-on \"ra" TAB " /s"), (Line{"rack 7/", "/s"}));
    EXPECT_EQ(TypedThere("systally-on re" TAB), (Line{"re"}));
}

TEST_F(Completion, OnOffersTheProgramsSwitchesBehindTheMachine) {
    EXPECT_EQ(TypedThere("systally-on row /vi" TAB "1"), (Line{"row", "/vid:1"}));
    EXPECT_EQ(Typed("systally-on --t" TAB "/m:77" ALL),
              (Line{"--this", "/m:7709", "7710", "7711", "7712", "7730", "7731"}));
}

TEST_F(Completion, CaptureOffersItsOptionsAndFolders) {
    EXPECT_EQ(TypedThere("systally-capture ro" TAB), (Line{"row/"}));
    EXPECT_EQ(TypedThere("systally-capture row --s" TAB), (Line{"row", "--sanitize"}));
}

TEST_F(Completion, ExportOffersOneShapeAndFiles) {
    EXPECT_EQ(TypedThere("systally-export --j" TAB "re" TAB), (Line{"--json", "report.ini"}));
    EXPECT_EQ(TypedThere("systally-export --json --f" TAB), (Line{"--json", "--f"}));
    EXPECT_EQ(TypedThere("systally-export --html -o re" TAB "--v" TAB),
              (Line{"--html", "-o", "report.ini", "--version"}));
}

TEST_F(Completion, ExportOffersItsShapesFirst) {
    EXPECT_EQ(WordsTyped("systally-export " ALL),
              (Words{"--json", "--facter", "--ansible", "--prometheus", "--html"}));
    EXPECT_EQ(TypedThere("systally-export re" TAB), (Line{"report.ini"}));
    EXPECT_EQ(TypedThere("systally-export --json re" TAB), (Line{"--json", "report.ini"}));
}

TEST_F(Completion, ExportOffersFilesBehindAnEqualsSign) {
    EXPECT_EQ(TypedThere("systally-export --html --output=re" TAB),
              (Line{"--html", "--output=report.ini"}));
    EXPECT_EQ(TypedThere("systally-export --html --pci-ids=re" TAB "--v" TAB),
              (Line{"--html", "--pci-ids=report.ini", "--version"}));
}

TEST_F(Completion, OptionsAreThoseOfTheHelp) {
    EXPECT_EQ(WordsTyped("systally-on --" ALL), OptionsOf("systally-on"));
    EXPECT_EQ(WordsTyped("systally-capture --" ALL), OptionsOf("systally-capture"));
    EXPECT_EQ(WordsTyped("systally-export --" ALL), OptionsOf("systally-export"));
}

}  // namespace
