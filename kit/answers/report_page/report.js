// Puts what the page knows (kit/answers/report_facts.h) into its sections.

const facts = JSON.parse(document.getElementById("facts").textContent);
const genomeCount = facts.genomes.length;

function put(id, ...children) {
  document.getElementById(id).replaceChildren(...children);
}

function sum(numbers) {
  return numbers.reduce((a, b) => a + b, 0);
}

function drawCollection() {
  document.title = `${facts.name}: palvor report`;
  put("name", facts.name);
  put("lead", `${exact(genomeCount)} genomes, ${exact(facts.suffixes)} ` +
    `suffixes in one order, on ${facts.strands === 2 ? "both strands" :
      "one strand: what is deposited on opposite strands looks unrelated"}.`);
  const withKmers = facts.distances !== null;
  const columns = ["genome", "group", "records", "characters"];
  if (withKmers) columns.push(`different ${facts.distances.k}-mers`);
  const rows = facts.genomes.map((genome) => {
    const row = [genome.name, genome.group, genome.records, genome.characters];
    if (withKmers) row.push(genome.kmers);
    return row;
  });
  const all = ["all", "", sum(facts.genomes.map((g) => g.records)),
    sum(facts.genomes.map((g) => g.characters))];
  put("collection", html("div", { class: "scrolled", tabindex: "0",
    role: "region", "aria-label": "Genomes" }, table(columns, [...rows, all])),
  html("p", {}, `In ${exact(facts.inputs)} input strings, which end where a ` +
    "record ends or characters other than A, C, G and T begin."));
}

// Expected numbers of k-mers in 1, 2, ... genomes.
function drawGrowth(row) {
  const names = ["all", ...facts.quorums.map((q) =>
    q === 1 ? "core" : `core at ${q}`)];
  const curves = [row.growth, ...row.cores];
  const frame = new Frame({ title: `Growth and core curves for k = ${row.k}`,
    xName: "genomes taken", yName: "different k-mers",
    xRange: [1, genomeCount], xTicks: wholeTicks(1, genomeCount),
    yLargest: Math.max(...row.growth), right: 100 });
  curves.forEach((curve, i) => frame.curve(
    curve.map((count, j) => [facts.chosen[j], count]),
    { name: names[i], ...styles[i] }));
  put("growth", frame.root, html("figcaption", {},
    "What more genomes add, and what all of those taken have in common: means " +
    "over all choices of genomes, computed exactly."),
  foldedTable("Curves as numbers", ["genomes", ...names],
    facts.chosen.map((m, j) => [m, ...curves.map((curve) => curve[j])])));
}

function drawHistogram(row) {
  const each = Math.ceil(genomeCount / 100);
  const bars = [];
  for (let i = 0; i < genomeCount; i += each) {
    bars.push({ from: i + 1, to: Math.min(i + each, genomeCount),
      count: sum(row.histogram.slice(i, i + each)) });
  }
  const frame = new Frame({ title: `Genomes of each k-mer for k = ${row.k}`,
    xName: "genomes that have a k-mer", yName: "different k-mers",
    xRange: [0.5, genomeCount + 0.5], xTicks: wholeTicks(1, genomeCount),
    yLargest: Math.max(...bars.map((bar) => bar.count)) });
  for (const { from, to, count } of bars) {
    const x = frame.x(from - 0.4);
    const name = from === to ? `${from}` : `${from} to ${to}`;
    frame.bar(x, frame.x(to + 0.4) - x, count,
      `${exact(count)} k-mers in ${name} genomes`);
    if (bars.length <= 10) {
      frame.text(frame.x((from + to) / 2), frame.y(count) - 4, brief(count),
        "middle");
    }
  }
  put("histogram", frame.root, html("figcaption", {},
    "On the left what one genome alone has, on the right what all have."),
  foldedTable("Bars as numbers", ["genomes", "k-mers"],
    row.histogram.map((count, i) => [i + 1, count])));
}

// Different k-mers for every k, and a line at the one that is shown.
function drawLengths(row) {
  const ks = facts.k;
  const all = ks.map((r) => [r.k, sum(r.histogram)]);
  const core = ks.map((r) => [r.k, r.histogram.at(-1)]);
  const frame = new Frame({ title: "Different k-mers for every k",
    xName: "k", yName: "different k-mers",
    xRange: [ks[0].k, ks.at(-1).k], xTicks: wholeTicks(ks[0].k, ks.at(-1).k),
    yLargest: Math.max(...all.map(([, count]) => count)), right: 100 });
  const x = frame.x(row.k);
  frame.line(x, frame.top, x, frame.bottom, "#111");
  frame.text(x, frame.top - 4, `k = ${row.k}`, "middle");
  frame.curve(all, { name: "all", ...styles[0] });
  frame.curve(core, { name: "in every one", ...styles[1] });
  put("lengths", frame.root, html("figcaption", {},
    "For every k at once: all different k-mers, and those of every genome."));
}

function drawPangenome(k) {
  const row = facts.k[k - facts.k[0].k];
  const distinct = sum(row.histogram);
  const share = distinct === 0 ? "" :
    ` (${(100 * row.histogram.at(-1) / distinct).toFixed(1)}%)`;
  const slider = document.getElementById("k");
  slider.setAttribute("aria-valuetext", `k = ${k}`);
  put("k-shown", String(k));
  put("pangenome-text",
    `${exact(distinct)} different ${k}-mers at ${exact(row.total)} places; ` +
    `${exact(row.histogram.at(-1))}${share} in every genome, ` +
    `${exact(row.histogram[0])} in one alone` +
    (row.alpha === null ? "." :
      `; alpha of Heaps' law ${row.alpha.toFixed(2)}, ` +
      `${row.alpha > 1 ? "closed" : "open"}.`) +
    (facts.canonical ? " A k-mer and its reverse complement count as one." :
      ""));
  drawGrowth(row);
  drawHistogram(row);
  drawLengths(row);
}

function startPangenome() {
  const slider = document.getElementById("k");
  const least = facts.k[0].k, most = facts.k.at(-1).k;
  slider.min = least;
  slider.max = most;
  slider.value = Math.min(most, Math.max(least, facts.distances?.k ?? 21));
  slider.addEventListener("input", () => drawPangenome(Number(slider.value)));
  drawPangenome(Number(slider.value));
}

function drawLcp() {
  const { bins, mean, longest } = facts.lcp;
  const largest = Math.max(...bins.map((bin) => bin.pairs));
  const every = Math.ceil(bins.length / 14);
  const frame = new Frame({ title: "Lengths of common prefixes",
    xName: "characters in common, from each mark to the next",
    yName: "pairs of neighbours", xRange: [0, bins.length],
    xTicks: bins.map((bin, i) => [i, brief(bin.from)])
      .filter((_, i) => i % every === 0),
    yLargest: largest });
  bins.forEach(({ from, pairs }, i) => {
    const to = i + 1 < bins.length ? bins[i + 1].from - 1 : longest;
    frame.bar(frame.x(i), frame.x(i + 1) - frame.x(i), pairs,
      `${exact(pairs)} pairs with ${exact(from)} to ${exact(to)} characters`);
  });
  frame.root.classList.add("wide");
  put("lcp", frame.root, html("figcaption", {},
    "How many characters neighbours in the merged order share: " +
    `${exact(mean)} on average, ${exact(longest)} at most. What is short is ` +
    "chance, what is long is copied or inherited."),
  foldedTable("Bars as numbers", ["characters from", "pairs"],
    bins.map(({ from, pairs }) => [from, pairs])));
}

function drawRun() {
  if (facts.run.length === 0) {
    put("run", html("p", {}, "Not known here: palvor-kit report --log reads " +
      "what the merge said."));
    return;
  }
  put("run", table(["", "", ""], facts.run.map(({ name, value, unit }) =>
    [name, value, unit])));
}

drawCollection();
startPangenome();
if (facts.distances !== null) {
  put("distances", drawDistances(facts.genomes, facts.distances));
} else {
  put("distances", html("p", {}, "Left out of a page of so many genomes: " +
    "palvor-kit distance tells them."));
}
drawLcp();
drawRun();
