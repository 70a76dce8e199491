"""kesl's functions: random sources for each, and what its results must satisfy. All matrices are well conditioned."""
import functools

import kesl
import numpy as np


def matrices(rng, loop, m, n):
    return rng.standard_normal(loop + (m, n))


def general(rng, loop, m, n):
    return matrices(rng, loop, n, n)


def regular(rng, loop, m, n):
    return rng.uniform(-1, 1, loop + (n, n)) + 2 * n * np.eye(n)


def near_identity(rng, loop, m, n):
    return regular(rng, loop, m, n) / (2 * n)


def symmetric(rng, loop, m, n):
    a = general(rng, loop, n, n)
    return a + a.swapaxes(-1, -2)


def definite(rng, loop, m, n):
    a = general(rng, loop, n, n)
    return a @ a.swapaxes(-1, -2) + n * np.eye(n)


def columns(rng, loop, m, n):
    """Tall matrices of full rank, also where m < n."""
    return matrices(rng, loop, max(m, n), min(m, n)) + 4 * np.eye(max(m, n), min(m, n))


def right_sides(rng, loop, m, n):
    return matrices(rng, loop, n, 2)


def tall_sides(rng, loop, m, n):
    return matrices(rng, loop, max(m, n), 2)


def vectors(rng, loop, m, n):
    return rng.standard_normal(loop + (n,))


def triples(rng, loop, m, n):
    return rng.standard_normal(loop + (3,))


def close(x, y, size, scale=None):
    """Equal but for some rounding errors in numbers of magnitude `scale`, by default the largest of y."""
    y = np.asarray(y)
    scale = np.abs(y).max(initial=0) if scale is None else scale
    assert x.shape == y.shape, (x.shape, y.shape)
    assert (np.abs(x - y) <= 10 * (size + 2) * np.finfo(x.dtype).eps * scale).all(), np.abs(x - y).max()


def length(a):
    return np.abs(a).max(initial=0) * max(a.shape[-2:])


def identity(q):
    eye = np.eye(q.shape[-1])
    close(q.swapaxes(-1, -2) @ q, np.broadcast_to(eye, q.shape[:-2] + eye.shape), max(q.shape[-2:]), 1)


def as_numpy(function):
    """The result is that of NumPy in float64."""

    def judge(sources, x):
        close(x, function(*(s.astype(float) for s in sources)), sum(s.shape[-1] for s in sources))

    return judge


def is_qr(sources, q, r):
    (a,) = sources
    assert not np.tril(r, -1).any() and (np.diagonal(r, 0, -2, -1) >= 0).all()
    identity(q)
    close(q @ r, a, max(a.shape[-2:]), length(a))


def is_eigh(sources, w, v):
    (a,) = sources
    assert (np.diff(w) >= 0).all()
    largest = np.take_along_axis(v, np.abs(v).argmax(-2)[..., None, :], -2)
    assert (largest > 0).all()
    identity(v)
    close(a @ v, v * w[..., None, :], a.shape[-1], length(a))


def is_eigvals(sources, w):
    """The sums of their first powers are traces."""
    (a,) = sources
    power = np.broadcast_to(np.eye(a.shape[-1]), a.shape)
    for i in range(1, 4):
        power = power @ a.astype(float)
        close((w**i).sum(-1).real, np.trace(power, 0, -2, -1).astype(w.real.dtype), i * a.shape[-1], length(a) ** i)


def is_eig(sources, w, v):
    (a,) = sources
    is_eigvals(sources, w)
    close(np.linalg.norm(v, axis=-2), np.ones(w.shape), a.shape[-1])
    close(a @ v, v * w[..., None, :], a.shape[-1], length(a))


def is_svd(sources, u, s, vh):
    (a,) = sources
    p = min(a.shape[-2:])
    identity(u)
    identity(vh.swapaxes(-1, -2))
    assert (np.diff(s) <= 0).all() and (s >= 0).all()
    close((u[..., :p] * s[..., None, :]) @ vh[..., :p, :], a, max(a.shape[-2:]), length(a))


# name: function, sources, judge, number of core axes of the sources
operations = {
    "matmul": (kesl.matmul, (matrices, right_sides), as_numpy(np.matmul), (2, 2)),
    "matvec": (kesl.matvec, (matrices, vectors), as_numpy(lambda a, x: np.einsum("...ij,...j", a, x)), (2, 1)),
    "vecmat": (kesl.vecmat, (vectors, general), as_numpy(lambda x, a: np.einsum("...i,...ij", x, a)), (1, 2)),
    "vecdot": (kesl.vecdot, (vectors, vectors), as_numpy(lambda a, b: np.einsum("...i,...i", a, b)), (1, 1)),
    "cross": (kesl.cross, (triples, triples), as_numpy(np.cross), (1, 1)),
    "norm": (functools.partial(kesl.norm, axis=-1), (vectors,), as_numpy(lambda a: np.sqrt((a * a).sum(-1))), (1,)),
    "trace": (kesl.trace, (general,), as_numpy(lambda a: np.trace(a, 0, -2, -1)), (2,)),
    "det": (kesl.det, (near_identity,), as_numpy(np.linalg.det), (2,)),
    "inv": (kesl.inv, (regular,), as_numpy(np.linalg.inv), (2,)),
    "solve": (kesl.solve, (regular, right_sides), as_numpy(np.linalg.solve), (2, 2)),
    "cholesky": (kesl.cholesky, (definite,), as_numpy(np.linalg.cholesky), (2,)),
    "qr": (kesl.qr, (columns,), is_qr, (2,)),
    "eigvalsh": (kesl.eigvalsh, (symmetric,), as_numpy(np.linalg.eigvalsh), (2,)),
    "eigh": (kesl.eigh, (symmetric,), is_eigh, (2,)),
    "eigvals": (kesl.eigvals, (general,), is_eigvals, (2,)),
    "eig": (kesl.eig, (general,), is_eig, (2,)),
    "svdvals": (kesl.svdvals, (matrices,), as_numpy(lambda a: np.linalg.svd(a, compute_uv=False)), (2,)),
    "svd": (functools.partial(kesl.svd, full_matrices=False), (matrices,), is_svd, (2,)),
}


def results(name, sources, **options):
    """All results of a function as a tuple."""
    x = operations[name][0](*sources, **options)
    return tuple(x) if isinstance(x, tuple) else (x,)


def sources(name, rng, loop, m, n, dtype=float):
    return [make(rng, loop, m, n).astype(dtype) for make in operations[name][1]]


def same(x, y):
    """The same bits."""
    return x.dtype == y.dtype and x.shape == y.shape and np.array_equal(x, y, equal_nan=True)
