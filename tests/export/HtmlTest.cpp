// The pages as texts. How they look and move is the matter of page_test.py.
#include <gtest/gtest.h>

#include <map>

#include "export/Exporter.h"
#include "export/Html.h"

namespace {

using report::Report;

constexpr char kNoNames[] = "/dev/null";

std::string Page(const std::vector<Report>& reports) {
    std::string text;
    std::string failure;
    const std::unique_ptr<report::Shape> shape = report::MakeHtmlPage(kNoNames, failure);
    EXPECT_EQ(failure, "");
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
    report.machineType = "XXXX";
    return report;
}

size_t CountOf(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

void ExpectHolds(const std::string& page, const std::string& part) {
    EXPECT_NE(page.find(part), std::string::npos) << "no " << part;
}

TEST(Html, PageOfOneMachineHasNoScript) {
    const std::string page = Page({From("web1")});
    EXPECT_EQ(page.substr(0, 31), "<!DOCTYPE html>\n<html lang=\"en\"");
    EXPECT_EQ(CountOf(page, "<script"), 0U);
    EXPECT_EQ(CountOf(page, "script-src"), 0U);
    EXPECT_TRUE(page.ends_with("</body>\n</html>\n"));
}

TEST(Html, NothingIsLoadedFromElsewhere) {
    for (const std::string& page : {Page({From("web1")}), Page({From("web1"), From("web2")})}) {
        ExpectHolds(page, "content=\"default-src 'none'; img-src data:; style-src 'unsafe-inline'");
        EXPECT_EQ(CountOf(page, "src="), 0U);
        EXPECT_EQ(CountOf(page, "url("), 0U);
        EXPECT_EQ(CountOf(page, "@import"), 0U);
        EXPECT_EQ(CountOf(page, "https:"), 0U);
        // The icon's name space, which is no address.
        EXPECT_EQ(CountOf(page, "http:"), 1U);
    }
}

TEST(Html, FirmwareThatSaysNothingStillGivesAPage) {
    const std::string page = Page({From("web1")});
    ExpectHolds(page, "<h1 tabindex=\"-1\">Unknown machine</h1>");
    ExpectHolds(page, "<dt>Machine type</dt><dd><span class=\"none\">unknown</span></dd>");
    ExpectHolds(page, "<dt>Serial number</dt><dd><span class=\"none\">not given</span></dd>");
    ExpectHolds(page, "The firmware describes none");
    ExpectHolds(page, "<h2>PCI functions <small>none</small></h2>");
    EXPECT_EQ(CountOf(page, "<dt>TESK</dt>"), 0U);
    EXPECT_EQ(CountOf(page, "<dt>Blade slot</dt>"), 0U);
}

TEST(Html, MachineWithoutAProductIsCalledByItsType) {
    Report report = From("web1");
    report.machineType = "7709";
    ExpectHolds(Page({report}), "<h1 tabindex=\"-1\">Machine type 7709</h1>");
}

TEST(Html, EqualProcessorsShareALine) {
    Report report = From("web1");
    report.processorSlots = 4;
    report.activeProcessors = 4;
    report.processorFamilies = {179, 179, 7, 179};
    report.processorSpeeds = {2933, 2933, 0, 2933};
    ExpectHolds(Page({report}), "<li>3 × Xeon, 2.93 GHz</li><li>1 × Family 7</li></ul>");
}

TEST(Html, ManySocketsAreNotDrawn) {
    Report report = From("web1");
    report.processorSlots = 64;
    EXPECT_EQ(CountOf(Page({report}), "<i></i>"), 64U);
    report.processorSlots = 65;
    EXPECT_EQ(CountOf(Page({report}), "<i></i>"), 0U);
}

TEST(Html, EnclosureWithoutANameHasItsNumber) {
    Report report = From("web1");
    report.enclosures = 1;
    report.enclosureTypes = {0x7F};
    ExpectHolds(Page({report}), "<li>Type 7F<small></small></li>");
}

TEST(Html, FunctionsWithoutAddressAreMentioned) {
    Report report = From("web1");
    report.pciTotal = 3;
    report.pciFunctions.resize(1);
    ExpectHolds(Page({report}),
                "2 further functions are counted but not listed: outside buses 0 to 255, or lost "
                "where the report was cut.");
    report.pciTotal = 2;
    ExpectHolds(Page({report}),
                "1 further function is counted but not listed: outside buses 0 to 255, or lost "
                "where the report was cut.");
}

/// The page of one function with subsystem 1028:0020 and that header type.
std::string PageOfFunction(uint32_t headerType) {
    Report report = From("web1");
    report.pciTotal = 1;
    report.pciFunctions.resize(1);
    report.pciFunctions[0].headerType = headerType;
    report.pciFunctions[0].subVendorId = 0x1028;
    report.pciFunctions[0].subDeviceId = 0x0020;
    return Page({report});
}

TEST(Html, SubsystemIsThatOfAPlainHeader) {
    ExpectHolds(PageOfFunction(0x00), " · subsystem <code>1028:0020</code>");
    ExpectHolds(PageOfFunction(0x80), " · subsystem <code>1028:0020</code>");
}

// What a bridge has in those places is the address of a window.
TEST(Html, BridgeHasNoSubsystem) {
    for (const uint32_t headerType : {0x01U, 0x81U, 0x02U}) {
        EXPECT_EQ(PageOfFunction(headerType).find("subsystem"), std::string::npos) << headerType;
    }
}

TEST(Html, MachinesOfOneKindShareTheirPciFunctions) {
    Report one = From("web1");
    Report other = From("web2");
    EXPECT_EQ(CountOf(Page({one, other}), "<h2>PCI functions"), 1U);
    other.pciFunctions.resize(1);
    EXPECT_EQ(CountOf(Page({one, other}), "<h2>PCI functions"), 2U);
}

TEST(Html, NoValueEndsTheBlockThatHoldsIt) {
    Report report = From("</script>");
    report.serialNumber = "</script><!--";
    const std::string page = Page({report, From("web2")});
    EXPECT_EQ(CountOf(page, "<script"), CountOf(page, "</script>"));
    EXPECT_EQ(CountOf(page, "<!--"), 0U);
}

TEST(Html, FleetIsSummedUp) {
    Report one = From("web1");
    one.productName = "Arlo 2 ";
    one.activeProcessors = 3;
    one.memoryMb = 1024;
    Report other = one;
    other.machine = "web2";
    Report third = From("web3");
    third.activeProcessors = 1;
    ExpectHolds(Page({one, other, third}), "<p>2 products · 7 processors · 2 GiB of memory</p>");
}

// --- Names, through the program -----------------------------------------------------------------

std::string PageOfArlo2(const support::Arguments& options) {
    const reports::File file(reports::Arlo2());
    support::Arguments command = {support::ProgramPath("systally-export"), "--html", file.path()};
    command.insert(command.end(), options.begin(), options.end());
    return support::Run(command).output;
}

TEST(HtmlNames, AreThoseOfTheSystem) {
    ExpectHolds(PageOfArlo2({}), ">Ethernet controller<");
}

TEST(HtmlNames, AreNumbersWhereTheSystemHasNoList) {
    const reports::File file(reports::Arlo2());
    const support::Result result = support::RunWithHidden(
        "/usr/share/misc", {support::ProgramPath("systally-export"), "--html", file.path()});
    EXPECT_EQ(result.errors, "");
    ExpectHolds(result.output,
                "There was no PCI ID list, so PCI functions have numbers for names.");
    ExpectHolds(result.output, "<b>Device 1639</b><small>Vendor 14e4 ·");
    EXPECT_EQ(result.output, PageOfArlo2({"--pci-ids", kNoNames}));
}

TEST(HtmlNames, ListThatHasNoneIsAnError) {
    const reports::File file(reports::Arlo2());
    const std::map<std::string, std::string> failures = {
        {"/nowhere/pci.ids", "cannot read: No such file or directory"},
        {"/tmp", "cannot read: Is a directory"},
        {file.path(), "no list of PCI names"}};
    for (const auto& [list, failure] : failures) {
        exporter::ExpectComplaint(exporter::Export({"--html", "--pci-ids", list, file.path()}), 1,
                                  list + ": " + failure);
    }
}

TEST(HtmlNames, ListDoesNotMatterToOtherShapes) {
    const reports::File file(reports::Arlo2());
    const support::Result result =
        exporter::Export({"--json", "--pci-ids", "/nowhere/pci.ids", file.path()});
    EXPECT_EQ(result.errors, "");
    EXPECT_EQ(result.status, 0);
}

}  // namespace
