"""kesl among threads, processes and other libraries' arrays."""
import copy
import multiprocessing
import pickle
import sys
import threading
import time

import kesl
import numpy as np
import pytest
from kesl import _ufuncs
from operations import operations, results, same, sources


@pytest.fixture
def stack():
    a = np.random.default_rng(1).standard_normal((40000, 4, 4))
    return a + a.swapaxes(1, 2)


@pytest.fixture(autouse=True)
def automatic_threads():
    yield
    kesl.set_threads(0)


def test_number_of_threads(stack):
    automatic = kesl.get_threads()
    given = []
    for threads in (1, 2, 5):
        kesl.set_threads(threads)
        assert kesl.get_threads() == threads
        given.append(kesl.eigh_ex(stack))
    assert all(same(x, y) for other in given[1:] for x, y in zip(given[0], other))
    kesl.set_threads(0)
    assert kesl.get_threads() == automatic
    for wrong in (-1, 10**6):
        with pytest.raises(ValueError, match=str(wrong)):
            kesl.set_threads(wrong)
    for wrong in (1.5, "2", 2**40):
        with pytest.raises((TypeError, OverflowError)):
            kesl.set_threads(wrong)


@pytest.mark.parametrize("shape", [(-1, 4, 4), (-1, 1, 4, 4)]) # past NumPy's machinery, and through it
def test_python_runs_meanwhile(stack, shape):
    """Another thread counts on while a call is under way. It gets the interpreter only from who gives it away."""
    many = np.concatenate([stack] * 8).reshape(shape)
    counted, done = [], threading.Event()

    def count():
        while not done.is_set():
            counted.append(0)
            time.sleep(0)

    interval = sys.getswitchinterval()
    sys.setswitchinterval(1000)
    thread = threading.Thread(target=count)
    thread.start()
    try:
        for _ in range(20):
            before = len(counted)
            kesl.eigh(many)
            if len(counted) > before:
                break
        else:
            raise AssertionError("the interpreter is kept")
    finally:
        sys.setswitchinterval(interval)
        done.set()
        thread.join()


def test_calls_from_many_threads(stack):
    expected = kesl.eigh(stack)
    wrong = []

    def call():
        for _ in range(3):
            got = kesl.eigh(stack)
            if not all(same(x, y) for x, y in zip(got, expected)):
                wrong.append(got)

    threads = [threading.Thread(target=call) for _ in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert not wrong


def eigenvalues(a):
    return kesl.eigvalsh(a), kesl.get_threads()


@pytest.mark.parametrize("method", ["fork", "spawn"])
def test_processes(stack, method):
    kesl.set_threads(2)
    expected = kesl.eigvalsh(stack) # threads of this process are there before it forks
    with multiprocessing.get_context(method).Pool(2) as pool:
        parts = pool.map(eigenvalues, np.array_split(stack, 4))
    assert same(np.concatenate([w for w, _ in parts]), expected)


def test_pickles():
    for name in dir(_ufuncs):
        ufunc = getattr(_ufuncs, name)
        if isinstance(ufunc, np.ufunc):
            assert pickle.loads(pickle.dumps(ufunc)) is ufunc and copy.deepcopy(ufunc) is ufunc
            assert ufunc.__doc__ and ufunc.types[0].startswith("f") and ufunc.types[1].startswith("d")
    function = pickle.loads(pickle.dumps(kesl.eigh))
    assert function is kesl.eigh and pickle.loads(pickle.dumps(kesl.eigh(np.eye(2)))).eigenvalues.tolist() == [1, 1]


# ------------------------------------------------------------------------------------------------------------------ Dask


@pytest.mark.parametrize("name", list(operations))
def test_dask(name):
    """Ufuncs pass through: lazy results, the same bits as without Dask."""
    array = pytest.importorskip("dask.array")
    given = sources(name, np.random.default_rng(2), (10,), 5, 4)
    got = results(name, [array.from_array(x, chunks=(3,) + x.shape[1:]) for x in given])
    for x, y in zip(got, results(name, given)):
        assert isinstance(x, array.Array) and x.shape == y.shape
        assert np.array_equal(x.compute(scheduler="sync"), y)


def test_dask_infos_and_types():
    array = pytest.importorskip("dask.array")
    a = np.zeros((6, 3, 3), "i2")
    a[::2] = np.eye(3)
    lazy = array.from_array(a, chunks=(2, 3, 3))
    got = kesl.inv_ex(lazy)
    assert np.array_equal(got.info.compute(scheduler="sync"), [0, 1] * 3)
    assert got.result.compute(scheduler="sync").dtype == np.float64
    with pytest.raises(np.linalg.LinAlgError, match=r"3 of 6 objects failed: \[1\]"):
        kesl.inv(lazy, errors="raise")
    big = array.from_array(np.stack([2 * np.eye(40)] * 4), chunks=(1, 40, 40))
    assert same(kesl.inv(big).compute(scheduler="sync"), np.stack([np.eye(40) / 2] * 4))


def test_dask_workers(stack):
    """Ufuncs travel to other processes and back."""
    distributed = pytest.importorskip("distributed")
    array = pytest.importorskip("dask.array")
    with distributed.LocalCluster(2, threads_per_worker=1, processes=True, dashboard_address=None) as cluster:
        with distributed.Client(cluster):
            w, v = kesl.eigh(array.from_array(stack, chunks=(10000, 4, 4)))
            assert all(same(x.compute(), y) for x, y in zip((w, v), kesl.eigh(stack)))
