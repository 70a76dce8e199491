"""kesl's functions against NumPy and against themselves: layouts, types, broadcasting, keywords of ufuncs, failures."""
import io
import itertools

import kesl
import numpy as np
import pytest
from kesl import _ufuncs
from numpy.linalg import LinAlgError
from operations import operations, results, same, sources

names = list(operations)
fallible = [name for name in names if hasattr(kesl, name + "_ex")]


def scattered(x, rng):
    """The same array somewhere else: axes in another order, gaps, backward, at odd addresses, in the other byte order."""
    order = rng.permutation(x.ndim)
    step = rng.choice([-2, -1, 1, 3], x.ndim)
    storage = np.full([abs(s) * x.shape[i] + 1 for s, i in zip(step[order], order)], 7, x.dtype)
    y = storage.transpose(np.argsort(order))
    y = y[tuple(slice(0 if s > 0 else -1, s * length if s > 0 else -1 + s * length, s) for s, length in zip(step, x.shape))]
    y[...] = x
    kind = rng.integers(6)
    if kind == 0:
        return y.astype(y.dtype.newbyteorder())
    if kind == 1:
        z = np.zeros(y.nbytes + 1, np.uint8)[1:].view(y.dtype).reshape(y.shape)
        z[...] = y
        return z
    return y


@pytest.mark.parametrize("dtype", ["f", "d"])
@pytest.mark.parametrize("name", names)
def test_values_in_every_layout(name, dtype):
    rng = np.random.default_rng(1)
    for m, n, loop in itertools.product([1, 2, 3, 6, 17], [1, 3, 4, 9], [(), (5,), (2, 3)]):
        given = sources(name, rng, loop, m, n, dtype)
        straight = results(name, given)
        operations[name][2](given, *straight)
        moved = results(name, [scattered(x, rng) for x in given])
        assert all(same(x, y) for x, y in zip(straight, moved)), (m, n, loop)


@pytest.mark.parametrize("name", names)
def test_broadcasting(name):
    rng = np.random.default_rng(2)
    makers, cores = operations[name][1], operations[name][3]
    for loops in itertools.product([(), (4,), (3, 1), (0,), (2, 0, 1)], repeat=len(makers)):
        try:
            loop = np.broadcast_shapes(*loops)
        except ValueError:
            continue
        if name == "solve" and kesl._linalg._numpy1 and len(loops[1]) + 1 == len(loops[0]):
            continue # NumPy takes these for vectors
        given = [make(rng, l, 4, 3) for make, l in zip(makers, loops)]
        whole = [np.broadcast_to(x, loop + x.shape[x.ndim - core:]) for x, core in zip(given, cores)]
        whole = [np.ascontiguousarray(x) for x in whole]
        assert all(same(x, y) for x, y in zip(results(name, given), results(name, whole))), loops


@pytest.mark.parametrize("name", names)
def test_types(name):
    rng = np.random.default_rng(3)
    doubles = [np.rint(8 * x) for x in sources(name, rng, (3,), 3, 3)]
    expected = results(name, doubles)
    for dtype in ("i1", "i2", "i4", "i8", "O"):
        given = [x.astype(dtype) for x in doubles]
        if dtype == "O":
            given = [x.tolist() for x in given] # lists of integers
        assert all(same(x, y) for x, y in zip(expected, results(name, given))), dtype
    singles = results(name, [x.astype("f") for x in doubles])
    assert all(x.dtype == np.float32 or x.dtype == np.complex64 for x in singles)
    if len(doubles) == 2: # as numpy.linalg: float32 with integers is float64
        mixed = results(name, [doubles[0].astype("f"), doubles[1].astype("i2")])
        assert all(same(x, y) for x, y in zip(expected, mixed))
    for dtype in "FDe" if name != "norm" else "": # as numpy.linalg, whose norm takes halves
        with pytest.raises(TypeError):
            results(name, [x.astype(dtype) for x in doubles])


def test_integers_above_float32():
    a = np.array([[2**24 + 1, 0], [0, 1]])
    assert kesl.det(a) == 2**24 + 1 and kesl.matmul(a.astype("i4"), np.eye(2, dtype="i2"))[0, 0] == 2**24 + 1


@pytest.mark.parametrize("name", names)
def test_out_dtype_axes(name):
    rng = np.random.default_rng(4)
    given = sources(name, rng, (5,), 4, 3)
    complexes = name in ("eig", "eigvals")
    plain = results(name, given)
    outs = tuple(np.empty_like(x, dtype="D" if complexes else "d")[::-1] for x in plain)
    got = results(name, given, out=outs if len(outs) > 1 else outs[0])
    assert all(x is y for x, y in zip(got, outs)) and all(np.array_equal(x, y) for x, y in zip(outs, plain))

    singles = results(name, given, dtype="f")
    assert all(same(x, y) for x, y in zip(singles, results(name, [x.astype("f") for x in given])))
    with pytest.raises(TypeError):
        results(name, given, dtype="e")
    with pytest.raises(TypeError):
        results(name, given, nonsense=1)
    with pytest.raises(TypeError): # a cast that loses
        results(name, given, out=tuple(np.empty(x.shape, "i") for x in plain))


def test_axes():
    rng = np.random.default_rng(5)
    a = rng.standard_normal((3, 7, 3))
    assert same(kesl.inv(a, axes=[(0, 2), (0, 2)]), np.moveaxis(kesl.inv(np.moveaxis(a, 1, 0)), 0, 1))
    assert same(kesl.eigvalsh(a, "U", axes=[(0, 2), -1]), kesl.eigvalsh(np.moveaxis(a, 1, 0), "U"))
    t = rng.standard_normal((4, 7, 3))
    q, r = kesl.qr(t, axes=[(0, 2), (-2, -1), (-2, -1)])
    assert same(q, kesl.qr(np.moveaxis(t, 1, 0)).Q) and r.shape == (7, 3, 3)
    assert kesl.svdvals(t, axes=[(2, 0), -1]).shape == (7, 3)
    v = rng.standard_normal((3, 5))
    assert same(kesl.cross(v, v[::-1], axis=0), kesl.cross(v.T, v[::-1].T).T)
    assert same(kesl.vecdot(v, v, axis=0), kesl.vecdot(v.T, v.T))


@pytest.mark.parametrize("name", names)
def test_where(name):
    rng = np.random.default_rng(6)
    given = sources(name, rng, (2, 5), 4, 3)
    where = np.array([True, False, True, True, False])
    plain = results(name, given)
    for x, y in zip(plain, results(name, given, where=where)):
        assert np.array_equal(x[:, where], y[:, where]) and np.isnan(y[:, ~where]).all()
    outs = tuple(np.full_like(x, 42, "D" if name in ("eig", "eigvals") else "d") for x in plain)
    results(name, given, where=where, out=outs if len(outs) > 1 else outs[0])
    for x, y in zip(plain, outs):
        assert np.array_equal(x[:, where], y[:, where]) and (y[:, ~where] == 42).all()


def test_where_broadcasts():
    b = np.arange(12.0).reshape(4, 3)
    x = kesl.vecdot(b[0], b[1], where=[True, False])
    assert x[0] == b[0] @ b[1] and np.isnan(x[1])
    assert kesl.det(np.eye(3), where=np.True_) == 1


# -------------------------------------------------------------------------------------------------------------- failures


@pytest.mark.parametrize("dtype", ["f", "d"])
@pytest.mark.parametrize("name", fallible)
def test_one_bad_object(name, dtype):
    rng = np.random.default_rng(7)
    ex = getattr(kesl, name + "_ex")
    options = {"full_matrices": False} if name == "svd" else {}
    for k in (0, 8, 20):
        given = sources(name, rng, (21,), 4, 3, dtype)
        good = results(name, given)
        given[0][k, 1, 0] = np.nan
        *bad, info = ex(*given, **options)
        assert info.dtype == np.intc and info[k] == -1 and np.count_nonzero(info) == 1
        for x, y, z in zip(bad, results(name, given), good):
            x, y, z = (np.asarray(i, "D") for i in (x, y, z)) # all eigenvalues may be real, or not
            others = np.arange(21) != k
            assert np.isnan(x[k]).all() and np.array_equal(x[others], z[others])
            assert np.array_equal(x, y, equal_nan=True)
        with pytest.raises(LinAlgError, match=rf"^1 of 21 objects failed: \[{k}\] \(NaN or infinity\)$") as caught:
            results(name, given, errors="raise")
        assert caught.value.info[k] == -1
    with pytest.raises(ValueError, match="errors must be"):
        results(name, given, errors="ignore")


def test_reasons():
    singular = np.array([np.eye(3), np.diag([1.0, 0, 1])])
    for call in (lambda: kesl.inv(singular, errors="raise"), lambda: kesl.solve(singular, np.ones(3), errors="raise")):
        with pytest.raises(LinAlgError, match=r"^1 of 2 objects failed: \[1\] \(singular: pivot 2 is zero\)$"):
            call()
    with pytest.raises(LinAlgError, match="^not positive definite: leading minor 2$"):
        kesl.cholesky(singular[1], errors="raise")
    with pytest.raises(LinAlgError, match=r"^12 of 12 objects failed: \[0, 0\] .*, \[0, 4\] \(.* pivot 1 is zero\), \.\.\.$"):
        kesl.inv(np.zeros((2, 6, 2, 2)), errors="raise")
    assert kesl.inv_ex(singular).info.tolist() == [0, 2] and kesl.cholesky_ex(-singular).info.tolist() == [1, 1]
    assert kesl.det(singular[1], errors="raise") == 0
    x = kesl.solve(singular, np.ones((1, 3, 2)), errors="nan")
    assert (x[0] == 1).all() and np.isnan(x[1]).all()


def test_raise_with_out():
    out = np.empty((2, 3, 3))
    assert kesl.inv(np.array([np.eye(3)] * 2), errors="raise", out=out) is out and (out == np.eye(3)).all()
    with pytest.raises(LinAlgError):
        kesl.inv(np.zeros((2, 3, 3)), errors="raise", out=out)
    assert np.isnan(out).all()
    outs = np.empty((2, 3)), np.empty((2, 3, 3))
    assert kesl.eigh(np.array([np.eye(3)] * 2), errors="raise", out=outs)[0] is outs[0]


def test_infos_with_gaps():
    a = np.zeros((10000, 2, 2))
    a[::2] = np.eye(2)
    info = np.full((10000, 3), 9, np.intc)
    kesl.inv_ex(a, out=(None, info[:, 1]))
    assert (info[::2] == [9, 0, 9]).all() and (info[1::2] == [9, 1, 9]).all()
    assert (kesl.inv_ex(a[None].repeat(2, 0), where=[[True], [False]]).info[0] == info[:, 1]).all()


@pytest.mark.filterwarnings("ignore::PendingDeprecationWarning") # np.matrix
def test_results_are_numpys():
    assert isinstance(kesl.det(np.eye(2)), np.float64) and isinstance(kesl.det(np.eye(2, dtype="f")), np.float32)
    assert type(kesl.inv(np.matrix(np.eye(2)))) is np.matrix
    assert kesl.eigh(np.eye(2))._fields == ("eigenvalues", "eigenvectors")
    x = kesl.inv(np.asfortranarray(np.eye(3)))
    assert x.flags.c_contiguous and x.flags.owndata and x.flags.writeable


@pytest.mark.parametrize("name", [name for name in names if operations[name][3][0] == 2])
def test_shapes_that_do_not_fit(name):
    square = name not in ("matmul", "matvec", "trace", "qr", "svd", "svdvals")
    others = [np.ones((3, 3)) for _ in operations[name][3][1:]]
    if name != "matmul":
        with pytest.raises((LinAlgError, ValueError)):
            results(name, [np.ones(3), *others])
    if square:
        with pytest.raises(LinAlgError if name != "vecmat" else ValueError, match="square|mismatch"):
            results(name, [np.ones((3, 4)), *others])
    if others:
        with pytest.raises(ValueError):
            results(name, [np.ones((3, 3)), np.ones((4, 4))])


# --------------------------------------------------------------------------------------------------- orders above 32


@pytest.mark.parametrize("dtype", ["f", "d"])
@pytest.mark.parametrize("name", names)
def test_large(name, dtype):
    rng = np.random.default_rng(8)
    for m, n, loop in ((40, 33, ()), (33, 40, (3,)), (3, 50, (2,))):
        given = sources(name, rng, loop, m, n, dtype)
        got = results(name, given)
        operations[name][2](given, *got)
        assert all(x.dtype.char in (dtype, dtype.upper()) for x in got)


@pytest.mark.parametrize("name", fallible)
def test_large_failures(name):
    rng = np.random.default_rng(9)
    given = sources(name, rng, (3,), 34, 34)
    given[0][1, 1, 0] = np.inf
    *bad, info = getattr(kesl, name + "_ex")(*given)
    assert info.tolist() == [0, -1, 0]
    for x in bad:
        assert np.isnan(x[1]).all() and np.isfinite(x[::2]).all()
    with pytest.raises(LinAlgError, match="1 of 3"):
        results(name, given, errors="raise")
    assert kesl.inv_ex(np.zeros((40, 40))).info == 1 and kesl.cholesky_ex(-np.eye(40)).info == 1


def test_large_interrupted(monkeypatch):
    from kesl import _large

    def interrupt(a):
        raise KeyboardInterrupt

    monkeypatch.setitem(_large._functions, "inv", (interrupt, 1, np.asarray))
    for a in (np.eye(40), np.ones((3, 2, 40, 40))[::2]):
        with pytest.raises((KeyboardInterrupt, SystemError)) as caught:
            kesl.inv(a)
        assert isinstance(caught.value, KeyboardInterrupt) or isinstance(caught.value.__cause__, KeyboardInterrupt)


# ------------------------------------------------------------------------------------ what NumPy's functions have besides


def test_factors_of_every_shape():
    rng = np.random.default_rng(10)
    for m, n in itertools.product([0, 1, 3, 4, 7, 33], repeat=2):
        a = rng.standard_normal((4, m, n))
        a[0, :, : n // 2] = 0 # deficient ranks
        a[1] = 0
        for mode in ("reduced", "complete"):
            got, numpys = kesl.qr(a, mode), np.linalg.qr(a, mode)
            assert [x.shape for x in got] == [x.shape for x in numpys]
            operations["qr"][2]((a,), *got)
        assert same(kesl.qr(a, "r"), kesl.qr(a).R)
        for full in (True, False):
            got, numpys = kesl.svd(a, full_matrices=full), np.linalg.svd(a, full_matrices=full)
            assert [x.shape for x in got] == [x.shape for x in numpys]
            operations["svd"][2]((a,), *got)


@pytest.mark.parametrize("dtype", ["f", "d"])
def test_lstsq(dtype):
    rng = np.random.default_rng(11)
    for m, n in itertools.product([1, 3, 4, 8], repeat=2):
        a, b = rng.standard_normal((5, m, n)).astype(dtype), rng.standard_normal((5, m, 2)).astype(dtype)
        a[1, :, 0] = 0
        stack = kesl.lstsq(a, b)
        for k in range(5):
            one, numpys = kesl.lstsq(a[k], b[k]), np.linalg.lstsq(a[k], b[k], rcond=None)
            assert one.rank == numpys[2] == stack.rank[k] and one.residuals.shape == numpys[1].shape
            tolerance = 1e3 * np.finfo(dtype).eps * np.linalg.cond(a[k].astype("d") if k != 1 else a[0])
            assert np.allclose(one.x, numpys[0], tolerance, tolerance) and np.allclose(stack.x[k], one.x, tolerance, tolerance)
            assert np.allclose(one.residuals, numpys[1], tolerance, tolerance)
            assert np.allclose(one.singular_values, numpys[3], 1e-4, 1e-4)
            assert kesl.lstsq(a[k], b[k, :, 0]).x.shape == (n,)
        if m >= n > 1:
            quick = kesl.lstsq_ex(a, b, method="qr")
            assert quick.info.tolist() == [0, 1, 0, 0, 0] and quick.rank.tolist() == [n, 0, n, n, n]
            assert np.allclose(quick.x[2:], stack.x[2:], 1e-2, 1e-2) and np.isnan(quick.x[1]).all()
    a[2, 0, 0] = np.nan
    assert np.isnan(kesl.lstsq(a, b).x[2]).all() and np.isfinite(kesl.lstsq(a, b).x[3:]).all()
    with pytest.raises(LinAlgError, match="1 of 5"):
        kesl.lstsq(a, b, errors="raise")


def test_cross_of_other_sizes():
    for size in (0, 1, 2, 4):
        with pytest.raises(ValueError, match="3 components"):
            kesl.cross(np.ones((5, size)), np.ones((5, size)))
        assert np.isnan(_ufuncs.cross(np.ones((5, size)), np.ones((5, size)))).all()
    with pytest.raises(ValueError):
        kesl.cross(np.ones(3), 2)


def test_triangles():
    rng = np.random.default_rng(12)
    a = rng.standard_normal((6, 4, 4))
    lower = np.tril(a) + np.tril(a, -1).swapaxes(-1, -2)
    upper = lower.swapaxes(-1, -2) * 0 + np.triu(a) + np.triu(a, 1).swapaxes(-1, -2)
    assert same(kesl.eigvalsh(a), kesl.eigvalsh(lower)) and same(kesl.eigvalsh(a, "U"), kesl.eigvalsh(upper))
    assert same(kesl.eigh(a, UPLO="u").eigenvectors, kesl.eigh(upper).eigenvectors)
    with pytest.raises(ValueError, match="UPLO"):
        kesl.eigh(a, "lower")
    spd = a @ a.swapaxes(-1, -2) + np.eye(4)
    assert same(kesl.cholesky(np.triu(spd), upper=True), kesl.cholesky(np.tril(spd)).swapaxes(-1, -2))
    assert kesl.cholesky_ex(spd, upper=True).info.tolist() == [0] * 6


def test_norm():
    x = np.random.default_rng(13).standard_normal((3, 4, 5))
    for axis in (None, 0, -1, 1, (0, 1), (-1, 0), (1, 2), (2,)):
        for keepdims in (False, True):
            for ord in (None, 2, "fro", 1, np.inf, "nuc", -2):
                try:
                    expected = np.linalg.norm(x, ord, axis, keepdims)
                except ValueError as error:
                    with pytest.raises(ValueError, match=str(error)[:20]):
                        kesl.norm(x, ord, axis, keepdims)
                else:
                    got = kesl.norm(x, ord, axis, keepdims)
                    assert np.shape(got) == np.shape(expected) and np.allclose(got, expected, 1e-14), (axis, ord)
    assert kesl.norm(np.array([3e300, 4e300])) == 5e300 and kesl.norm(np.float32([3e-40, 4e-40])) > 0
    assert kesl.norm(3.0) == 3 and kesl.norm(np.ones(3, "e")).dtype == np.float16


def test_trace():
    a = np.arange(60.0).reshape(3, 4, 5)
    for offset in range(-5, 7):
        assert np.array_equal(kesl.trace(a, offset), np.trace(a, offset, -2, -1)), offset


def test_real_and_complex_eigenvalues():
    turn = np.array([[0.0, 1], [-1, 0]])
    assert kesl.eigvals(np.eye(2)).dtype == float and kesl.eigvals(turn).dtype == complex
    assert kesl.eigvals(np.array([np.eye(2), turn])).dtype == complex
    w, v = kesl.eig(np.array([np.eye(2), np.full((2, 2), np.nan)]))
    assert w.dtype == v.dtype == float and v.flags.c_contiguous and np.isnan(w[1]).all()
    assert kesl.eigvals(np.eye(2, dtype="f"), out=np.empty(2, "F")).dtype == np.complex64


def test_vectors_for_matrices():
    rng = np.random.default_rng(14)
    a, b = rng.standard_normal((3, 3)) + 4 * np.eye(3), rng.standard_normal((5, 3))
    assert np.allclose(kesl.matmul(a, b[0]), a @ b[0]) and np.allclose(kesl.matmul(b[0], a), b[0] @ a)
    assert np.isclose(kesl.matmul(b[0], b[1]), b[0] @ b[1])
    assert np.allclose(kesl.solve(a, b[0]), np.linalg.solve(a, b[0]))
    stack = np.stack([a] * 5)
    assert np.allclose(kesl.solve(stack, b), np.linalg.solve(stack, b)) # of vectors, or of nothing that fits


@pytest.mark.filterwarnings("ignore::PendingDeprecationWarning") # np.matrix
def test_the_short_way_is_the_long_way():
    """Plain arrays go past NumPy's machinery: the same results, in the same shapes and types."""
    rng = np.random.default_rng(15)
    seen = 0
    for name, dtype, loop in itertools.product(names, "fd", [(), (1,), (6,), (0,)]):
        ufunc = getattr(_ufuncs, {"svd": "svd_n", "svdvals": "svdvals_n"}.get(name, name))
        straight = sources(name, rng, loop, 3, 3, dtype)
        for given in (straight, [x[::-1] if loop else x for x in straight]):
            short, long = _ufuncs.quick(ufunc, *given), ufunc(*given)
            assert short is not NotImplemented
            for x, y in zip(short if isinstance(short, tuple) else [short], long if isinstance(long, tuple) else [long]):
                assert type(x) is type(y) and same(x, y)
                seen += 1
    assert seen > 200
    eye = np.eye(3)
    other_types = [eye.astype(">f8")], [eye.astype(int)], [np.matrix(eye)], [eye.tolist()]
    for given in (*other_types, [eye[:2]], [eye, eye], [], [eye[None, None]]):
        assert _ufuncs.quick(_ufuncs.inv, *given) is NotImplemented
    assert _ufuncs.quick(None, eye) is NotImplemented
    assert _ufuncs.quick(_ufuncs.solve, eye, eye.astype("f")) is NotImplemented


def test_no_warnings_and_no_flags(recwarn):
    with np.errstate(all="raise"):
        kesl.inv(np.array([np.zeros((3, 3)), np.full((3, 3), np.nan), np.full((3, 3), 1e308)])[:, None])
        kesl.eig_ex(np.full((3, 40, 40), np.inf))
    assert not recwarn.list


def test_show():
    text = io.StringIO()
    kesl.show(text)
    assert kesl.__version__ in text.getvalue() and kesl.level in text.getvalue()
    assert kesl.level in ("x86-64", "x86-64-v3", "x86-64-v4") and kesl.__version__.count(".") == 2


def test_every_name_is_told():
    for name in kesl.__all__:
        if callable(getattr(kesl, name)):
            assert getattr(kesl, name).__doc__
