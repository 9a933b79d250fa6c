"use strict";

// What the page shows: nodes (name, GUID, class, a cell for each function), cells (mark, cause, the
// generator's words, frame, values), and what these name by number; a frame is a list of lines, in
// which holes stand for the values and the node's name. Whatever comes from here is shown as text.
const data = JSON.parse(document.getElementById("data").textContent);

const ROW_HEIGHT = 30;
const ROWS_BEYOND = 12; // rendered above and below what is seen
const NAME_HOLE = "\u0002";
const HOLES = /[\u0001\u0002]/g;
const NO_CAUSE = 0;

const byId = (id) => document.getElementById(id);
const scroller = byId("scroller");
const grid = byId("grid");
const body = byId("body");
const dialog = byId("dialog");

function make(tag, className, text) {
  const element = document.createElement(tag);
  if (className) element.className = className;
  if (text !== undefined) element.textContent = text;
  return element;
}

function counted(count, noun) {
  return `${count.toLocaleString("en")} ${noun}${count === 1 ? "" : "s"}`;
}

const shortName = (name) => name.replace(/^set/, "");

function cellOf(node, column) {
  const [mark, cause, words, frame, values] = data.cells[node[3][column]];
  return { mark: data.marks[mark], markIndex: mark, cause: data.causes[cause], causeIndex: cause,
           words: data.reasons[words], frame, values };
}

/// The generated text, put together again.
function textOf(node, column) {
  const cell = cellOf(node, column);
  const values = data.values[cell.values].split(" ")[Symbol.iterator]();
  const lines = data.frames[cell.frame].split(" ").map((line) => data.lines[line]);
  return lines.join("\n").replace(HOLES, (hole) =>
    hole === NAME_HOLE ? node[0] : values.next().value);
}

// ---------- The matrix: of its rows, only those near what is seen are in the document ----------

let rows = data.nodes; // that pass the filters
let columns = data.functions.map((_, index) => index);
let active = { row: 0, column: 0 }; // the cell that the Tab key reaches; columns as shown
const rendered = new Map(); // row number to element

function renderHead() {
  const row = make("div", "row head");
  row.setAttribute("role", "row");
  row.setAttribute("aria-rowindex", "1");
  const corner = make("div", "name corner", "Node");
  corner.setAttribute("role", "columnheader");
  row.append(corner);
  for (const column of columns) {
    const head = make("div", "function");
    head.setAttribute("role", "columnheader");
    head.setAttribute("aria-label", data.functions[column]);
    head.title = data.functions[column];
    head.append(make("span", "", shortName(data.functions[column])));
    row.append(head);
  }
  byId("head").replaceChildren(row);
  grid.setAttribute("aria-colcount", columns.length + 1);
  grid.style.setProperty("--columns", columns.length);
}

function makeRow(number) {
  const node = rows[number];
  const row = make("div", "row");
  row.setAttribute("role", "row");
  row.setAttribute("aria-rowindex", number + 2);
  row.style.top = `${number * ROW_HEIGHT}px`;
  const name = make("div", "name");
  name.setAttribute("role", "rowheader");
  name.title = `${node[0]}\n${node[1]}`;
  name.append(make("span", "class", node[2]), make("span", "label", node[0]),
              make("span", "guid", node[1]));
  row.append(name);
  columns.forEach((column, place) => {
    const { mark, cause } = cellOf(node, column);
    const cell = make("div", `cell ${mark.word}`, mark.sign);
    cell.setAttribute("role", "gridcell");
    cell.setAttribute("aria-colindex", place + 2);
    cell.setAttribute("aria-label",
                      `${data.functions[column]}: ${mark.word}${cause.text && ", " + cause.text}`);
    cell.tabIndex = -1;
    cell.dataset.row = number;
    cell.dataset.column = place;
    row.append(cell);
  });
  return row;
}

function cellElement({ row, column }) {
  const element = rendered.get(row);
  return element ? element.children[column + 1] : null;
}

/// Brings the rows near what is seen into the document, and takes the others out. The active one
/// always stays, so that the keyboard never loses its place.
function render() {
  const first = Math.max(0, Math.floor(scroller.scrollTop / ROW_HEIGHT) - ROWS_BEYOND);
  const last = Math.min(
    rows.length, Math.ceil((scroller.scrollTop + scroller.clientHeight) / ROW_HEIGHT) + ROWS_BEYOND);
  const wanted = new Set();
  for (let row = first; row < last; ++row) wanted.add(row);
  if (rows.length !== 0) wanted.add(active.row);
  for (const [row, element] of rendered) {
    if (wanted.has(row)) continue;
    element.remove();
    rendered.delete(row);
  }
  for (const row of wanted) {
    if (rendered.has(row)) continue;
    const element = makeRow(row);
    rendered.set(row, element);
    body.append(element);
  }
  const cell = cellElement(active);
  if (cell) cell.tabIndex = 0;
}

function renderAll() {
  rendered.clear();
  body.replaceChildren();
  body.style.height = `${rows.length * ROW_HEIGHT}px`;
  grid.setAttribute("aria-rowcount", rows.length + 1);
  active = { row: 0, column: 0 };
  scroller.scrollTop = 0;
  renderHead();
  render();
}

function moveTo(row, column, focus) {
  if (rows.length === 0) return;
  const before = cellElement(active);
  if (before) before.tabIndex = -1;
  active = {
    row: Math.min(Math.max(row, 0), rows.length - 1),
    column: Math.min(Math.max(column, 0), columns.length - 1),
  };
  const top = active.row * ROW_HEIGHT;
  const seen = scroller.clientHeight - byId("head").offsetHeight - ROW_HEIGHT;
  if (top < scroller.scrollTop) scroller.scrollTop = top;
  if (top > scroller.scrollTop + seen) scroller.scrollTop = top - seen;
  render();
  const cell = cellElement(active);
  if (focus) cell.focus({ preventScroll: true });
  const name = rendered.get(active.row).firstChild;
  const left = cell.offsetLeft - name.offsetWidth;
  if (left < scroller.scrollLeft) scroller.scrollLeft = left;
  const right = cell.offsetLeft + cell.offsetWidth - scroller.clientWidth;
  if (right > scroller.scrollLeft) scroller.scrollLeft = right;
}

const pageRows = () => Math.max(1, Math.floor(scroller.clientHeight / ROW_HEIGHT) - 6);
const MOVES = {
  ArrowUp: () => [active.row - 1, active.column],
  ArrowDown: () => [active.row + 1, active.column],
  ArrowLeft: () => [active.row, active.column - 1],
  ArrowRight: () => [active.row, active.column + 1],
  PageUp: () => [active.row - pageRows(), active.column],
  PageDown: () => [active.row + pageRows(), active.column],
  Home: (whole) => [whole ? 0 : active.row, 0],
  End: (whole) => [whole ? rows.length - 1 : active.row, columns.length - 1],
};

grid.addEventListener("keydown", (event) => {
  if (!event.target.classList.contains("cell") || event.altKey || event.metaKey) return;
  if (event.key === "Enter" || event.key === " ") {
    openText();
  } else if (MOVES[event.key]) {
    moveTo(...MOVES[event.key](event.ctrlKey), true);
  } else {
    return;
  }
  event.preventDefault();
});

grid.addEventListener("click", (event) => {
  const cell = event.target.closest(".cell");
  if (!cell) return;
  moveTo(Number(cell.dataset.row), Number(cell.dataset.column), true);
  openText();
});

scroller.addEventListener("scroll", render, { passive: true });
window.addEventListener("resize", render);

// ---------- The text of one function ----------

function fillText() {
  const node = rows[active.row];
  const column = columns[active.column];
  const { mark, cause } = cellOf(node, column);
  byId("dialog-title").textContent = `${node[2]}::${data.functions[column]}`;
  byId("dialog-node").textContent = `${node[0]}  ${node[1]}`;
  const sign = make("span", `sign ${mark.word}`, mark.sign);
  const words = make("span", "", cause.text || mark.meaning);
  byId("dialog-mark").replaceChildren(sign, words);
  if (cause.remedy) words.append(make("span", "remedy", cause.remedy));
  const text = byId("text");
  text.replaceChildren();
  for (const line of textOf(node, column).replace(/\n$/, "").split("\n")) {
    const start = line.trimStart();
    const kind = start.startsWith("#error") ? "stops" : start.startsWith("//") ? "remark" : "";
    text.append(make("span", kind, line + "\n"));
  }
  text.scrollTop = 0;
  for (const button of dialog.querySelectorAll("[data-row]")) {
    const row = active.row + Number(button.dataset.row);
    const place = active.column + Number(button.dataset.column);
    button.disabled = row < 0 || row >= rows.length || place < 0 || place >= columns.length;
  }
}

function openText() {
  fillText();
  dialog.showModal();
  byId("text").focus();
}

dialog.addEventListener("click", (event) => {
  const button = event.target.closest("[data-row]");
  if (button) {
    moveTo(active.row + Number(button.dataset.row), active.column + Number(button.dataset.column),
           false);
    fillText();
    if (button.disabled) byId("text").focus();
  } else if (event.target === dialog) {
    dialog.close(); // beside the text
  }
});
dialog.addEventListener("close", () => moveTo(active.row, active.column, true));

// ---------- Filters ----------

function option(value, text) {
  const element = make("option", "", text);
  element.value = value;
  return element;
}

function applyFilters() {
  const word = byId("node").value.trim().toLowerCase();
  const ofClass = byId("class").value;
  const mark = byId("mark").value;
  const cause = byId("cause").value;
  const only = byId("function").value;
  const isOf = (node, column) => cause === "" || cellOf(node, column).causeIndex === Number(cause);
  columns = data.functions.map((_, index) => index);
  if (only !== "") columns = [Number(only)];
  if (cause !== "") {
    columns = columns.filter((column) => data.nodes.some((node) => isOf(node, column)));
  }
  rows = data.nodes.filter(
    (node) =>
      (word === "" || node[0].toLowerCase().includes(word) || node[1].includes(word)) &&
      (ofClass === "" || node[2] === ofClass) &&
      columns.some((column) => isOf(node, column) &&
                               (mark === "" || cellOf(node, column).mark.word === mark)));
  byId("shown").textContent =
    rows.length === data.nodes.length
      ? counted(rows.length, "node")
      : `${rows.length.toLocaleString("en")} of ${counted(data.nodes.length, "node")}`;
  renderAll();
}

function showOnly(filter, value) {
  byId("filters").reset();
  byId(filter).value = value;
  applyFilters();
}

// ---------- Totals, and what stops the build ----------

/// Counts of the marks, and the generator's words for each cause and function.
function lookAtCells() {
  const counts = data.marks.map(() => 0);
  const words = data.causes.map(() => new Map());
  for (const node of data.nodes) {
    data.functions.forEach((_, column) => {
      const cell = cellOf(node, column);
      ++counts[cell.markIndex];
      if (cell.words) words[cell.causeIndex].set(column, cell.words);
    });
  }
  return { counts, words };
}

function makeStop(stop, words) {
  const mark = data.marks[stop.mark];
  const isShared = stop.cause === NO_CAUSE;
  const button = make("button", "reason");
  button.type = "button";
  button.append(make("span", isShared ? "sign" : `sign ${mark.word}`, isShared ? "" : mark.sign),
                make("span", "why", stop.text), make("span", "many", counted(stop.nodes, "node")));
  button.addEventListener("click", () =>
    isShared ? showOnly("class", stop.class) : showOnly("cause", String(stop.cause)));
  const item = make("li");
  item.append(button, make("p", "remedy", stop.remedy));
  const affected = make("ul", "affected");
  for (const column of stop.functions) {
    const entry = make("li", "", shortName(data.functions[column]));
    const quoted = words.get(column);
    if (quoted) entry.append(" ", make("q", "", quoted));
    affected.append(entry);
  }
  item.append(affected);
  return item;
}

function showTotals() {
  byId("snapshot").textContent = data.snapshot;
  const verdict = byId("verdict");
  verdict.className = data.builds ? "good" : "bad";
  verdict.textContent = data.verdict;
  document.title = `${data.snapshot}: fabscan check`;

  const { counts, words } = lookAtCells();
  data.marks.forEach((mark, index) => {
    const button = make("button", "total");
    button.type = "button";
    button.disabled = counts[index] === 0;
    button.append(make("span", `sign ${mark.word}`, mark.sign),
                  make("strong", "", counts[index].toLocaleString("en")),
                  make("span", "meaning", mark.meaning));
    button.addEventListener("click", () => showOnly("mark", mark.word));
    const entry = make("li");
    entry.append(button);
    byId("totals").append(entry);
  });
  byId("reasons").append(...data.stops.map((stop) => makeStop(stop, words[stop.cause])));
  byId("stops").open = !data.builds;
  byId("stops").hidden = data.stops.length === 0;
}

function fillFilters() {
  for (const word of [...new Set(data.nodes.map((node) => node[2]))].sort()) {
    byId("class").append(option(word, word));
  }
  data.functions.forEach((name, index) => byId("function").append(option(index, name)));
  data.causes.forEach(({ text }, index) => {
    if (index !== NO_CAUSE) byId("cause").append(option(index, text));
  });
  for (const mark of data.marks) {
    byId("mark").append(option(mark.word, `${mark.sign}  ${mark.word}`));
  }
  byId("node").addEventListener("input", applyFilters);
  for (const id of ["class", "function", "cause", "mark"]) {
    byId(id).addEventListener("change", applyFilters);
  }
  byId("filters").addEventListener("submit", (event) => event.preventDefault());
  byId("filters").addEventListener("reset", () => setTimeout(applyFilters));
}

showTotals();
fillFilters();
applyFilters();
