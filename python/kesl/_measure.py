"""kesl beside numpy.linalg: the same work by both, checked and timed. For `python3 -m kesl` and the table in the documents."""
import itertools
import sys
import time

import numpy as np

from . import _linalg as kesl


def _general(rng, count, n):
    return rng.standard_normal((count, n, n)) + np.eye(n)


def _definite(rng, count, n):
    a = rng.standard_normal((count, n, n))
    return a @ a.swapaxes(-1, -2) + np.eye(n)


def _vectors(rng, count, n):
    return rng.standard_normal((count, n))


def _one_by_one(a, b):
    return np.stack([np.linalg.lstsq(x, y, rcond=None)[0] for x, y in zip(a, b)])


# name: what makes each source, the function, and NumPy's
work = {
    "matmul": ((_general, _general), kesl.matmul, np.matmul),
    "matvec": ((_general, _vectors), kesl.matvec, lambda a, x: np.matmul(a, x[..., None])[..., 0]),
    "det": ((_general,), kesl.det, np.linalg.det),
    "inv": ((_general,), kesl.inv, np.linalg.inv),
    "solve": ((_general, _vectors), kesl.solve, lambda a, b: np.linalg.solve(a, b[..., None])[..., 0]),
    "cholesky": ((_definite,), kesl.cholesky, np.linalg.cholesky),
    "qr": ((_general,), kesl.qr, np.linalg.qr),
    "lstsq": ((_general, _vectors), lambda a, b: kesl.lstsq(a, b).x, _one_by_one),
    "eigvalsh": ((_definite,), kesl.eigvalsh, np.linalg.eigvalsh),
    "eigh": ((_definite,), kesl.eigh, np.linalg.eigh),
    "eigvals": ((_general,), kesl.eigvals, np.linalg.eigvals),
    "eig": ((_general,), kesl.eig, np.linalg.eig),
    "svdvals": ((_general,), kesl.svdvals, lambda a: np.linalg.svd(a, compute_uv=False)),
    "svd": ((_general,), kesl.svd, np.linalg.svd),
}


def sources(name, count, n, dtype):
    rng = np.random.default_rng(n)
    return [make(rng, count, n).astype(dtype) for make in work[name][0]]


def agree(name, n, dtype):
    """Whether both have the same results up to rounding. Vectors have other signs: what they multiply to counts."""
    given = sources(name, 50, n, dtype)
    ours, theirs = work[name][1](*given), work[name][2](*(x.astype(float) for x in given))
    if name in ("qr", "svd", "eigh", "eig"):
        ours, theirs = _product(name, ours), given[0]
    elif name == "eigvals":
        ours, theirs = ours.sum(-1).real, theirs.sum(-1).real
    tolerance = (1e-9 if dtype == "d" else 1e-2) * np.abs(theirs).max()
    return ours.shape == theirs.shape and bool((np.abs(ours - theirs) <= tolerance).all())


def _product(name, factors):
    if name == "qr":
        return factors.Q @ factors.R
    if name == "svd":
        return factors.U * factors.S[..., None, :] @ factors.Vh
    w, v = factors
    return (v * w[..., None, :] @ np.linalg.inv(v)).real


def seconds(function, given, budget):
    """The least time of several calls, as many as fit into the budget, and no fewer than three."""
    best, calls, end = float("inf"), 1, time.perf_counter() + budget
    for turn in itertools.count(1):
        start = time.perf_counter()
        for _ in range(calls):
            function(*given)
        now = time.perf_counter()
        best = min(best, (now - start) / calls)
        if now > end and turn >= 3:
            return best
        calls = max(1, min(int(budget / 20 / best), 10000))


def times(name, count, n, dtype, budget=0.05):
    """Seconds that kesl and NumPy take for a stack. NumPy's is extrapolated from 2,000 objects where it is above half a second."""
    part = sources(name, min(count, 100 if name == "lstsq" else 2000), n, dtype)
    given = [np.resize(x, (count,) + x.shape[1:]) for x in part]
    ours, theirs = seconds(work[name][1], given, budget), seconds(work[name][2], part, budget) * count / len(part[0])
    return ours, seconds(work[name][2], given, budget) if count > len(part[0]) and theirs < 0.5 else theirs


def progress(done, all_, text):
    if sys.stderr.isatty():
        bar = "#" * (30 * done // all_)
        print(f"\r[{bar:30}] {text:30}", end="\n" if done == all_ else "", file=sys.stderr, flush=True)
