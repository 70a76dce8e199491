"""The road of a call: from what a user gives to a ufunc of kesl, and back."""
import re

import numpy as np
from numpy.linalg import LinAlgError

from . import _ufuncs
from ._ufuncs import quick


def array(x):
    """x itself if it is an array of any kind, of NumPy or of others; else an array of NumPy."""
    return x if hasattr(x, "dtype") else np.asarray(x)


def apply(name, operands, errors="nan", options=None):
    """The results of the ufunc `name`. `options` are keywords that ufuncs take; errors "info" adds the infos to the results."""
    ufunc = getattr(_ufuncs, name if errors == "nan" else name + "_ex")
    results = quick(ufunc, *operands) if not options else NotImplemented
    if results is NotImplemented:
        results = _by_numpy(ufunc, [_promoted(x) for x in operands], errors, dict(options or {}))
    if errors in ("nan", "info"):
        return results
    if errors != "raise":
        raise ValueError(f"errors must be 'nan' or 'raise', not {errors!r}")
    *results, info = results
    if info.any():
        _raise(name, info)
    return results[0] if len(results) == 1 else tuple(results)


def _promoted(x):
    """Integers become float64. Ufuncs would take the short ones for float32, and halves, which numpy.linalg refuses."""
    x = array(x)
    if x.dtype.itemsize < 4:
        if x.dtype.kind in "biu":
            return x.astype(np.float64)
        if x.dtype == np.float16:
            raise TypeError("array type float16 is unsupported in linalg")
    return x


def _by_numpy(ufunc, operands, errors, options):
    out = options.pop("out", None)
    if out is not None: # whoever asks for exceptions does not know of the infos
        options["out"] = out if errors != "raise" else (out if isinstance(out, tuple) else (out,)) + (None,)
    if options.get("dtype") is not None: # ufuncs would ask infos for this type, too
        dtype = np.dtype(options.pop("dtype"))
        types = [t for t in ufunc.types if t[0] == dtype.char]
        if not types:
            raise TypeError(f"kesl computes in float32 and float64, not in {dtype}")
        options["signature"] = types[0]
    where = options.pop("where", True)
    try:
        return ufunc(*operands, **options) if where is True else _where(ufunc, operands, where, options)
    except ValueError:
        a = operands[0]
        if "axes" not in options and ufunc.signature.startswith("(n,n)"): # as numpy.linalg says it
            if a.ndim < 2:
                raise LinAlgError(f"{a.ndim}-dimensional array given. Array must be at least two-dimensional") from None
            if a.shape[-1] != a.shape[-2]:
                raise LinAlgError("Last 2 dimensions of the array must be square") from None
        raise


def _where(ufunc, operands, where, options):
    """The results of some objects; the others keep what is in out, or are NaN if there is no out."""
    if set(options) - {"out", "signature", "casting"}:
        raise TypeError("where cannot be had together with " + ", ".join(sorted(set(options) - {"out"})))
    core = [len(re.findall(r"\w+", term)) for term in re.findall(r"\(.*?\)", ufunc.signature)[: ufunc.nin]]
    loops = [x.shape[: x.ndim - c] for x, c in zip(operands, core)]
    loop = np.broadcast_shapes(np.shape(where), *loops)
    picked = np.broadcast_to(where, loop)
    out = options.pop("out", None)
    sources = [np.broadcast_to(x, loop + x.shape[x.ndim - c:])[picked] for x, c in zip(operands, core)]
    results = ufunc(*sources, **options)
    results = results if isinstance(results, tuple) else (results,)
    outs = list(out) if isinstance(out, tuple) else [out] * len(results)
    for i, result in enumerate(results):
        if outs[i] is None:
            outs[i] = np.full(loop + result.shape[1:], np.nan if result.dtype.kind in "fc" else 0, result.dtype)
        outs[i][picked] = result
        if outs[i].ndim == 0 and out is None:
            outs[i] = outs[i][()] # a number, as ufuncs give it
    return outs[0] if len(outs) == 1 else tuple(outs)


_reasons = { # what a positive info means
    "inv": "singular: pivot {} is zero",
    "solve": "singular: pivot {} is zero",
    "solve_vector": "singular: pivot {} is zero",
    "cholesky": "not positive definite: leading minor {}",
    "lstsq": "dependent columns: {} on those before",
}


def _raise(name, info):
    """LinAlgError that says how many objects failed, and of the first ones where and why; its `info` tells of all."""

    def reason(k):
        return "NaN or infinity" if info[k] < 0 else _reasons.get(name, "no convergence, info {}").format(info[k])

    info = np.asarray(info)
    failed = [tuple(map(int, k)) for k in np.argwhere(info)]
    if info.ndim == 0:
        text = reason(())
    else:
        first = ", ".join(f"{list(k)} ({reason(k)})" for k in failed[:5])
        text = f"{len(failed)} of {info.size} objects failed: {first}{', ...' if len(failed) > 5 else ''}"
    error = LinAlgError(text)
    error.info = info
    raise error
