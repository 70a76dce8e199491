#!/usr/bin/python3
"""summary.py RATIOS.json...: what bench/run has measured of keslmx at each level, in Markdown: geometric means of the ratios over packed
rows of orders 2 to 8 in cache, what is below 0.75, and rows of orders 3 to 6 that reach less than 0.6 of the limit at the best level."""
import json
import math
import re
import sys
from pathlib import Path

PACKED = re.compile(r"(?P<family>\w+)/(?P<type>\w+)/(?P<order>[2-8])/packed/cache/1t")
SLOW, SHARE = 0.75, 0.6


def mean(ratios):
    return f"{math.exp(sum(map(math.log, ratios)) / len(ratios)):.2f}" if ratios else "–"


def packed(results):
    found = [(PACKED.fullmatch(row["name"]), row) for row in results["rows"]]
    return [(match["family"], match["type"], int(match["order"]), row) for match, row in found if match and row["ratio"]]


def summary(files):
    """The levels' table, and the lists behind it."""
    levels = [json.loads(Path(file).read_text()) for file in files]
    lines = [f"| level | rows | mean, float | double | both | below {SLOW} |", "|---|--:|--:|--:|--:|--:|"]
    lists = []
    for results in levels:
        rows = packed(results)
        means = [mean([row["ratio"] for _, kind, _, row in rows if kind in kinds]) for kinds in (["32f"], ["64f"], ["32f", "64f"])]
        slow = [f"{family}/{kind}/{n} {row['ratio']:.2f}" for family, kind, n, row in rows if row["ratio"] < SLOW]
        lines.append(f"| {results['level']} | {len(rows)} | {' | '.join(means)} | {len(slow)} |")
        if slow:
            lists.append(f"Below {SLOW} at {results['level']}: {', '.join(slow)}.")
    short = [f"{family}/{kind}/{n} {row['share']:.2f}" for family, kind, n, row in packed(levels[0])
             if row["share"] and row["share"] < SHARE and 3 <= n <= 6]
    lists.append(f"Under {SHARE} of the limit at {levels[0]['level']}, orders 3 to 6: {', '.join(short) or 'none'}.")
    return "\n".join(lines) + "\n\n" + "\n\n".join(lists) + "\n"


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    print(summary(sys.argv[1:]), end="")
