// A heat map of distances with the tree beside it.

// The tree of a Newick text whose leaves are numbers: {leaf, length, children}.
function parseTree(newick) {
  let at = 0;
  const node = () => {
    const children = [];
    if (newick[at] === "(") {
      do {
        at++;
        children.push(node());
      } while (newick[at] === ",");
      at++;
    }
    const [, name, length] =
      /^(\d*)(?::(-?[\d.]+(?:e[+-]?\d+)?))?/.exec(newick.slice(at));
    at += name.length + (length === undefined ? 0 : length.length + 1);
    return { leaf: Number(name), length: Number(length ?? 0), children };
  };
  return node();
}

function leavesOf(node) {
  return node.children.length ? node.children.flatMap(leavesOf) : [node.leaf];
}

// Gives each node its depth; branches shorter than nothing have no length.
// Returns the depth of the deepest.
function setDepths(node, depth) {
  node.depth = depth;
  return Math.max(depth, ...node.children.map((child) =>
    setDepths(child, depth + Math.max(0, child.length))));
}

// Draws a node's branches; `rowOf` is a leaf's height. Returns its own height.
function drawTree(node, x, rowOf, root) {
  if (!node.children.length) return rowOf(node.leaf);
  const line = (x1, y1, x2, y2) =>
    root.append(svg("line", { x1, y1, x2, y2, stroke: "#111" }));
  const rows = node.children.map((child) => {
    const y = drawTree(child, x, rowOf, root);
    line(x(node.depth), y, x(child.depth), y);
    return y;
  });
  line(x(node.depth), rows[0], x(node.depth), rows.at(-1));
  return (rows[0] + rows.at(-1)) / 2;
}

// From white to dark, which stays in order in black and white.
function shade(part) {
  const mix = (light, dark) => Math.round(light + (dark - light) * part);
  return `rgb(${mix(255, 18)},${mix(255, 44)},${mix(255, 92)})`;
}

// The end of a long name, which tells files of one folder apart.
function shortName(name) {
  return name.length > 28 ? "\u2026" + name.slice(-27) : name;
}

function drawDistances(genomes, { matrix, tree, k }) {
  const parsed = parseTree(tree);
  const order = leavesOf(parsed);
  const size = Math.max(6, Math.min(44, 520 / order.length));
  const treeWidth = 180, nameWidth = 230, top = 24;
  const left = treeWidth + nameWidth;
  const width = left + size * order.length + 10;
  const height = top + size * order.length + 70;
  const root = svg("svg", { viewBox: `0 0 ${width} ${height}`, role: "img",
    "aria-label": "Heat map of distances, with a tree", class: "wide" });
  const place = new Map(order.map((genome, i) => [genome, i]));
  const deepest = setDepths(parsed, 0) || 1;
  drawTree(parsed, (depth) => 8 + depth / deepest * (treeWidth - 16),
    (leaf) => top + size * (place.get(leaf) + 0.5), root);
  const largest = Math.max(...matrix.flat()) || 1;
  const fontSize = Math.min(13, size * 0.9);
  order.forEach((a, row) => {
    const y = top + size * row;
    root.append(svg("text", { x: left - 8, y: y + size / 2 + fontSize / 3,
      "text-anchor": "end", "font-size": fontSize },
    shortName(genomes[a].name), svg("title", {}, genomes[a].name)));
    order.forEach((b, column) => {
      const part = matrix[a][b] / largest;
      const x = left + size * column;
      root.append(svg("rect", { x, y, width: size, height: size,
        fill: shade(part), stroke: size > 12 ? "#fff" : "none" },
      svg("title", {}, `${genomes[a].name}, ${genomes[b].name}: ` +
        exact(matrix[a][b]))));
      if (size >= 34 && a !== b) {
        root.append(svg("text", { x: x + size / 2, y: y + size / 2 + 4,
          "text-anchor": "middle", "font-size": 11,
          fill: part > 0.5 ? "#fff" : "#111" },
        matrix[a][b].toPrecision(2).replace(/^0\./, ".").slice(0, 6)));
      }
    });
  });
  const steps = 20, keyWidth = Math.min(300, width - left - 60);
  const keyTop = height - 34;
  for (let i = 0; i < steps; i++) {
    root.append(svg("rect", { x: left + i * keyWidth / steps, y: keyTop,
      width: keyWidth / steps + 0.5, height: 12, fill: shade(i / (steps - 1)) }));
  }
  root.append(svg("rect", { x: left, y: keyTop, width: keyWidth, height: 12,
    fill: "none", stroke: "#111" }),
  svg("text", { x: left, y: keyTop + 28 }, "0"),
  svg("text", { x: left + keyWidth, y: keyTop + 28, "text-anchor": "middle" },
    brief(largest)));
  const rows = order.map((a) =>
    [genomes[a].name, ...order.map((b) => matrix[a][b])]);
  return html("figure", {}, root,
    html("figcaption", {}, `Mash distances by ${k}-mers, in the order of the ` +
      "tree of neighbour joining on the left, which has no root: darker is " +
      "farther."),
    foldedTable("Distances as numbers",
      ["genome", ...order.map((g) => genomes[g].name)], rows));
}
