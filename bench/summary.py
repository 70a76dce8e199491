#!/usr/bin/python3
"""summary.py RATIOS.json...: what bench/run has measured of keslmx at each level, in Markdown: geometric means of the ratios over packed
rows of orders 2 to 8 in cache, what is below 0.75, and the families that reach less than 0.6 of the limit somewhere at the best level."""
import json
import math
import re
import sys
from pathlib import Path

PACKED = re.compile(r"(?P<family>\w+)/(?P<type>\w+)/(?P<order>[2-8])/packed/cache/1t")
SLOW, SHARE = 0.75, 0.6
TYPES = {"32f": "float", "64f": "double"}
KINDS = {"element by element": "Add_|Sub_|Mul_mac|Mul_vaca|Saxpy|LComb|Copy|Extract|Transpose|LoadIdentity",
         "products, sums": "Mul_|Gaxpy|Dot|Cross|L2Norm|FrobNorm|Trace|Affine", "systems": "Det|Invert|LU|Cholesky|QR", "eigenproblems": "Val|Vec"}


def mean(ratios):
    return f"{math.exp(sum(map(math.log, ratios)) / len(ratios)):.2f}" if ratios else "–"


def packed(results):
    found = [(PACKED.fullmatch(row["name"]), row) for row in results["rows"]]
    return [(match["family"], match["type"], int(match["order"]), row) for match, row in found if match and row["ratio"]]


def kind(family):
    return next(kind for kind, pattern in KINDS.items() if re.match(pattern, family))


def table(heads, rows):
    lines = ["| " + " | ".join(heads) + " |", "|---" + "|--:" * (len(heads) - 1) + "|"]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows]) + "\n"


def byFamily(cells, families):
    """What `cells` have for each family, type and order from 3 to 6."""
    columns = [(name, n) for name in TYPES for n in range(3, 7)]
    rows = [[f"`{family}`"] + [cells.get((family, name, n), "–") for name, n in columns] for family in families]
    return table(["family"] + [f"{TYPES[name]} {n}" for name, n in columns], rows)


def summary(files):
    """The levels' table, and the lists behind it."""
    levels = [json.loads(Path(file).read_text()) for file in files]
    rows, lists = [], []
    for results in levels:
        found = packed(results)
        groups = [[row for _, name, _, row in found if name == wanted] for wanted in TYPES] + [[row for *_, row in found]]
        groups += [[row for family, *_, row in found if kind(family) == wanted] for wanted in KINDS]
        slow = [f"{family}/{name}/{n} {row['ratio']:.2f}" for family, name, n, row in found if row["ratio"] < SLOW]
        rows.append([results["level"], str(len(found))] + [mean([row["ratio"] for row in group]) for group in groups] + [str(len(slow))])
        if slow:
            lists.append(f"Below {SLOW} at {results['level']}: {', '.join(slow)}.\n")
    text = table(["level", "rows", *TYPES.values(), "both", *KINDS, f"below {SLOW}"], rows)
    shares = {(family, name, n): row["share"] for family, name, n, row in packed(levels[0]) if row["share"] and 3 <= n <= 6}
    under = list(dict.fromkeys(family for (family, *_), share in shares.items() if share < SHARE))
    lists.append(f"Share of the limit at {levels[0]['level']} of the families that have rows under {SHARE}:\n\n" +
                 byFamily({key: f"{share:.2f}" for key, share in shares.items()}, sorted(under, key=lambda f: list(KINDS).index(kind(f)))))
    return "\n".join([text, *lists])


def streams(file):
    """Of rows out of cache: the share of a flat add's speed, and best alternative / keslmx."""
    rows = [(row["name"].split("/"), row) for row in json.loads(Path(file).read_text())["rows"]]
    cells = {(name[0], name[1], int(name[2])): f"{row['flat_add'] / row['ns']['library']:.2f} {row['ratio']:.2f}"
             for name, row in rows if name[4] == "stream" and row["ratio"]}
    return byFamily(cells, list(dict.fromkeys(family for family, *_ in cells)))


def calls(file):
    """Of calls on one object: how many are within 10 ns of the same arithmetic inlined, and the others."""
    over = {row["name"].split("/packed")[0]: row["ns"]["library"] - row["ns"]["inlined"]
            for row in json.loads(Path(file).read_text())["rows"] if "inlined" in row["ns"]}
    slow = [f"{name} {ns:.0f}" for name, ns in over.items() if ns > 10]
    return f"{len(over) - len(slow)} of {len(over)} rows; above it, in ns: {', '.join(slow) or 'none'}.\n"


if __name__ == "__main__":
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    print(summary(sys.argv[1:]), end="")
