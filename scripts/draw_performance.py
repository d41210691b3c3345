#!/usr/bin/env python3
"""draw_performance.py RESULTS.json CHART.svg: draws what scripts/bench.sh measured as bars, the same for the same figures.

In each row the library's bar is as long as in all others, and the bars of the floor and of the peers are in proportion
to it. A bar of more than four times that length is cut and says so. The tick is the goal.
"""

import json
import sys
from xml.sax.saxutils import escape

OURS, WIDTH, LABELS, MOST = 110, 920, 300, 4
BAR, GAP, TOP = 11, 9, 62
COLOURS = {"ours": "#1f6fb4", "floor": "#8a8f98", "peer": "#e3b26a", "goal": "#b3261e", "text": "#24292f", "paper": "#ffffff"}


def shown(value, unit):
    if unit == "bytes":
        scale, name = 1, "B"
    else:
        scale, name = next((s, n) for s, n, most in ((1, "ns", 1e3), (1e3, "us", 1e6), (1e6, "ms", 1e99)) if value < most)
    value /= scale
    return "%.*f %s" % (2 if value < 10 else 1 if value < 100 else 0, value, name)


def text(x, y, words, colour="text", anchor="start", size=10):
    return '<text x="%d" y="%d" font-size="%d" text-anchor="%s" fill="%s">%s</text>' % (
        x, y, size, anchor, COLOURS[colour], escape(words))


def bar(y, who, value, row):
    """A bar with its name and figure."""
    ratio = value / row["ours"]
    length = OURS * min(ratio, MOST)
    kind = "ours" if who == "ours" else "floor" if who.startswith("floor") else "peer"
    lines = ['<rect x="%d" y="%d" width="%.1f" height="%d" fill="%s"/>' % (LABELS, y, length, BAR - 2, COLOURS[kind])]
    figure = "%s %s" % (who, shown(value, row["unit"]))
    if ratio > MOST:
        end = LABELS + length
        lines.append('<path d="M%.1f %d l4 -%d h3 l-4 %d z" fill="%s"/>' % (end - 14, y + BAR - 2, BAR - 2, BAR - 2, COLOURS["paper"]))
        figure += ", %.0f times as long" % ratio
    if kind == "ours":
        return lines + [text(LABELS + 4, y + BAR - 3, figure, colour="paper", size=9)]
    return lines + [text(int(LABELS + length + 5), y + BAR - 3, figure, size=9)]


def goal(y, height, row):
    mark = row["all"].get(row["goalPeer"])
    if mark is None or mark * row["goal"] > MOST * row["ours"]:
        return []
    x = LABELS + OURS * mark * row["goal"] / row["ours"]
    return ['<path d="M%.1f %d v%d" stroke="%s" stroke-width="1.5"/>' % (x, y - 2, height + 2, COLOURS["goal"])]


def draw(rows):
    lines, y = [], TOP
    for row in rows:
        others = sorted((value, who) for who, value in row["all"].items() if who != "ours")
        bars = [("ours", row["ours"])] + [(who, value) for value, who in others if who.startswith("floor")]
        bars += [(who, value) for value, who in others if not who.startswith("floor")]
        lines.append(text(LABELS - 8, y + BAR - 2, "%s  %s" % (row["row"], row["work"]), anchor="end", size=11))
        for place, (who, value) in enumerate(bars):
            lines += bar(y + place * BAR, who, value, row)
        lines += goal(y, BAR, row)
        y += len(bars) * BAR + GAP
    head = ['<svg xmlns="http://www.w3.org/2000/svg" width="%d" height="%d" font-family="sans-serif">' % (WIDTH, y),
            '<rect width="%d" height="%d" fill="%s"/>' % (WIDTH, y, COLOURS["paper"]),
            text(LABELS, 22, "Time of each operation, as a multiple of the library's", size=14)]
    x = LABELS
    for kind, words in (("ours", "the library"), ("floor", "the best loop by hand"), ("peer", "peers")):
        head.append('<rect x="%d" y="34" width="12" height="9" fill="%s"/>' % (x, COLOURS[kind]))
        head.append(text(x + 17, 42, words))
        x += 40 + 6 * len(words)
    head.append('<path d="M%d 32 v13" stroke="%s" stroke-width="1.5"/>' % (x, COLOURS["goal"]))
    head.append(text(x + 6, 42, "goal: the library's bar should end here or before"))
    return head + lines + ["</svg>", ""]


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__.splitlines()[0])
    with open(sys.argv[1], encoding="utf-8") as results:
        rows = [row for row in json.load(results) if row["ours"]]
    with open(sys.argv[2], "w", encoding="utf-8") as chart:
        chart.write("\n".join(draw(rows)))


main()
