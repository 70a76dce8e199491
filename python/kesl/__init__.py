"""Linear algebra on stacks of small matrices: numpy.linalg's functions, many times as fast.

>>> import kesl
>>> import numpy as np
>>> a = np.eye(3) + np.arange(10000)[:, None, None]
>>> kesl.inv(a).shape
(10000, 3, 3)

Every object of a stack is done. Those that fail are NaN; errors="raise" makes it a LinAlgError, and the functions whose names end
in _ex return infos: 0, or why an object failed. Keywords of NumPy's ufuncs, such as out, where, dtype and axes, are taken by all
functions but lstsq.
"""
import sys as _sys

from . import _linalg, _ufuncs
from ._linalg import *  # noqa: F403
from ._ufuncs import get_threads, set_threads

__version__, level, _file = _ufuncs.library()
__all__ = [*_linalg.__all__, "get_threads", "level", "set_threads", "show"]


def show(file=None):
    """Prints the version, what it was compiled for, and how many threads a call may use."""
    threads = get_threads()
    print(f"kesl {__version__} for {level}, {threads} thread{'s' * (threads != 1)}\n{_file}", file=file or _sys.stdout)
