"""python3 -m kesl: whether the library works here, and how fast it is beside numpy.linalg, in some seconds.

python3 -m kesl --test: the first of them alone.
"""
import sys

import kesl

from ._measure import agree, progress, times, work


def main():
    if sys.argv[1:] not in ([], ["--test"]):
        sys.exit(__doc__)
    kesl.show()

    orders = range(1, 9)
    wrong = [f"{name}, order {n}, {dtype}" for name in work for n in orders for dtype in "fd" if not agree(name, n, dtype)]
    verdict = "WRONG" if wrong else "all agree"
    print(f"{len(work)} functions, orders 1 to 8, float32 and float64, beside numpy.linalg: {verdict}")
    if wrong:
        sys.exit("\n".join(wrong))

    if not sys.argv[1:]:
        columns = [(dtype, n) for dtype in "fd" for n in (3, 6)]
        rows = []
        kesl.set_threads(1)
        for name in work:
            cells = []
            for dtype, n in columns:
                ours, theirs = times(name, 1000, n, dtype, 0.02)
                cells.append(f"{theirs / ours:9.3g}")
                progress(len(rows) * len(columns) + len(cells), len(work) * len(columns), name)
            rows.append(f"{name:10}" + "".join(cells))
        kesl.set_threads(0)
        print("\nTime of NumPy / time of kesl, stacks of 1,000, one thread:\n")
        print(f"{'':10}{'float32':>9}{'':9}{'float64':>9}\n{'order':10}" + "".join(f"{n:9}" for _, n in columns))
        print("\n".join(rows))


if __name__ == "__main__":
    main()
