#!/usr/bin/python3
"""page.py RESULTS DOCS RATIOS: writes DOCS/performance.md and its plots from what tools/performance has measured; RATIOS has bench/run's."""
import json
import subprocess
import sys
from pathlib import Path

from summary import calls, streams, summary, table

HEAD = """\
# Performance

How long kesl takes for an object, beside what one would take instead: Eigen's classes of fixed and of dynamic size, LAPACK, libxsmm for
products, and the companion library keslmx. Made by one command, which needs some minutes of a machine with nothing else to do:

    tools/performance            # builds, measures, writes this page and its plots
    bench/run --stacks --filter '^inv/64f/.*/packed/cache'    # a look at some rows, with their goals

- **Rows** are packed matrices in cache, 1,000 of them, fewer where these need more than 1 MiB; one thread. Random data, the same
  for all: far from singular for `det`, `inv`, `solve`; `solve` and its like have one right-hand side, `lstsq` has 2n equations
  (32 at most), `eig` asks for right vectors.
- **Time** is the least of some turns, all contenders in random order in one process.
- **The others** are compiled with `-O3 -march=native`, fused operations allowed. Eigen's fixed-size classes take part at orders
  1 to 8 in products, to 4 and at 6 in what goes by LU and triangles; those of the other decompositions, which take ten seconds each to
  compile, at 3 and 6. Eigen's objects are made once, not for each matrix. Its closed forms of order 2 and 3 for eigenvalues are less accurate and stand aside. LAPACK is the one of the system, here
  the reference implementation of Debian, on one thread; it costs no copy but those that it needs itself.
- **The levels** of kesl, v4 (AVX-512), v3 (AVX2) and plain x86-64, run on the same processor. Their results are the same bits.
- Before anything is measured all results are compared.

![Products and sums](performance_products.png)
![Determinant, inverse, solution](performance_systems.png)
![Factors and solutions with factors](performance_factors.png)
![QR, least squares](performance_orthogonal.png)
![Symmetric eigenproblems](performance_symmetric.png)
![General eigenproblems](performance_general.png)
![Singular values](performance_singular.png)
"""
THREADS = """
## Threads

Matrices of order 4 in float, as many as take two milliseconds on one thread, or a million; calls on one thread and on as many as the
library takes by itself, in turns. *Wins from*: the count from which on threads are a tenth faster, and its microseconds on
one thread; a dash, if they are not. *Idle*: one thread's time / that of threads, the medians, with nothing else running. *Limit*: what
two threads of the program gain that each call for half of the objects at the same moment: the machine's own. *Busy*: as *idle*
beside four processes that compute without end, of the sums of all times, which the longest calls decide, and of the medians.

| call | wins from | µs | objects | idle | limit | busy, sums | busy, medians |
|---|--:|--:|--:|--:|--:|--:|--:|
"""
KESLMX = """
## keslmx

Best alternative / keslmx, over packed rows of orders 2 to 8 in cache, one thread, the alternatives compiled for the same level (the best one
for the processor at hand): geometric means by type and by kind. `bench/run --summary` prints this; [bench](../bench/README.md) tells what the
rows are. Operations element by element, a third of all rows, take what the caches take, with both; the order of operations is fixed, and none
are fused, at any level.

"""
KESLMX_WHY = """
Why rows are below: the determinant and the inverse of order 2 look for pivots and divide, as all orders without a closed form have to, where
the alternative forms ad - bc; the inverse from order 7 on is that by cofactors, each by an elimination of its own, n^5 operations beside n^3.
The affine transform marks points at infinity, which the alternatives do not look for. At plain a single operand beside an array is read from a
repeated copy, a load more for each pack than in a loop that keeps it in registers; and the sum of an object's squares is one chain of additions, where
Eigen adds pairs. Other rows between 0.65 and 0.75 come and go from one run to the next.

The limit is the least time that the bytes or the operations of a row can take, as measured by flat additions and by products and sums that
wait for nothing; rows that iterate have none. It leaves out what keeps rows under it: quotients, roots and searches for pivots that wait for one
another (systems), the exchange of lanes that turns objects into packs (small objects, products), and the roots of norms.
"""
KESLMX_ONE = """
### keslmx on one object

A call on one object of order 3 takes at most 10 ns more than the arithmetic of a plain loop inlined in
"""
KESLMX_ONE_WHY = """
Gaxpy has fourteen arguments: a function that is given the same and looks at none of them takes 8 ns more than the loop inlined.
"""
KESLMX_STREAM = """
### keslmx from memory

128 MiB of packed objects, one thread: the share of a flat add's speed, and best alternative / keslmx. A pack takes the same piece of several
objects at a time, an order that processors do not foresee, so that objects beyond a cache line are asked for by instructions: as many lines as the
first cache waits for at once, it seems, which here is little more than half of a flat add's speed. Other distances, the first cache instead of the second,
requests between the loads of a pack, and loads in place of requests were tried: on the whole none is faster.

"""
FAMILIES = {
    "products": ["matmul", "vecdot", "norm", "trace"],
    "systems": ["det", "inv", "solve"],
    "factors": ["lu", "lu_solve", "cholesky", "cholesky_solve"],
    "orthogonal": ["qr", "lstsq"],
    "symmetric": ["eigvalsh", "eigh"],
    "general": ["eigvals", "eig"],
    "singular": ["svdvals", "svd"],
}
FUNCTIONS = ["cross"] + [name for names in FAMILIES.values() for name in names]
ORDERS = [1, 2, 3, 4, 5, 6, 7, 8, 10, 12, 16, 24, 32]
TYPES = {"32f": "float", "64f": "double"}
# The library at its levels, then the others; an alternative's key in the results is its name.
LINES = [("kesl", "kesl, {}", "#1d3557", 1, 3), ("v3", "kesl, v3", "#457b9d", 2, 2), ("plain", "kesl, x86-64", "#a8c5da", 3, 2),
         ("keslmx", "keslmx", "#2a9d8f", 4, 1), ("eigen", "Eigen, fixed size", "#e76f51", 5, 1),
         ("eigen-direct", "Eigen, closed form", "#f4a261", 6, 1), ("eigen-dynamic", "Eigen, dynamic size", "#e9c46a", 7, 1),
         ("lapack", "LAPACK", "#888888", 8, 1), ("libxsmm", "libxsmm", "#9b5de5", 9, 1)]


def load(folder, part):
    file = Path(folder, part + ".json")
    if not file.exists():
        sys.exit(f"page.py: {file} is missing; run tools/performance {part}")
    return json.loads(file.read_text())


def by_name(part):
    return {row["name"]: row for row in part["rows"]}


def plot(docs, family, times, level):
    """Time per object over the order: a row of panels for each type, a panel for each function."""
    functions = FAMILIES[family]
    panels, blocks = [], []
    for kind in TYPES:
        for function in functions:
            curves = []
            for key, title, colour, mark, width in LINES:
                points = [(i, times[key, function, kind, n]) for i, n in enumerate(ORDERS) if (key, function, kind, n) in times]
                if not points:
                    continue
                curves.append(f'$d{len(blocks)} using 1:2 with linespoints lw {width} lc rgb "{colour}" pt {mark} ps 0.5 '
                              f'title "{title.format(level)}"')
                blocks.append(f"$d{len(blocks)} << EOD\n" + "".join(f"{x} {y:.4g}\n" for x, y in points) + "EOD\n")
            key = "set key bottom right samplen 1.5 font ',8'" if not panels else "unset key"
            panels.append(f'{key}\nset title "{function}, {TYPES[kind]}"\nplot ' + ", ".join(curves) + "\n")
    tics = ", ".join(f'"{n}" {i}' for i, n in enumerate(ORDERS))
    script = "".join(blocks) + f"""
set terminal pngcairo size {300 * len(functions) + 40}, 640 font "sans,9" background "#ffffff" noenhanced
set output "{docs}/performance_{family}.png"
set multiplot layout 2, {len(functions)}
set logscale y
set format y "%g"
set grid ytics lc rgb "#dddddd"
set border 3 lc rgb "#888888"
set tics nomirror
set xtics ({tics})
set xrange [-0.3:{len(ORDERS) - 0.7}]
set ylabel "ns for an object"
""" + "".join(panels)
    subprocess.run(["gnuplot"], input=script, text=True, check=True)


def number(x):
    return "–" if x is None else f"{x:.0f}" if x >= 10 else f"{x:.1f}" if x >= 1 else f"{x:.2f}"


def main(folder, docs, ratios):
    parts = {part: load(folder, part) for part in ("best-32f", "best-64f", "plain", "layouts", "one", "stream-32f", "stream-64f")}
    if Path(folder, "v3.json").exists():
        parts["v3"] = load(folder, "v3")
    best = {**by_name(parts["best-32f"]), **by_name(parts["best-64f"])}
    level = parts["best-32f"]["level"]
    times = {}
    for name, row in best.items():
        function, kind, order = name.split("/")[:3]
        for key, ns in row["ns"].items():
            times[key, function, kind, int(order)] = ns
    for lower in {"v3", "plain"} & parts.keys():
        for name, row in by_name(parts[lower]).items():
            function, kind, order = name.split("/")[:3]
            times[lower, function, kind, int(order)] = row["ns"]["kesl"]
    for family in FAMILIES:
        plot(docs, family, times, level)

    def ratio(function, kind, n):
        row = best.get(f"{function}/{kind}/{n}/packed/cache/1t")
        return number(row["ratio"]) + ("*" if row["missed"] else "") if row and row["ratio"] else "–"

    def beside_keslmx(function, kind, n):
        other, own = (times.get((key, function, kind, n)) for key in ("keslmx", "kesl"))
        return number(other / own) if other else "–"

    text = HEAD
    processor = next(line.split(":")[1].strip() for line in open("/proc/cpuinfo") if line.startswith("model name"))
    text += f"\nMeasured on: {processor}; library level {level}; g++ {parts['best-32f']['compiler']}, -march=native.\n"
    for kind, title in TYPES.items():
        text += f"\n## Ratios, {title}\n\nBest of Eigen, LAPACK and libxsmm / kesl, by order: above 1 kesl is faster. A star is under \
its goal: 1 at orders 3 to 6, 3 at other orders to 16, in all that factors or iterates.\n\n"
        text += table(["function"] + [str(n) for n in ORDERS],
                      [[f"`{f}`"] + [ratio(f, kind, n) for n in ORDERS] for f in FUNCTIONS])
    text += "\n## Beside keslmx\n\nkeslmx / kesl at the orders for which keslmx has kernels: float 3, 4, 5, 6, then double.\n\n"
    text += table(["function"] + [f"{TYPES[kind]} {n}" for kind in TYPES for n in (3, 4, 5, 6)],
                  [[f"`{f}`"] + [beside_keslmx(f, kind, n) for kind in TYPES for n in (3, 4, 5, 6)]
                   for f in FUNCTIONS if any(("keslmx", f, kind, 3) in times for kind in TYPES)])

    layouts = by_name(parts["layouts"])
    text += "\n## Layouts\n\nSpeed in other layouts / speed with packed rows: columns, structure of arrays, every second element.\n\n"
    heads = ["function"] + [f"{TYPES[kind]} {n}" for kind in TYPES for n in (3, 6, 12)]
    rows = []
    for f in FUNCTIONS:
        cells = []
        for kind in TYPES:
            for n in (3, 6, 12):
                own = times.get(("kesl", f, kind, n))
                found = [layouts.get(f"{f}/{kind}/{n}/{layout}/cache/1t") for layout in ("columns", "soa", "strided")]
                cells.append(" ".join(f"{own / row['ns']['kesl']:.2f}" for row in found) if own and all(found) else "–")
        rows.append([f"`{f}`"] + cells)
    text += table(heads, rows)

    text += "\n## One object\n\nA call for each object: ns of kesl / ns of Eigen's fixed size, inlined.\n\n"
    one = by_name(parts["one"])
    cells = [(kind, n) for kind in TYPES for n in (1, 3, 6)]
    text += table(["function"] + [f"{TYPES[kind]} {n}" for kind, n in cells],
                  [[f"`{f}`"] + [f"{number(row['ns']['kesl'])} / {number(row['ns'].get('eigen'))}" if row else "–" for row in
                                 (one.get(f"{f}/{kind}/{n}/packed/one/1t") for kind, n in cells)] for f in FUNCTIONS])

    text += "\n## From memory\n\n128 MiB of packed objects, one thread: GB/s read and written, and the share of a flat add's speed.\n\n"
    stream = {**by_name(parts["stream-32f"]), **by_name(parts["stream-64f"])}
    cells = [(kind, n) for kind in TYPES for n in (3, 6, 16)]
    text += table(["function"] + [f"{TYPES[kind]} {n}" for kind, n in cells],
                  [[f"`{f}`"] + [f"{row['bytes'] / row['ns']['kesl']:.0f} {row['flat_add'] / row['ns']['kesl']:.2f}" if row else "–"
                                 for row in (stream.get(f"{f}/{kind}/{n}/packed/stream/1t") for kind, n in cells)]
                   for f in FUNCTIONS if any(f"{f}/32f/{n}/packed/stream/1t" in stream for n in (3, 6, 16))])

    text += THREADS + "".join(Path(folder, f"threads-{library}.md").read_text() for library in ("kesl", "keslmx"))
    files = [file for file in (Path(ratios, f"ratios-{name}.json") for name in ("best", "v3", "plain")) if file.exists()]
    if files:
        text += KESLMX + summary(files) + KESLMX_WHY
    if Path(folder, "keslmx-one.json").exists():
        text += KESLMX_ONE + calls(Path(folder, "keslmx-one.json")) + KESLMX_ONE_WHY
    if Path(folder, "keslmx-stream.json").exists():
        text += KESLMX_STREAM + streams(Path(folder, "keslmx-stream.json"))
    Path(docs, "performance.md").write_text(text)


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
