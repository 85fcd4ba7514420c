#!/usr/bin/env python3
"""Draws docs/costs.svg from the figures that README.md begins with.

Usage: draw_costs.py [--check]
  --check  draw nothing; fail if the drawing is not that of the figures
"""

import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
DRAWING = ROOT / "docs" / "costs.svg"

LEFT = 200  # where the bars begin
LONGEST = 430
BAR = 18
# What is merged is filled and what is sorted is hollow, so that no colour is
# needed to tell them apart. The ground is drawn too: what shows the picture may
# be dark and say nothing of it.
HEAD = """\
<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 700 {height}" width="700" \
height="{height}" role="img">
<title>{title}</title>
<style>
  text {{ font: 14px sans-serif; fill: #1f2328 }}
  .ground {{ fill: #ffffff; stroke: #d0d7de }}
  .merged {{ fill: #0b5394; stroke: #0b5394 }}
  .anew {{ fill: none; stroke: #1f2328 }}
  @media (prefers-color-scheme: dark) {{
    text {{ fill: #e6edf3 }}
    .ground {{ fill: #0d1117; stroke: #30363d }}
    .merged {{ fill: #79c0ff; stroke: #79c0ff }}
    .anew {{ stroke: #e6edf3 }}
  }}
</style>
<rect class="ground" x="0.5" y="0.5" width="699" height="{ground}" rx="6"/>
"""


def figures(page):
    """The rows of the page's figures: data, what is done, nanoseconds."""
    rows = re.findall(r"^(.{16}) (merged|sorted anew) +(\d+)  #+$", page, re.M)
    data = ""
    result = []
    for name, done, cost in rows:
        data = name.strip() or data
        result.append((data, done, int(cost)))
    return result


def drawing(rows):
    most = max(cost for _, _, cost in rows)
    title = "Wall-clock nanoseconds a suffix on one core"
    y = 40
    marks = [f'<text x="16" y="27">{title}</text>']
    shown = None
    for data, done, cost in rows:
        if data != shown:
            y += 10
            marks.append(f'<text x="16" y="{y + 14}">{data}</text>')
            shown = data
        width = round(LONGEST * cost / most)
        kind = "merged" if done == "merged" else "anew"
        marks += [
            f'<text x="{LEFT - 8}" y="{y + 14}" text-anchor="end">{done}</text>',
            f'<rect class="{kind}" x="{LEFT}.5" y="{y}.5" width="{width}" '
            f'height="{BAR}"/>',
            f'<text x="{LEFT + width + 8}" y="{y + 14}">{cost}</text>',
        ]
        y += BAR + 6
    height = y + 10
    head = HEAD.format(height=height, ground=height - 1, title=title)
    return head + "\n".join(marks) + "\n</svg>\n"


def main():
    rows = figures((ROOT / "README.md").read_text())
    if not rows:
        sys.exit("README.md: no figures to draw")
    wanted = drawing(rows)
    if sys.argv[1:] == ["--check"]:
        if not DRAWING.exists() or DRAWING.read_text() != wanted:
            sys.exit(f"{DRAWING}: not what README.md says; run {sys.argv[0]}")
    elif sys.argv[1:]:
        sys.exit(__doc__)
    else:
        DRAWING.write_text(wanted)


if __name__ == "__main__":
    main()
