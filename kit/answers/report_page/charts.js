"use strict";

// Elements, and charts made of them. All text goes in as text, never as markup,
// since names come from files that anybody may have made.

const svgNamespace = "http://www.w3.org/2000/svg";

function fill(element, attributes, children) {
  for (const [name, value] of Object.entries(attributes)) {
    element.setAttribute(name, value);
  }
  element.append(...children);
  return element;
}

function html(name, attributes = {}, ...children) {
  return fill(document.createElement(name), attributes, children);
}

function svg(name, attributes = {}, ...children) {
  return fill(document.createElementNS(svgNamespace, name), attributes,
    children);
}

// "1,234" and "0.0123"; for axes "1.2M".
function exact(number) {
  return Number.isInteger(number)
    ? number.toLocaleString("en-US")
    : Number(number.toPrecision(5)).toLocaleString("en-US",
      { maximumSignificantDigits: 5 });
}

function brief(number) {
  for (const [unit, letter] of [[1e9, "G"], [1e6, "M"], [1e3, "k"]]) {
    if (Math.abs(number) >= unit) {
      return Number((number / unit).toPrecision(3)) + letter;
    }
  }
  return String(Number(number.toPrecision(3)));
}

// Even numbers from 0 to the largest or a little more, at most six of them.
function ticksTo(largest) {
  if (!(largest > 0)) return [0, 1];
  const rough = largest / 5;
  const power = 10 ** Math.floor(Math.log10(rough));
  const step = [1, 2, 5, 10].find((n) => n * power >= rough * 0.999) * power;
  const ticks = [];
  for (let i = 0; ticks.length === 0 || ticks.at(-1) < largest * 0.999; i++) {
    ticks.push(i * step);
  }
  return ticks;
}

// A table of numbers and text: columns by name, rows of cells.
function table(columns, rows) {
  const cell = (name, value, isNumber) =>
    html(name, isNumber ? { class: "number" } : {},
      typeof value === "number" ? exact(value) : value ?? "");
  const isNumber = columns.map((_, i) =>
    rows.some((row) => typeof row[i] === "number"));
  return html("table", {},
    html("thead", {},
      html("tr", {}, ...columns.map((c, i) => cell("th", c, isNumber[i])))),
    html("tbody", {},
      ...rows.map((row) =>
        html("tr", {}, ...row.map((v, i) => cell("td", v, isNumber[i]))))));
}

// The same, folded up behind a line to press.
function foldedTable(title, columns, rows) {
  return html("details", {}, html("summary", {}, title),
    html("div", { class: "scrolled", tabindex: "0", role: "region",
      "aria-label": title }, table(columns, rows)));
}

// The frame of a chart: axes with their ticks and names, and what turns data
// into places. `x` and `y` map a number to a place; `xTicks` are [number, text].
class Frame {
  constructor({ title, xName, yName, xRange, xTicks, yLargest, right = 12 }) {
    this.width = 560;
    this.height = 340;
    this.left = 64;
    this.top = 38;
    this.right = this.width - right;
    this.bottom = this.height - 48;
    const ticks = ticksTo(yLargest);
    const [from, to] = xRange;
    const span = to > from ? to - from : 1;
    this.x = (n) => this.left + (n - from) / span * (this.right - this.left);
    this.y = (n) =>
      this.bottom - n / ticks.at(-1) * (this.bottom - this.top);
    this.root = svg("svg", { viewBox: `0 0 ${this.width} ${this.height}`,
      role: "img", "aria-label": title });
    for (const tick of ticks) {
      const y = this.y(tick);
      this.line(this.left, y, this.right, y, "#ddd");
      this.text(this.left - 6, y + 4, brief(tick), "end");
    }
    for (const [number, text] of xTicks) {
      this.text(this.x(number), this.bottom + 18, text, "middle");
    }
    this.line(this.left, this.bottom, this.right, this.bottom, "#111");
    this.text((this.left + this.right) / 2, this.height - 8, xName, "middle");
    this.text(6, 16, yName, "start");
  }

  line(x1, y1, x2, y2, stroke) {
    this.root.append(svg("line", { x1, y1, x2, y2, stroke }));
  }

  text(x, y, text, anchor) {
    this.root.append(svg("text", { x, y, "text-anchor": anchor }, text));
  }

  // A line through points [x, y], told apart from others by dashes and marks
  // too, with its name at its end. Names are moved apart where they meet.
  curve(points, { name, dashes, mark }) {
    const places = points.map(([x, y]) => [this.x(x), this.y(y)]);
    this.root.append(svg("path", {
      d: places.map(([x, y], i) =>
        `${i ? "L" : "M"}${x.toFixed(1)} ${y.toFixed(1)}`).join(""),
      fill: "none", stroke: "#1b3a6b", "stroke-width": 2,
      "stroke-dasharray": dashes, class: "curve" }));
    const step = Math.ceil(places.length / 25);
    for (let i = 0; i < places.length; i += step) {
      this.root.append(mark(...places[i]));
    }
    const [x, end] = places.at(-1);
    let y = end + 4;
    this.names ??= [];
    while (this.names.some((other) => Math.abs(other - y) < 15)) y -= 1;
    this.names.push(y);
    this.text(x + 8, y, name, "start");
  }

  bar(x, width, count, label) {
    const y = this.y(count);
    this.root.append(svg("rect", { x, y, width, height: this.bottom - y,
      fill: "#7d93b8", stroke: "#1b3a6b" }, svg("title", {}, label)));
  }
}

const marks = {
  circle: (x, y) => svg("circle", { cx: x, cy: y, r: 3.5, fill: "#1b3a6b" }),
  square: (x, y) => svg("rect", { x: x - 3.5, y: y - 3.5, width: 7, height: 7,
    fill: "#fff", stroke: "#1b3a6b" }),
  triangle: (x, y) => svg("path", { d: `M${x} ${y - 5}l5 8h-10z`,
    fill: "#fff", stroke: "#1b3a6b" }),
};
const styles = [
  { dashes: "", mark: marks.circle },
  { dashes: "8 4", mark: marks.square },
  { dashes: "2 4", mark: marks.triangle },
];

// Some of the numbers from `from` to `to`, as ticks of an axis.
function wholeTicks(from, to) {
  const step = Math.max(1, ticksTo(to - from)[1]);
  const ticks = [];
  for (let n = from; n <= to; n++) {
    if (n === from || n === to ||
      (n % step === 0 && n - from >= step / 2 && to - n >= step / 2)) {
      ticks.push([n, String(n)]);
    }
  }
  return ticks;
}
