#!/usr/bin/python3
"""page_bench.py PROGRAM: a fleet's page in a Chromium, beside a bare table of as many rows.

The figures are the processor time of the browser's process for pages, in milliseconds, the least
of several rounds.
"""
import pathlib
import subprocess
import sys
import tempfile

# The folder of the sources stays as it is.
sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests/export"))
import fleet
from browser import Browser

MACHINES = 2000
ROUNDS = 5
GOAL = 2.5  # times the work for the bare table


def bare_table():
    cells = "".join(f"<td>{column}</td>" for column in range(7))
    return "<!DOCTYPE html><table>" + MACHINES * f"<tr>{cells}</tr>"


def work(browser, action):
    """The processor time of an action until the page is laid out, in milliseconds."""
    def total():
        # What is counted for a document starts anew with the next one; this does not.
        metrics = browser.cdp("Performance.getMetrics")["metrics"]
        return 1000 * next(m["value"] for m in metrics if m["name"] == "ProcessTime")
    before = total()
    action()
    browser.run("document.body.offsetHeight")
    return total() - before


def measure(browser, bare, page):
    """One round: what each action costs."""
    def load(file):
        return work(browser, lambda: browser.ask("/url", {"url": "file://" + file}))

    def filter_by(text):
        script = "filter.value = arguments[0]; filter.dispatchEvent(new Event('input'))"
        return work(browser, lambda: browser.run(script, text))

    def sort():
        return work(browser, lambda: browser.run("document.querySelector('thead button').click()"))

    browser.ask("/url", {"url": "about:blank"})
    browser.cdp("Performance.enable")
    costs = {"bare table": load(bare), "open": load(page)}
    for text in ("b", "bl", "blade", ""):
        costs[f"filter '{text}'"] = filter_by(text)
    for order in ("first", "ascending", "descending"):
        costs[f"sort, {order}"] = sort()
    browser.cdp("Performance.disable")
    return costs


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: page_bench.py PROGRAM")
    with tempfile.TemporaryDirectory(prefix="systally-page-bench-") as folder:
        bare = pathlib.Path(folder, "bare.html")
        bare.write_text(bare_table(), encoding="utf-8")
        page = str(pathlib.Path(folder, "fleet.html"))
        subprocess.run([sys.argv[1], "--html", "-o", page, *fleet.write(MACHINES, folder)],
                       check=True)
        with Browser() as browser:
            browser.show(1280, 900)
            rounds = [measure(browser, str(bare), page) for _ in range(ROUNDS)]
    least = {action: min(costs[action] for costs in rounds) for action in rounds[0]}
    print(f"{f'page of {MACHINES:,} machines':28} {'ms':>10} {'ratio':>8} {'goal':>8}")
    met = True
    for action, cost in least.items():
        ratio = cost / least["bare table"]
        met = met and ratio <= GOAL
        print(f"{action:28} {cost:10.0f} {ratio:8.2f} {GOAL:8.2f}"
              + ("" if ratio <= GOAL else "   missed"))
    return 0 if met else 1


sys.exit(main())
