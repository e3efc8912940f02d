// The fleet's table: sorts and filters it, and opens one machine at a time. The page's tests count
// the calls of applyFilter, textOf, sortBy, keyOf and compare, by these names.
"use strict";
(() => {
    const byId = (id) => document.getElementById(id);
    const fleet = byId("fleet");
    const machine = byId("machine");
    const filter = byId("filter");
    const order = byId("order");
    const table = fleet.querySelector("table");
    const body = table.tBodies[0];
    const headings = [...table.tHead.rows[0].cells];
    const pageTitle = document.title;

    // In the order of the table at the moment.
    let rows = Array.from(body.rows, (row, index) => ({ row, index, text: null }));
    let opened = null;
    // How far below the window's top the row was that opened the first machine.
    let height = null;

    const linkOf = (entry) => entry.row.querySelector("a");
    const heightOf = (entry) => entry.row.getBoundingClientRect().top;
    const shownRows = () => rows.filter((entry) => !entry.row.hidden);

    // --- Filter ---

    // Cells stay apart, so that no word is found across two of them.
    const textOf = (entry) => {
        entry.text ??= [...entry.row.cells, { textContent: entry.row.dataset.more }]
            .map((cell) => cell.textContent)
            .join("\n")
            .toLowerCase();
        return entry.text;
    };

    const applyFilter = () => {
        const words = filter.value.toLowerCase().split(/\s+/).filter(Boolean);
        let shown = 0;
        for (const entry of rows) {
            const isShown = words.every((word) => textOf(entry).includes(word));
            entry.row.hidden = !isShown;
            shown += isShown;
        }
        const all = rows.length.toLocaleString("en");
        byId("count").value =
            shown === rows.length ? `${all} machines` : `${shown.toLocaleString("en")} of ${all} machines`;
        byId("nothing").hidden = shown > 0;
    };

    // --- Order ---

    const collator = new Intl.Collator("en", { numeric: true, sensitivity: "base" });

    const keyOf = (entry, column) => {
        const cell = entry.row.cells[column];
        return cell.dataset.v === undefined
            ? (cell.querySelector("a") ?? cell).textContent
            : Number(cell.dataset.v);
    };

    // Rows without a value come last in either direction.
    const isEmpty = (key) => key === "";
    const compare = (a, b, sign) =>
        isEmpty(a) - isEmpty(b) || sign * (typeof a === "number" ? a - b : collator.compare(a, b));

    const arrange = (entries) => {
        rows = entries;
        const arranged = document.createDocumentFragment();
        for (const entry of rows) {
            arranged.append(entry.row);
        }
        body.append(arranged);
        for (const heading of headings) {
            heading.setAttribute("aria-sort", "none");
        }
    };

    const arrangeAsGiven = () => arrange([...rows].sort((a, b) => a.index - b.index));

    const sortBy = (column, isDescending) => {
        const sign = isDescending ? -1 : 1;
        const keyed = rows.map((entry) => ({ entry, key: keyOf(entry, column) }));
        keyed.sort((a, b) => compare(a.key, b.key, sign) || a.entry.index - b.entry.index);
        arrange(keyed.map(({ entry }) => entry));
        headings[column].setAttribute("aria-sort", isDescending ? "descending" : "ascending");
        order.value = `${column} ${isDescending}`;
    };

    // A second click on a heading turns the order round.
    const sortByHeading = (column) =>
        sortBy(column, headings[column].getAttribute("aria-sort") === "ascending");

    // What narrow screens have in place of the headings.
    const offerOrders = () => {
        order.append(new Option("as given", ""));
        headings.forEach((heading, column) => {
            for (const [isDescending, arrow] of [[false, "↑"], [true, "↓"]]) {
                order.append(new Option(`${heading.textContent} ${arrow}`, `${column} ${isDescending}`));
            }
        });
        order.addEventListener("change", () => {
            const [column, isDescending] = order.value.split(" ");
            if (column) {
                sortBy(Number(column), isDescending === "true");
            } else {
                arrangeAsGiven();
            }
        });
    };

    // --- One machine ---

    const link = (target, text) => {
        const element = document.createElement("a");
        element.href = target;
        element.textContent = text;
        return element;
    };

    const navigation = (entry) => {
        const bar = document.createElement("nav");
        bar.setAttribute("aria-label", "Machines");
        const shown = shownRows();
        const place = shown.indexOf(entry);
        const name = document.createElement("strong");
        name.textContent = linkOf(entry).textContent;
        bar.append(link("#", "All machines"), name);
        for (const [neighbour, kind] of [[shown[place - 1], "Previous"], [shown[place + 1], "Next"]]) {
            if (place >= 0 && neighbour) {
                const step = link(linkOf(neighbour).hash, `${kind}: ${linkOf(neighbour).textContent}`);
                step.rel = kind === "Next" ? "next" : "prev";
                bar.append(step);
            }
        }
        return bar;
    };

    const open = (entry) => {
        if (!fleet.hidden) {
            height = heightOf(entry);
        }
        opened = entry;
        const block = byId(`machine${entry.index + 1}`);
        machine.innerHTML = block.textContent + byId(`pci${block.dataset.pci}`).textContent;
        const title = machine.querySelector("h1");
        document.title = `${linkOf(entry).textContent}: ${title.textContent}`;
        machine.prepend(navigation(entry));
        fleet.hidden = true;
        machine.hidden = false;
        window.scrollTo(0, 0);
        title.focus({ preventScroll: true });
    };

    const close = () => {
        machine.hidden = true;
        machine.replaceChildren();
        fleet.hidden = false;
        document.title = pageTitle;
        if (opened) {
            opened.row.scrollIntoView({ block: "center" });
            if (height !== null) {
                window.scrollBy(0, heightOf(opened) - height);
            }
            linkOf(opened).focus({ preventScroll: true });
        }
        opened = null;
    };

    const follow = () => {
        const entry = rows.find(({ index }) => `#${index + 1}` === location.hash);
        if (entry) {
            open(entry);
        } else {
            close();
        }
    };

    // --- Hands ---

    const step = (from, distance) => {
        const shown = shownRows();
        const next = shown[shown.findIndex(({ row }) => row === from) + distance];
        if (next) {
            linkOf(next).focus();
        } else if (distance < 0) {
            filter.focus();
        }
    };

    // To the first row, or with `opens` to the machine where only one is left.
    const leaveFilter = (opens) => {
        const shown = shownRows();
        if (opens && shown.length === 1) {
            location.hash = linkOf(shown[0]).hash;
        } else if (shown.length > 0) {
            linkOf(shown[0]).focus();
        }
    };

    const onKey = (event) => {
        const row = event.target.closest("tbody tr");
        if (event.ctrlKey || event.altKey || event.metaKey) {
            return;
        }
        if (event.key === "/" && event.target !== filter && !fleet.hidden) {
            event.preventDefault();
            filter.focus();
            filter.select();
        } else if (event.key === "Escape" && !machine.hidden) {
            location.hash = "";
        } else if (event.key === "Escape" && filter.value) {
            filter.value = "";
            applyFilter();
        } else if (event.target === filter && (event.key === "Enter" || event.key === "ArrowDown")) {
            event.preventDefault();
            leaveFilter(event.key === "Enter");
        } else if (row && (event.key === "ArrowDown" || event.key === "ArrowUp")) {
            event.preventDefault();
            step(row, event.key === "ArrowDown" ? 1 : -1);
        }
    };

    headings.forEach((heading, column) => {
        heading.querySelector("button").addEventListener("click", () => sortByHeading(column));
    });
    offerOrders();
    filter.addEventListener("input", applyFilter);
    document.addEventListener("keydown", onKey);
    window.addEventListener("hashchange", follow);
    // The whole row leads to its machine, unless somebody selects a text in it.
    body.addEventListener("click", (event) => {
        const row = event.target.closest("tr");
        if (row && !event.target.closest("a") && getSelection().isCollapsed) {
            row.querySelector("a").click();
        }
    });

    applyFilter();
    follow();
})();
