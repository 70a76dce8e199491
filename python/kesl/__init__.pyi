from typing import Any, Literal, NamedTuple, TextIO

import numpy as np
from numpy.linalg import LinAlgError as LinAlgError
from numpy.typing import ArrayLike, NDArray

__version__: str
level: str

_Array = NDArray[Any]  # float32 or float64; complex where eigenvalues are
_Infos = NDArray[np.intc]
_Errors = Literal["nan", "raise"]

# **options below are keywords of NumPy's ufuncs: out, where, dtype, axes, casting.

class EigResult(NamedTuple):
    eigenvalues: _Array
    eigenvectors: _Array

class EighResult(NamedTuple):
    eigenvalues: _Array
    eigenvectors: _Array

class QRResult(NamedTuple):
    Q: _Array
    R: _Array

class SVDResult(NamedTuple):
    U: _Array
    S: _Array
    Vh: _Array

class LstsqResult(NamedTuple):
    x: _Array
    residuals: _Array
    rank: Any
    singular_values: _Array | None

class ExResult(NamedTuple):
    result: _Array
    info: _Infos

class EigExResult(NamedTuple):
    eigenvalues: _Array
    eigenvectors: _Array
    info: _Infos

class EighExResult(NamedTuple):
    eigenvalues: _Array
    eigenvectors: _Array
    info: _Infos

class QRExResult(NamedTuple):
    Q: _Array
    R: _Array
    info: _Infos

class SVDExResult(NamedTuple):
    U: _Array
    S: _Array
    Vh: _Array
    info: _Infos

class LstsqExResult(NamedTuple):
    x: _Array
    residuals: _Array
    rank: Any
    singular_values: _Array | None
    info: _Infos

def matmul(a: ArrayLike, b: ArrayLike, **options: Any) -> _Array: ...
def matvec(a: ArrayLike, x: ArrayLike, **options: Any) -> _Array: ...
def vecmat(x: ArrayLike, a: ArrayLike, **options: Any) -> _Array: ...
def vecdot(a: ArrayLike, b: ArrayLike, *, axis: int = -1, **options: Any) -> _Array: ...
def cross(a: ArrayLike, b: ArrayLike, *, axis: int = -1, **options: Any) -> _Array: ...
def norm(
    x: ArrayLike, ord: Any = None, axis: None | int | tuple[int, ...] = None, keepdims: bool = False, **options: Any
) -> _Array: ...
def trace(a: ArrayLike, offset: int = 0, **options: Any) -> _Array: ...
def det(a: ArrayLike, *, errors: _Errors = "nan", **options: Any) -> _Array: ...
def inv(a: ArrayLike, *, errors: _Errors = "nan", **options: Any) -> _Array: ...
def solve(a: ArrayLike, b: ArrayLike, *, errors: _Errors = "nan", **options: Any) -> _Array: ...
def cholesky(a: ArrayLike, *, upper: bool = False, errors: _Errors = "nan", **options: Any) -> _Array: ...
def qr(a: ArrayLike, mode: str = "reduced", *, errors: _Errors = "nan", **options: Any) -> Any: ...
def lstsq(
    a: ArrayLike, b: ArrayLike, rcond: float | None = None, *, method: Literal["svd", "qr"] = "svd", errors: _Errors = "nan"
) -> LstsqResult: ...
def eigvalsh(a: ArrayLike, UPLO: str = "L", *, errors: _Errors = "nan", **options: Any) -> _Array: ...
def eigh(a: ArrayLike, UPLO: str = "L", *, errors: _Errors = "nan", **options: Any) -> EighResult: ...
def eigvals(a: ArrayLike, *, errors: _Errors = "nan", **options: Any) -> _Array: ...
def eig(a: ArrayLike, *, errors: _Errors = "nan", **options: Any) -> EigResult: ...
def svdvals(a: ArrayLike, *, errors: _Errors = "nan", **options: Any) -> _Array: ...
def svd(
    a: ArrayLike,
    full_matrices: bool = True,
    compute_uv: bool = True,
    hermitian: bool = False,
    *,
    errors: _Errors = "nan",
    **options: Any,
) -> Any: ...
def det_ex(a: ArrayLike, **options: Any) -> ExResult: ...
def inv_ex(a: ArrayLike, **options: Any) -> ExResult: ...
def solve_ex(a: ArrayLike, b: ArrayLike, **options: Any) -> ExResult: ...
def cholesky_ex(a: ArrayLike, *, upper: bool = False, **options: Any) -> ExResult: ...
def qr_ex(a: ArrayLike, mode: str = "reduced", **options: Any) -> Any: ...
def lstsq_ex(
    a: ArrayLike, b: ArrayLike, rcond: float | None = None, *, method: Literal["svd", "qr"] = "svd"
) -> LstsqExResult: ...
def eigvalsh_ex(a: ArrayLike, UPLO: str = "L", **options: Any) -> ExResult: ...
def eigh_ex(a: ArrayLike, UPLO: str = "L", **options: Any) -> EighExResult: ...
def eigvals_ex(a: ArrayLike, **options: Any) -> ExResult: ...
def eig_ex(a: ArrayLike, **options: Any) -> EigExResult: ...
def svdvals_ex(a: ArrayLike, **options: Any) -> ExResult: ...
def svd_ex(a: ArrayLike, full_matrices: bool = True, **options: Any) -> SVDExResult: ...
def get_threads() -> int: ...
def set_threads(number: int, /) -> None: ...
def show(file: TextIO | None = None) -> None: ...
