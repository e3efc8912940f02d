#!/usr/bin/python3
"""page_bench.py PROGRAM: a fleet's page in a Chromium, beside a bare table of as many rows.

Figures are milliseconds of processor time of the process that shows the page, of which it tells
tens, the least of several rounds. The fleet and the browser are those of the page's tests.
"""
import pathlib
import subprocess
import sys
import tempfile

# The folder of the sources stays as it is.
sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests/export"))
import fleet
import fleet_page
from browser import Browser

MACHINES = 2000
COLUMNS = 9  # those of the fleet's table
ROUNDS = 5
GOALS = {"open": 2.5, "filter": 1.5, "sort": 2.5}  # times the work for the bare table


def bare_table():
    cells = "".join(f"<td>{column}</td>" for column in range(COLUMNS))
    return "<!DOCTYPE html><table>" + MACHINES * f"<tr>{cells}</tr>"


def work(browser, action):
    """The processor time of an action until the page is laid out, in milliseconds."""
    # TaskDuration would begin anew with each document.
    before = browser.metric("ProcessTime")
    action()
    fleet_page.lay_out(browser)
    cost = 1000 * (browser.metric("ProcessTime") - before)
    assert cost >= 0, "another process shows the page now"
    return cost


def measure(browser, bare, page):
    """One round: what each action costs."""
    def load(file):
        return work(browser, lambda: browser.ask("/url", {"url": "file://" + file}))

    browser.ask("/url", {"url": "about:blank"})
    browser.cdp("Performance.enable")
    costs = {"bare table": load(bare), "open": load(page)}
    for text in fleet_page.FILTERS:
        costs[f"filter by '{text}'"] = work(browser, lambda: fleet_page.filter_by(browser, text))
    for order in fleet_page.ORDERS:
        costs[f"sort {order}"] = work(browser, lambda: fleet_page.click_first_heading(browser))
    browser.cdp("Performance.disable")
    return costs


def main():
    if len(sys.argv) != 2:
        print("usage: page_bench.py PROGRAM", file=sys.stderr)
        return 2
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
    yardstick = least.pop("bare table")
    print(f"{f'page of {MACHINES:,} machines':28} {'ms':>6} {'ratio':>8} {'goal':>8}")
    print(f"{'a bare table of as many rows':28} {yardstick:6.0f}")
    met = True
    for action, cost in least.items():
        ratio, goal = cost / yardstick, GOALS[action.split()[0]]
        met = met and ratio <= goal
        print(f"{action:28} {cost:6.0f} {ratio:8.2f} {goal:8.2f}"
              + ("" if ratio <= goal else "   missed"))
    return 0 if met else 1


sys.exit(main())
