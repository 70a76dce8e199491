"""What kesl has no code for, sizes above 32, by NumPy. The results keep kesl's promises: signs, NaN in objects that fail, infos.

An info tells no more than that an object failed (1), or holds NaN or infinities (-1).
"""
import numpy as np
from numpy import linalg


def _toward(positive):
    """Factors of 1 and -1 that make the numbers positive; those of complex ones turn them to the real axis."""
    size = np.abs(positive)
    return np.where(size > 0, np.conj(positive), 1) / np.where(size > 0, size, 1)


def _largest(vectors):
    """The largest component of each column, the first of equals."""
    if not len(vectors):
        return np.ones(vectors.shape[1])
    return np.take_along_axis(vectors, np.abs(vectors).argmax(axis=0)[None], axis=0)[0]


def _qr(a):
    q, r = linalg.qr(a)
    signs = _toward(r.diagonal())
    return q * signs, r * signs[:, None]


def _lstsq(a, b):
    x, _, rank, _ = linalg.lstsq(a, b, rcond=None)
    if rank < a.shape[1]:
        raise linalg.LinAlgError
    return x


def _eigh(a):
    w, v = linalg.eigh(a)
    return w, v * _toward(_largest(v))


def _eig(a):
    w, v = linalg.eig(a)
    return w, v * _toward(_largest(v))


def _svd(a):
    u, s, vt = linalg.svd(a, full_matrices=False)
    signs = _toward(_largest(vt.T))
    return u * signs, s, vt * signs[:, None]


def _svdvals(a):
    return linalg.svd(a, compute_uv=False)


# name: function of one object, number of its results, and what is read of the first operand
_functions = {
    "cross": (lambda a, b: np.nan, 1, np.asarray), # of sizes other than 3, which mean nothing
    "det": (linalg.det, 1, np.asarray),
    "inv": (linalg.inv, 1, np.asarray),
    "solve": (linalg.solve, 1, np.asarray),
    "solve_vector": (linalg.solve, 1, np.asarray),
    "cholesky": (linalg.cholesky, 1, np.tril),
    "qr": (_qr, 2, np.asarray),
    "lstsq": (_lstsq, 1, np.asarray),
    "eigvalsh": (linalg.eigvalsh, 1, np.tril),
    "eigh": (_eigh, 2, np.tril),
    "eigvals": (linalg.eigvals, 1, np.asarray),
    "eig": (_eig, 2, np.asarray),
    "svdvals_m": (_svdvals, 1, np.asarray),
    "svdvals_n": (_svdvals, 1, np.asarray),
    "svd_m": (_svd, 3, np.asarray),
    "svd_n": (_svd, 3, np.asarray),
}


def run(name, operands):
    """Fills the results among the operands of the ufunc `name`: stacks of sources, of results, and infos if there are any."""
    function, count, read = _functions[name]
    has_info = operands[-1].dtype == np.intc
    end = len(operands) - has_info
    sources, results = operands[: end - count], operands[end - count : end]
    with np.errstate(all="ignore"):
        for k in range(len(sources[0])):
            a, *others = (x[k] for x in sources)
            info = 0
            try:
                if not np.isfinite(read(a)).all():
                    info = -1
                    raise linalg.LinAlgError
                values = function(read(a), *others)
                for result, value in zip(results, values if count > 1 else (values,)):
                    result[k] = value
            except linalg.LinAlgError:
                info = info or 1
                for result in results:
                    result[k] = np.nan if result.dtype.kind == "f" else complex(np.nan, np.nan)
            if has_info:
                operands[-1][k] = info
