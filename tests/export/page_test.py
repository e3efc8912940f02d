#!/usr/bin/python3
"""page_test.py PROGRAM REPORT [PICTURES]: looks at the pages of systally-export in a Chromium.

With a third argument, pictures of the pages are left in that folder, for people to look at.
"""
import collections
import math
import pathlib
import subprocess
import sys
import tempfile
import unittest

# The folder of the sources stays as it is.
sys.dont_write_bytecode = True
import fleet
import fleet_page
from browser import DOWN, ENTER, ESCAPE, UP, Browser

PROGRAM, REPORT, *PICTURES = sys.argv[1:]

PCI_IDS = """\
8086  Chip Maker
\t3a20  Disk <Controller>
\t\t51e5 03bf  Board Four
14e4  Net Maker
\t1639  Gigabit Port
C 01  Mass storage controller
\t01  IDE interface
C 02  Network controller
\t00  Ethernet controller
"""

MARKUP = "<script>document.title='bad'</script><img src=x onerror=\"document.title='bad'\">&amp;"

# The smallest contrast between a text and what is behind it, and that text. WCAG 2.1, 1.4.3.
CONTRAST = """
const luminance = (rgb) => {
    const [r, g, b] = rgb.map((c) => c / 255)
        .map((c) => c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4);
    return 0.2126 * r + 0.7152 * g + 0.0722 * b;
};
const numbers = (colour) => colour.match(/[\\d.]+/g).map(Number);
// The colours behind an element: one, or those of a gradient.
const behind = (element) => {
    for (let e = element; e; e = e.parentElement) {
        const style = getComputedStyle(e);
        const gradient = style.backgroundImage.match(/rgb\\([^)]*\\)/g);
        if (gradient) return gradient.map(numbers);
        const ground = numbers(style.backgroundColor);
        if (ground.length === 3 || ground[3] === 1) return [ground];
    }
};
let worst = [21, ""];
const texts = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
while (texts.nextNode()) {
    const element = texts.currentNode.parentElement;
    const text = texts.currentNode.textContent.trim();
    if (!text || !element.checkVisibility({ contentVisibilityAuto: true })) continue;
    const ink = luminance(numbers(getComputedStyle(element).color).slice(0, 3));
    for (const ground of behind(element)) {
        const [high, low] = [ink, luminance(ground.slice(0, 3))].sort((a, b) => b - a);
        const contrast = (high + 0.05) / (low + 0.05);
        if (contrast < worst[0]) worst = [contrast, text];
    }
}
return worst;
"""

# What looks at every element of a page, counted. What looks for one stops there.
COUNT_SEARCHES = """
window.searches = 0;
for (const kind of [Document, Element]) {
    for (const name of ["querySelectorAll", "getElementsByTagName", "getElementsByClassName"]) {
        const search = kind.prototype[name];
        kind.prototype[name] = function (...names) {
            searches += 1;
            return search.apply(this, names);
        };
    }
}
"""


def setUpModule():
    global browser, folder
    folder = unittest.enterModuleContext(tempfile.TemporaryDirectory(prefix="systally-page-"))
    browser = unittest.enterModuleContext(Browser())


def write(name, text):
    path = pathlib.Path(folder) / name
    path.write_text(text, encoding="utf-8")
    return str(path)


def export(name, *arguments):
    page = str(pathlib.Path(folder) / name)
    subprocess.run([PROGRAM, "--html", "-o", page, *arguments], check=True)
    return page


def changed(*changes):
    """The sample server's report with some texts replaced."""
    text = pathlib.Path(REPORT).read_text(encoding="utf-8")
    for old, new in changes:
        assert old in text, old
        text = text.replace(old, new)
    return text


def text_of(selector):
    return browser.run("return document.querySelector(arguments[0]).innerText", selector)


def lines_of(selector):
    """The lines of a text, or the cells of a row."""
    return [line for line in text_of(selector).replace("\t", "\n").split("\n") if line]


def texts_of(selector):
    """The texts of what is not hidden; what is out of sight counts."""
    return browser.run("return [...document.querySelectorAll(arguments[0])]"
                       ".filter((e) => e.checkVisibility()).map((e) => e.textContent)", selector)


def focused():
    return browser.run("return document.activeElement.innerText || document.activeElement.id")


class Page(unittest.TestCase):
    def tearDown(self):
        self.assertEqual(browser.messages(), [])

    def assert_fits(self):
        """Nothing sticks out to the right, so nobody has to scroll sideways."""
        self.assertEqual(browser.run(
            "return [...document.querySelectorAll('body *')].filter((e) => e.checkVisibility()"
            " && !e.matches('caption') && e.getBoundingClientRect().right > innerWidth + 0.5)"
            ".map((e) => e.outerHTML.slice(0, 80))"), [])

    def assert_readable(self):
        contrast, text = browser.run(CONTRAST)
        self.assertGreaterEqual(contrast, 4.5, text)

    def picture(self, name):
        if PICTURES:
            browser.picture(f"{PICTURES[0]}/{name}.png")


class MachinePage(Page):
    @classmethod
    def setUpClass(cls):
        ids = write("pci.ids", PCI_IDS)
        cls.page = export("machine.html", "--pci-ids", ids, REPORT)

    def setUp(self):
        browser.show(1280, 1000)
        browser.open(self.page)

    def test_identity_stands_on_top(self):
        self.assertEqual(text_of("h1"), "Arlo 2")
        self.assertEqual(lines_of(".identity"), [
            "QEV", "Arlo 2", "Machine type", "7712", "Model", "00X", "Serial number", "QS0012345",
            "Blade slot", "14", "System UUID", "5A0E2C917712400B8E31001A64C37D02", "Chassis UUID",
            "9F3C0D5E6A7B41C2B8D0E1F203142536"])
        self.assertEqual(browser.run("return document.title"), "Arlo 2 QS0012345")

    def test_processors_memory_and_enclosures_are_told_in_words(self):
        self.assertEqual(lines_of(".processors"), [
            "Processors", "3 of 4 sockets", "3 × Xeon, 2.93 GHz", "Runs 64-bit code"])
        self.assertEqual(lines_of(".memory"),
                         ["Memory", "11 GiB", "11,280 MiB in all memory devices"])
        self.assertEqual(lines_of(".enclosures"),
                         ["Enclosures", "2", "Blade 1C", "Blade enclosure 1D"])

    def test_functions_hang_on_their_buses(self):
        self.assertEqual(texts_of("summary"), [
            "Bus 0 0x00 11 functions", "Bus 1 0x01 1 function", "Bus 6 0x06 1 function",
            "Bus 16 0x10 4 functions", "Bus 254 0xfe 3 functions"])
        self.assertEqual(browser.run("return document.querySelectorAll('.function').length"), 20)
        self.assertEqual(texts_of("details:nth-of-type(4) .branch"), ["10:00 4 functions"])

    def test_functions_have_the_names_of_the_list(self):
        self.assertEqual(lines_of("details:nth-of-type(1) > ul > li:last-child li:nth-child(2)"), [
            "00:1f.2", "Disk <Controller>", "Chip Maker · subsystem Board Four 51e5:03bf",
            "IDE interface", "8086:3a20", "rev 00"])

    def test_functions_that_the_list_does_not_know_have_numbers(self):
        self.assertEqual(lines_of("details:nth-of-type(3) .function"), [
            "06:00.0", "Device 0530", "Vendor 102b · subsystem 51e5:0369", "Class 0300",
            "102b:0530", "rev 0a"])

    def test_bus_folds_by_keyboard(self):
        browser.run("document.querySelector('summary').focus()")
        browser.type(ENTER)
        self.assertEqual(len(texts_of(".function")), 9)

    def test_nothing_is_fetched_and_no_script_runs(self):
        self.assertEqual(browser.run("return performance.getEntriesByType('resource').length"), 0)
        self.assertEqual(browser.run("return document.scripts.length"), 0)

    def test_page_fits_every_screen_in_light_and_dark(self):
        for width in (320, 390, 720, 1000, 1280):
            for scheme in ("light", "dark"):
                with self.subTest(width=width, scheme=scheme):
                    browser.show(width, 900, scheme)
                    self.assert_fits()
                    self.assert_readable()
                    self.picture(f"machine-{scheme}-{width}")

    def test_dark_mode_is_dark_and_paper_is_white(self):
        ground = "return getComputedStyle(document.body).backgroundColor"
        browser.show(1280, 900, "dark")
        self.assertEqual(browser.run(ground), "rgb(13, 18, 24)")
        browser.show(800, 1100, "dark", "print")
        self.assertEqual(browser.run(ground), "rgb(255, 255, 255)")
        self.assert_readable()
        self.assert_fits()
        self.picture("machine-paper")

    def test_markup_in_firmware_is_text(self):
        report = write("markup.ini", changed(("= QEV", "= " + MARKUP), ("Arlo 2 ", MARKUP),
                                             ("AB1234C", MARKUP), ("TKB037A", "\x1b\t" + MARKUP)))
        browser.open(export("markup.html", report))
        self.assertEqual(text_of("h1"), MARKUP)
        self.assertEqual(text_of(".maker"), MARKUP)
        self.assertIn("TESK\n␛␉" + MARKUP, text_of(".firmware"))
        self.assertEqual(browser.run("return document.title"), MARKUP + " QS0012345")
        self.assertEqual(browser.run("return document.querySelectorAll('img, script').length"), 0)


class FleetPage(Page):
    @classmethod
    def setUpClass(cls):
        cls.page = export("fleet.html", *fleet.write(200, folder))

    def setUp(self):
        browser.show(1280, 900)
        browser.open(self.page)

    def names(self):
        return texts_of("tbody th a")

    def column(self, number):
        return texts_of(f"tbody td:nth-child({number})")

    def sort_by(self, number):
        browser.click(f"thead th:nth-child({number}) button")

    def test_every_machine_has_a_row(self):
        self.assertEqual(text_of("h1"), "200 machines")
        self.assertEqual(len(self.names()), 200)
        self.assertEqual(lines_of("tbody tr:nth-child(2)"), [
            "web0002", "Birch 4", "7709-A1C", "QS0015838", "2.15", "1/2", "48 GiB", "10"])
        self.picture("fleet-light-1280")

    def test_filter_keeps_the_rows_that_hold_every_word(self):
        browser.type("birch WEB001", "#filter")
        self.assertEqual(self.names(), ["web0014"])
        self.assertEqual(text_of("#count"), "1 of 200 machines")
        browser.type(ESCAPE)
        self.assertEqual(len(self.names()), 200)
        self.assertEqual(text_of("#count"), "200 machines")

    def test_filter_finds_what_no_column_shows(self):
        browser.type("5A0E2C91771240" + "0" * 17 + "7", "#filter")
        self.assertEqual(self.names(), ["blade0007"])

    def test_filter_joins_no_cells(self):
        browser.type("47709", "#filter")
        self.assertEqual(self.names(), [])
        self.assertEqual(text_of("#nothing"), "No machine has all of these words.")

    def test_headings_sort_up_and_down(self):
        self.sort_by(1)
        self.assertEqual(self.names(), sorted(self.names()))
        self.sort_by(1)
        self.assertEqual(self.names(), sorted(self.names(), reverse=True))

    def test_numbers_are_sorted_as_numbers(self):
        self.sort_by(7)
        memory = self.column(7)
        self.assertEqual((memory[0], memory[-1]), ("11 GiB", "256 GiB"))
        self.sort_by(7)
        self.assertEqual(self.column(7), memory[::-1])

    def test_rows_without_a_value_come_last(self):
        for _ in range(2):
            self.sort_by(9)
            self.assertNotEqual(self.column(9)[0], "")
            self.assertEqual(self.column(9)[-1], "")

    def test_heading_says_how_the_table_is_sorted(self):
        order = "return [...document.querySelectorAll('thead th')].map((th) => th.ariaSort)"
        self.sort_by(2)
        self.sort_by(2)
        self.assertEqual(browser.run(order), ["none", "descending"] + ["none"] * 7)
        self.sort_by(1)
        self.assertEqual(browser.run(order), ["ascending"] + ["none"] * 8)

    def test_row_opens_its_machine_and_the_way_back_remembers_the_place(self):
        height = ("return document.querySelector('tbody tr:nth-child(100)')"
                  ".getBoundingClientRect().top")
        browser.run("document.querySelector('tbody tr:nth-child(100)').scrollIntoView()")
        browser.run("scrollBy(0, -300)")
        before = browser.run(height)
        browser.click("tbody tr:nth-child(100) td:nth-child(4)")
        self.assertEqual(browser.wait_for("return document.title"), "node0100: Dune R")
        self.assertEqual(text_of("#machine .identity dl div:nth-child(3) dd"), "QS0791900")
        self.assertEqual(len(texts_of("#machine .function")), 9)
        self.assertEqual(texts_of("#fleet"), [])
        self.assertEqual(browser.run("return scrollY"), 0)
        self.picture("fleet-opened")
        browser.run("history.back()")
        self.assertEqual(browser.wait_for("return document.title === '200 machines'"), True)
        self.assertAlmostEqual(browser.run(height), before, delta=3)
        self.assertEqual(texts_of("#machine"), [])

    def test_keyboard_alone_finds_and_opens_a_machine(self):
        browser.type("/")
        self.assertEqual(focused(), "filter")
        browser.type("cedar")
        self.assertEqual(len(self.names()), 33)
        browser.run("document.querySelector('tbody tr:not([hidden]) a').focus()")
        browser.type(DOWN)
        self.assertEqual(focused(), "db0009")
        browser.type(ENTER)
        self.assertEqual(browser.wait_for("return document.title"), "db0009: Cedar 1 X")
        self.assertEqual(focused(), "Cedar 1 X")
        browser.type(ESCAPE)
        self.assertEqual(browser.wait_for("return document.title === '200 machines'"), True)
        self.assertEqual(focused(), "db0009")

    def test_keys_lead_from_the_filter_to_the_first_row_and_back(self):
        browser.type("cedar" + DOWN, "#filter")
        self.assertEqual(focused(), "db0003")
        browser.type(UP)
        self.assertEqual(focused(), "filter")
        browser.type(ENTER)
        self.assertEqual(focused(), "db0003")

    def test_enter_opens_the_only_machine_that_is_left(self):
        browser.type("db0009" + ENTER, "#filter")
        self.assertEqual(browser.wait_for("return document.title.startsWith('db') && document.title"),
                         "db0009: Cedar 1 X")

    def test_neighbours_are_those_of_the_table(self):
        browser.type("cedar", "#filter")
        self.sort_by(1)
        self.sort_by(1)
        browser.click("tbody tr:not([hidden]) a")
        self.assertEqual(texts_of("nav a"), ["All machines", "Next: db0189"])
        browser.click("nav a[rel=next]")
        self.assertEqual(texts_of("nav a"),
                         ["All machines", "Previous: db0195", "Next: db0183"])

    def test_address_leads_to_a_machine(self):
        browser.open(self.page + "#2")
        self.assertEqual(browser.run("return document.title"), "web0002: Birch 4")

    def test_screen_readers_see_a_table(self):
        def role(selector):
            element = browser.element(selector)
            return (browser.ask(element + "/computedrole"), browser.ask(element + "/computedlabel"))
        self.assertEqual(role("table"), ("table", "All machines, one a row"))
        self.assertEqual(role("tbody tr")[0], "row")
        self.assertEqual(role("thead th:nth-child(2)"), ("columnheader", "Product"))
        self.assertEqual(role("tbody th")[0], "rowheader")
        self.assertEqual(role("tbody td:nth-child(2)")[0], "cell")
        self.assertEqual(role("#filter"), ("searchbox", "Filter"))
        self.assertEqual(role("#count")[0], "status")

    def test_screen_readers_see_every_row(self):
        nodes = browser.cdp("Accessibility.getFullAXTree")["nodes"]
        seen = [node["role"]["value"] for node in nodes if not node["ignored"]]
        self.assertEqual(seen.count("rowheader"), 200)
        self.assertEqual(seen.count("cell"), 200 * 8)

    def test_headings_and_types_fit_their_columns(self):
        for width in (320, 500, 840, 1000, 1030, 1060, 1090, 1280):
            with self.subTest(width=width):
                browser.show(width, 900)
                self.assertEqual(browser.run(
                    "return [...document.querySelectorAll('thead button')]"
                    ".filter((e) => e.scrollWidth > e.clientWidth).map((e) => e.textContent)"), [])
                self.assertEqual(browser.run(
                    "return [...document.querySelectorAll('tbody td:nth-child(3)')]"
                    ".filter((e) => e.clientHeight > 44).length"), 0)

    def test_headings_offer_to_sort_before_they_do(self):
        arrow = "return getComputedStyle(document.querySelector(arguments[0]), arguments[1]).content"
        self.assertIn("↕", browser.run(arrow, "th:nth-child(2) button", "::after"))
        self.assertIn("↕", browser.run(arrow, "th:nth-child(7) button", "::before"))
        self.sort_by(2)
        self.assertIn("▴", browser.run(arrow, "th:nth-child(2) button", "::after"))

    def test_narrow_screens_sort_by_every_column(self):
        self.assertEqual(texts_of(".order"), [])
        browser.show(360, 800)
        self.assertEqual(len(texts_of(".order")), 1)
        self.assertEqual(browser.run("return order.length"), 1 + 2 * 9)
        browser.click("#order option[value='3 true']")
        serials = [name.split(", ")[1] for name in texts_of("tbody th small")]
        self.assertEqual(serials, sorted(serials, reverse=True))

    def test_narrow_screens_go_back_to_the_order_as_given(self):
        browser.show(360, 800)
        given = texts_of("tbody th small")
        browser.click("#order option[value='3 true']")
        self.assertNotEqual(texts_of("tbody th small"), given)
        browser.click("#order option[value='']")
        self.assertEqual(texts_of("tbody th small"), given)
        self.assertEqual(text_of("#order option:checked"), "as given")
        self.assertEqual(browser.run(
            "return document.querySelectorAll(\"th[aria-sort='none']\").length"), 9)

    def test_paper_names_the_opened_machine(self):
        browser.show(718, 1047, "light", "print")
        browser.open(self.page + "#7")
        self.assertEqual(texts_of("nav strong"), ["blade0007"])
        self.assertEqual(texts_of("nav a"), [])
        self.picture("fleet-opened-paper")

    def test_serial_number_stands_once(self):
        for width in (320, 500, 720, 840, 1280):
            with self.subTest(width=width):
                browser.show(width, 900)
                self.assertEqual(text_of("tbody tr:nth-child(2)").count("QS0015838"), 1)

    def test_name_of_the_opened_machine_is_one_word(self):
        browser.show(360, 800)
        browser.open(self.page + "#7")
        self.assertLess(browser.run("return document.querySelector('nav strong').clientHeight"), 40)
        self.picture("fleet-opened-360")

    def test_page_fits_every_screen_in_light_and_dark(self):
        for width in (320, 390, 720, 1000, 1280):
            for scheme in ("light", "dark"):
                with self.subTest(width=width, scheme=scheme):
                    browser.show(width, 900, scheme)
                    self.assert_fits()
                    self.assert_readable()
                    self.picture(f"fleet-{scheme}-{width}")

    def test_paper_has_the_table_alone(self):
        # A4 between margins of a centimetre.
        browser.show(718, 1047, "dark", "print")
        self.assertEqual(texts_of(".controls"), [])
        self.assertEqual(len(texts_of("thead th")), 9)
        self.assertEqual(lines_of("tbody tr:nth-child(2)"), [
            "web0002", "Birch 4", "7709-A1C", "QS0015838", "2.15", "1/2", "48 GiB", "10"])
        self.assert_fits()
        self.assertEqual(len(self.names()), 200)
        self.assert_readable()
        self.picture("fleet-paper")

    def test_markup_in_firmware_is_text(self):
        report = changed(("= QEV", "= " + MARKUP), ("Arlo 2 ", MARKUP), ("QS0012345", MARKUP))
        page = export("markup-fleet.html", write("markup.ini", report), REPORT)
        browser.open(page)
        self.assertEqual(text_of("tbody td"), MARKUP)
        browser.open(page + "#1")
        self.assertEqual(text_of("#machine h1"), MARKUP)
        self.assertEqual(browser.run("return document.title"), "markup: " + MARKUP)
        self.assertEqual(browser.run("return document.querySelectorAll('img').length"), 0)


class LargeFleetPage(Page):
    """That the page does little for each of its rows. Counts are the same on every machine."""

    MACHINES = 1000

    @classmethod
    def setUpClass(cls):
        cls.page = export("large.html", *fleet.write(cls.MACHINES, folder))

    def setUp(self):
        browser.show(1280, 900)
        browser.cdp("Performance.enable")
        self.script = browser.cdp("Page.addScriptToEvaluateOnNewDocument", source=COUNT_SEARCHES)
        browser.cdp("Profiler.enable")
        browser.cdp("Profiler.startPreciseCoverage", callCount=True, detailed=False)

    def tearDown(self):
        browser.cdp("Profiler.disable")
        browser.cdp("Page.removeScriptToEvaluateOnNewDocument", **self.script)
        browser.cdp("Performance.disable")
        super().tearDown()

    def calls(self, action):
        """How often each of the page's functions runs meanwhile; those without a name together."""
        browser.cdp("Profiler.takePreciseCoverage")
        action()
        calls = collections.Counter()
        for script in browser.cdp("Profiler.takePreciseCoverage")["result"]:
            if script["url"] == "file://" + self.page:
                for function in script["functions"]:
                    # Of the parts that are counted, the first is the whole function.
                    calls[function["functionName"]] += function["ranges"][0]["count"]
        return calls

    def layouts_and_searches(self, action):
        """How often the page is laid out meanwhile, and searched from end to end."""
        before = browser.metric("LayoutCount"), browser.run("return searches")
        action()
        fleet_page.lay_out(browser)
        return (browser.metric("LayoutCount") - before[0],
                browser.run("return searches") - before[1])

    def test_opening_reads_no_row(self):
        calls = self.calls(lambda: browser.open(self.page))
        self.assertEqual(len(texts_of("tbody th a")), self.MACHINES)
        self.assertEqual(calls["applyFilter"], 1)
        # The list of rows is made, and asked once which of them is opened.
        self.assertLess(calls.total(), 3 * self.MACHINES)
        self.assertEqual((calls["textOf"], calls["keyOf"]), (0, 0))

    def test_opening_lays_the_page_out_and_searches_it_a_few_times(self):
        browser.open(self.page)
        fleet_page.lay_out(browser)
        self.assertLess(browser.metric("LayoutCount"), 10)
        self.assertLess(browser.run("return searches"), 10)

    def test_filter_looks_at_each_row_once(self):
        browser.open(self.page)
        for text in fleet_page.FILTERS:
            with self.subTest(text=text):
                calls = self.calls(lambda: fleet_page.filter_by(browser, text))
                self.assertEqual(calls["applyFilter"], 1)
                self.assertEqual(calls["textOf"], self.MACHINES if text else 0)
                # One for a row, one for its only word; ten more for the texts of a row, once.
                self.assertLess(calls.total(), 13 * self.MACHINES)

    def test_sorting_reads_each_row_once_and_compares_few(self):
        browser.open(self.page)
        for order in fleet_page.ORDERS:
            with self.subTest(order=order):
                calls = self.calls(lambda: fleet_page.click_first_heading(browser))
                self.assertEqual(calls["sortBy"], 1)
                self.assertEqual(calls["keyOf"], self.MACHINES)
                self.assertGreaterEqual(calls["compare"], self.MACHINES - 1)
                comparisons = self.MACHINES * math.log2(self.MACHINES)
                self.assertLess(calls["compare"], comparisons)
                # Each asks of two keys whether they are empty; five more for a row.
                self.assertLess(calls.total(), 3 * comparisons + 5 * self.MACHINES)

    def test_filter_and_sorting_lay_the_page_out_once_and_search_nothing(self):
        browser.open(self.page)
        for text in fleet_page.FILTERS:
            self.assertEqual(
                self.layouts_and_searches(lambda: fleet_page.filter_by(browser, text)), (1, 0))
        for _ in fleet_page.ORDERS:
            self.assertEqual(
                self.layouts_and_searches(lambda: fleet_page.click_first_heading(browser)), (1, 0))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
