"""The functions of kesl: numpy.linalg's names, arguments and results, for stacks of small matrices."""
from collections import namedtuple

import numpy as np
from numpy.linalg import LinAlgError

from ._call import apply, array

__all__ = [
    "LinAlgError", "EigResult", "EighResult", "QRResult", "SVDResult", "LstsqResult",
    "ExResult", "EigExResult", "EighExResult", "QRExResult", "SVDExResult", "LstsqExResult",
    "matmul", "matvec", "vecmat", "vecdot", "cross", "norm", "trace",
    "det", "inv", "solve", "cholesky", "qr", "lstsq", "eigvalsh", "eigh", "eigvals", "eig", "svdvals", "svd",
    "det_ex", "inv_ex", "solve_ex", "cholesky_ex", "qr_ex", "lstsq_ex",
    "eigvalsh_ex", "eigh_ex", "eigvals_ex", "eig_ex", "svdvals_ex", "svd_ex",
]

EigResult = namedtuple("EigResult", "eigenvalues eigenvectors")
EighResult = namedtuple("EighResult", "eigenvalues eigenvectors")
QRResult = namedtuple("QRResult", "Q R")
SVDResult = namedtuple("SVDResult", "U S Vh")
LstsqResult = namedtuple("LstsqResult", "x residuals rank singular_values")

ExResult = namedtuple("ExResult", "result info")
EigExResult = namedtuple("EigExResult", "eigenvalues eigenvectors info")
EighExResult = namedtuple("EighExResult", "eigenvalues eigenvectors info")
QRExResult = namedtuple("QRExResult", "Q R info")
SVDExResult = namedtuple("SVDExResult", "U S Vh info")
LstsqExResult = namedtuple("LstsqExResult", "x residuals rank singular_values info")

_numpy1 = int(np.__version__.split(".")[0]) < 2


def _axes(a, options):
    """The axes of the rows and of the columns."""
    if a.ndim < 2:
        raise LinAlgError(f"{a.ndim}-dimensional array given. Array must be at least two-dimensional")
    return tuple(options["axes"][0]) if "axes" in options else (-2, -1)


def _lower(a, UPLO, options):
    """An array whose lower triangles are those that UPLO names."""
    if UPLO in ("L", "l"):
        return a
    if UPLO not in ("U", "u"):
        raise ValueError("UPLO argument must be 'L' or 'U'")
    a = array(a)
    return a.swapaxes(*_axes(a, options))


def _transposed(a):
    return a.swapaxes(-1, -2)


def _square(a):
    """Matrices with rows or columns of zeros appended."""
    m, n = a.shape[-2:]
    return np.concatenate([a, np.zeros_like(a, shape=a.shape[:-2] + ((m, m - n) if m > n else (n - m, n)))], -1 if m > n else -2)


# ------------------------------------------------------------------------------------------------- products and sums


def matmul(a, b, **options):
    """Products of matrices, (m,k) (k,n) -> (m,n); a or b may be a single vector.

    >>> import kesl
    >>> kesl.matmul([[1, 2], [3, 4]], [[0, 1], [1, 0]])
    array([[2., 1.],
           [4., 3.]])
    """
    a, b = array(a), array(b)
    if b.ndim == 1:
        return apply("vecdot" if a.ndim == 1 else "matvec", (a, b), options=options)
    return apply("vecmat" if a.ndim == 1 else "matmul", (a, b), options=options)


def matvec(a, x, **options):
    """Matrices times vectors, (m,n) (n) -> (m).

    >>> import kesl
    >>> kesl.matvec([[1, 2], [3, 4]], [[1, 0], [1, 1]])
    array([[1., 3.],
           [3., 7.]])
    """
    return apply("matvec", (a, x), options=options)


def vecmat(x, a, **options):
    """Vectors times matrices, (m) (m,n) -> (n).

    >>> import kesl
    >>> kesl.vecmat([1, 1], [[1, 2], [3, 4]])
    array([4., 6.])
    """
    return apply("vecmat", (x, a), options=options)


def vecdot(a, b, *, axis=-1, **options):
    """Sums of products of vectors, (n) (n) -> ().

    >>> import kesl
    >>> kesl.vecdot([[1, 2], [3, 4]], [1, 10])
    array([21., 43.])
    """
    return apply("vecdot", (a, b), options=_with_axis(axis, options))


def cross(a, b, *, axis=-1, **options):
    """Cross products of vectors with three components.

    >>> import kesl
    >>> kesl.cross([1, 0, 0], [0, 1, 0])
    array([0., 0., 1.])
    """
    a, b = array(a), array(b)
    if not all(x.ndim and x.shape[axis] == 3 for x in (a, b)):
        raise ValueError(f"cross wants vectors with 3 components, not arrays of shape {a.shape} and {b.shape}")
    return apply("cross", (a, b), options=_with_axis(axis, options))


def _with_axis(axis, options):
    return options if axis == -1 else options | {"axis": axis}


def norm(x, ord=None, axis=None, keepdims=False, **options):
    """Euclidean lengths of vectors and Frobenius norms of matrices, without over- or underflow on the way.

    As in numpy.linalg, the norm of the whole array unless axis says over what: -1 for a stack of vectors, (-2, -1) for one of
    matrices. The 2-norm and the nuclear norm of matrices come from svdvals, other norms and types from numpy.linalg.

    >>> import kesl
    >>> kesl.norm([[3, 4], [3e200, 4e200]], axis=-1)
    array([5.e+000, 5.e+200])
    """
    x = array(x)
    axes = tuple(range(x.ndim)) if axis is None else tuple(axis) if isinstance(axis, (tuple, list)) else (axis,)
    lengths = ord is None and (axis is None or len(axes) < 3) or ord == 2 and len(axes) == 1 or ord == "fro" and len(axes) == 2
    spectral = ord in (2, -2, "nuc") and len(axes) == 2
    foreign = x.dtype.char not in "fd" and x.dtype.kind not in "biu"
    if foreign or not axes or not (lengths or spectral) or len({i % x.ndim for i in axes if -x.ndim <= i < x.ndim}) < len(axes):
        return np.linalg.norm(x, ord, axis, keepdims, **options)
    if spectral:
        s = svdvals(np.moveaxis(x, axes, (-2, -1)), **options)
        result = s.sum(-1) if ord == "nuc" else s[..., 0 if ord == 2 else -1]
    else:
        last = axes == (-1,) or axes == (x.ndim - 1,)
        result = x if last or axis is None else np.moveaxis(x, axes, tuple(range(-len(axes), 0)))
        for left in range(len(axes) - 1, -1, -1): # the out is that of the last one
            result = apply("norm", (result,), options=options if left == 0 else None)
    return np.expand_dims(result, axes) if keepdims else result


def trace(a, offset=0, **options):
    """Sums of the diagonals of matrices, which need not be square; offset counts diagonals upward.

    >>> import kesl
    >>> kesl.trace([[[1, 2], [3, 4]], [[5, 6], [7, 8]]])
    array([ 5., 13.])
    """
    a = array(a)
    i, j = _axes(a, {})
    if offset or a.shape[i] != a.shape[j]:
        a = a[..., max(-offset, 0):, max(offset, 0):]
        size = min(a.shape[-2:])
        a = a[..., :size, :size]
    return apply("trace", (a,), options=options)


# --------------------------------------------------------------------------------------------------- linear systems


def det(a, *, errors="nan", **options):
    """Determinants.

    >>> import kesl
    >>> kesl.det([[[1, 2], [3, 4]], [[2, 0], [0, 2]]])
    array([-2.,  4.])
    """
    return apply("det", (a,), errors, options)


def det_ex(a, **options):
    """As det, with infos: -1 for NaN or an infinity."""
    return ExResult(*apply("det", (a,), "info", options))


def inv(a, *, errors="nan", **options):
    """Inverses.

    >>> import kesl
    >>> kesl.inv([[[2, 0], [0, 4]], [[1, 2], [2, 4]]])
    array([[[0.5 , 0.  ],
            [0.  , 0.25]],
    <BLANKLINE>
           [[ nan,  nan],
            [ nan,  nan]]])
    >>> kesl.inv([[[2, 0], [0, 4]], [[1, 2], [2, 4]]], errors="raise")
    Traceback (most recent call last):
    numpy.linalg.LinAlgError: 1 of 2 objects failed: [1] (singular: pivot 2 is zero)
    """
    return apply("inv", (a,), errors, options)


def inv_ex(a, **options):
    """As inv, with infos: i if pivot i is zero, -1 for NaN or an infinity.

    >>> import kesl
    >>> kesl.inv_ex([[[2, 0], [0, 4]], [[1, 2], [2, 4]]]).info
    array([0, 2], dtype=int32)
    """
    return ExResult(*apply("inv", (a,), "info", options))


def _solve(name, a, b, errors, options):
    # A stack of vectors is what the installed NumPy takes for one: since 2.0 it is only a single vector for all matrices.
    a, b = array(a), array(b)
    vector = b.ndim == 1 or (_numpy1 and b.ndim == a.ndim - 1)
    return apply(name + "_vector" if vector else name, (a, b), errors, options)


def solve(a, b, *, errors="nan", **options):
    """Solutions of a x = b, (n,n) (n,k) -> (n,k) or (n,n) (n) -> (n).

    >>> import kesl
    >>> kesl.solve([[[2, 0], [0, 4]], [[1, 1], [0, 1]]], [2, 4])
    array([[ 1.,  1.],
           [-2.,  4.]])
    """
    return _solve("solve", a, b, errors, options)


def solve_ex(a, b, **options):
    """As solve, with infos: i if pivot i is zero, -1 for NaN or an infinity in a."""
    return ExResult(*_solve("solve", a, b, "info", options))


def cholesky(a, *, upper=False, errors="nan", **options):
    """Lower factors of positive definite matrices, whose lower triangles are read; upper ones, from upper triangles, if asked.

    >>> import kesl
    >>> kesl.cholesky([[4, 2], [2, 5]])
    array([[2., 0.],
           [1., 2.]])
    """
    return apply("cholesky", (a,), errors, options | {"axes": [(-1, -2)] * 2} if upper else options)


def cholesky_ex(a, *, upper=False, **options):
    """As cholesky, with infos: i if the leading minor of order i is not positive definite, -1 for NaN or an infinity."""
    return ExResult(*apply("cholesky", (a,), "info", options | {"axes": [(-1, -2)] * 2 + [()]} if upper else options))


def _qr(a, mode, errors, options):
    a = array(a)
    m, n = (a.shape[i] for i in _axes(a, options))
    rows = m if mode == "complete" else min(m, n)
    if rows == n:
        return apply("qr", (a,), errors, options)
    if options:
        raise TypeError(f"{', '.join(options)}: only where m >= n, and not for complete factors")
    Q, R, *info = apply("qr", (_square(a),), errors)
    return Q[..., :m, :rows], R[..., :rows, :n], *info


def qr(a, mode="reduced", *, errors="nan", **options):
    """QR factors, R with a diagonal that is not negative. mode: "reduced", "complete", or "r" for R alone; "raw" is NumPy's.

    >>> import kesl
    >>> Q, R = kesl.qr([[3, 0], [4, 5]])
    >>> R
    array([[5., 4.],
           [0., 3.]])
    """
    if mode not in ("reduced", "complete", "r"):
        return np.linalg.qr(a, mode, **options)
    Q, R = _qr(a, mode, errors, options)
    return R if mode == "r" else QRResult(Q, R)


def qr_ex(a, mode="reduced", **options):
    """As qr, with infos: -1 for NaN or an infinity."""
    Q, R, info = _qr(a, mode, "info", options)
    return ExResult(R, info) if mode == "r" else QRExResult(Q, R, info)


def _lstsq(a, b, rcond, method, errors):
    a, b = array(a), array(b)
    m, n = (a.shape[i] for i in _axes(a, {}))
    vector = b.ndim == 1 or (_numpy1 and b.ndim == a.ndim - 1)
    if vector:
        b = b[..., None]
    if a.ndim == b.ndim == 2 and m != b.shape[0]:
        raise LinAlgError("Incompatible dimensions")
    if method == "qr":
        x, *info = apply("lstsq", (a, b), errors) if errors == "info" else (apply("lstsq", (a, b), errors),)
        s, rank = None, np.where(np.isfinite(x).all((-2, -1)), n, 0)
    elif method == "svd":
        U, s, Vh, *info = _svd(a, False, errors, {})
        rcond = np.finfo(s.dtype).eps * max(m, n) if rcond is None else np.finfo(s.dtype).eps if rcond == -1 else rcond
        used = s > rcond * s[..., :1]
        rank = used.sum(-1)
        inverse = np.divide(1, s, out=np.zeros_like(s), where=used)
        x = matmul(_transposed(Vh), matmul(_transposed(U), b) * inverse[..., None])
    else:
        raise ValueError(f"method must be 'svd' or 'qr', not {method!r}")
    error = b - matmul(a, x)
    residuals = vecdot(error, error, axis=-2)
    if x.ndim == 2:
        rank = int(rank)
        if rank < n or m <= n: # as numpy.linalg, which takes single problems only
            residuals = residuals[:0]
    return LstsqResult(x[..., 0] if vector else x, residuals, rank, s), *info


def lstsq(a, b, rcond=None, *, method="svd", errors="nan"):
    """What makes |a x - b| least: x, the sums of squares that remain, ranks and singular values.

    Singular values below rcond times the largest count as zero; x is the shortest of all solutions then. method "qr" is several
    times as fast, computes no singular values, and wants m >= n and independent columns: all else fails.

    >>> import kesl
    >>> kesl.lstsq([[1, 0], [1, 1], [1, 2]], [1, 3, 5]).x.round(12)
    array([1., 2.])
    """
    return _lstsq(a, b, rcond, method, errors)[0]


def lstsq_ex(a, b, rcond=None, *, method="svd"):
    """As lstsq, with infos: -1 for NaN or an infinity in a; by "qr", i if column i depends on those before it."""
    result, info = _lstsq(a, b, rcond, method, "info")
    return LstsqExResult(*result, info)


# ------------------------------------------------------------------------------------- eigenvalues and singular values


def eigvalsh(a, UPLO="L", *, errors="nan", **options):
    """Eigenvalues of symmetric matrices, ascending. The triangle UPLO, "L" or "U", is read.

    >>> import kesl
    >>> kesl.eigvalsh([[[2, 1], [1, 2]], [[5, 0], [0, 3]]])
    array([[1., 3.],
           [3., 5.]])
    """
    return apply("eigvalsh", (_lower(a, UPLO, options),), errors, options)


def eigvalsh_ex(a, UPLO="L", **options):
    """As eigvalsh, with infos: -1 for NaN or an infinity."""
    return ExResult(*apply("eigvalsh", (_lower(a, UPLO, options),), "info", options))


def eigh(a, UPLO="L", *, errors="nan", **options):
    """Eigenvalues of symmetric matrices, ascending, and orthonormal eigenvectors in columns, their largest component positive.

    >>> import kesl
    >>> w, v = kesl.eigh([[2, 0], [0, 1]])
    >>> w
    array([1., 2.])
    >>> v
    array([[0., 1.],
           [1., 0.]])
    """
    return EighResult(*apply("eigh", (_lower(a, UPLO, options),), errors, options))


def eigh_ex(a, UPLO="L", **options):
    """As eigh, with infos: -1 for NaN or an infinity."""
    return EighExResult(*apply("eigh", (_lower(a, UPLO, options),), "info", options))


def _real(first, *others, options):
    """Real arrays if all eigenvalues are real. Arrays of others than NumPy, which may hold no values yet, stay complex."""
    if options.get("out") is not None or not isinstance(first, np.ndarray):
        return first, *others
    if np.count_nonzero(first.imag) and (np.abs(first.imag) > 0).any(): # NaN is real
        return first, *others
    return [x.real.copy() if x.dtype.kind == "c" else x for x in (first, *others)]


def eigvals(a, *, errors="nan", **options):
    """Eigenvalues: a real array if all are real, else a complex one with the pairs together, positive imaginary parts first.

    >>> import kesl
    >>> kesl.eigvals([[0, 1], [-1, 0]])
    array([0.+1.j, 0.-1.j])
    """
    return _real(apply("eigvals", (a,), errors, options), options=options)[0]


def eigvals_ex(a, **options):
    """As eigvals, with infos: -1 for NaN or an infinity."""
    return ExResult(*_real(*apply("eigvals", (a,), "info", options), options=options))


def eig(a, *, errors="nan", **options):
    """Eigenvalues, and eigenvectors of length 1 in columns, whose largest component is real and positive.

    >>> import kesl
    >>> w, v = kesl.eig([[2, 0], [0, 1]])
    >>> w
    array([2., 1.])
    """
    return EigResult(*_real(*apply("eig", (a,), errors, options), options=options))


def eig_ex(a, **options):
    """As eig, with infos: -1 for NaN or an infinity."""
    return EigExResult(*_real(*apply("eig", (a,), "info", options), options=options))


def _m_or_n(name, a, options):
    i, j = _axes(a, options)
    return name + ("_m" if a.shape[i] < a.shape[j] else "_n")


def svdvals(a, *, errors="nan", **options):
    """Singular values, descending.

    >>> import kesl
    >>> kesl.svdvals([[3, 0, 0], [0, -4, 0]])
    array([4., 3.])
    """
    a = array(a)
    return apply(_m_or_n("svdvals", a, options), (a,), errors, options)


def svdvals_ex(a, **options):
    """As svdvals, with infos: -1 for NaN or an infinity."""
    a = array(a)
    return ExResult(*apply(_m_or_n("svdvals", a, options), (a,), "info", options))


def _svd(a, full_matrices, errors, options):
    a = array(a)
    m, n = (a.shape[i] for i in _axes(a, options))
    U, S, Vh, *info = apply(_m_or_n("svd", a, options), (a,), errors, options)
    if full_matrices and m != n:
        if options:
            raise TypeError(f"{', '.join(options)}: only with full_matrices=False")
        # Reflections that lead to orthonormal columns have as many more as the order allows.
        if m > n:
            U = np.concatenate([U, apply("qr", (_square(U),))[0][..., n:]], -1)
        else:
            Vh = np.concatenate([Vh, _transposed(apply("qr", (_square(_transposed(Vh)),))[0][..., m:])], -2)
    return U, S, Vh, *info


def svd(a, full_matrices=True, compute_uv=True, hermitian=False, *, errors="nan", **options):
    """Singular values, descending, and vectors: a = (U * S) Vh. The largest component of each row of Vh is positive.

    hermitian changes nothing: symmetric matrices need no method of their own.

    >>> import kesl
    >>> U, S, Vh = kesl.svd([[0, 2], [-3, 0]])
    >>> S
    array([3., 2.])
    """
    if not compute_uv:
        return svdvals(a, errors=errors, **options)
    return SVDResult(*_svd(a, full_matrices, errors, options))


def svd_ex(a, full_matrices=True, **options):
    """As svd, with infos: -1 for NaN or an infinity."""
    return SVDExResult(*_svd(a, full_matrices, "info", options))
