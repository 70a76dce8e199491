#!/usr/bin/python3
"""Principal stresses of two million tensors by Dask: two worker processes make the chunks of the stack and diagonalise them.

    dask_tensors.py [COUNT]

The results are the same, to the last bit, as those of this process alone.
"""
import os
import sys

import dask
import dask.array
import kesl
import numpy as np
from distributed import Client, LocalCluster, wait

CHUNK, BAD = 100_000, 77_777


def tensors(first, last):
    """Tensors in units from a micrometre to a megametre; one holds NaN."""
    k = np.arange(first, last)
    a = np.sin(np.multiply.outer(k + 1.0, np.arange(1.0, 10))).reshape(-1, 3, 3)
    a = (a + a.swapaxes(1, 2)) * 10.0 ** (k % 13 - 6)[:, None, None]
    a[k == BAD] = np.nan
    return a


def chunk(block_info):
    return tensors(*block_info[None]["array-location"][0])


def main():
    count = int(sys.argv[1]) if len(sys.argv) > 1 else 2_000_000
    chunks = tuple(min(CHUNK, count - first) for first in range(0, count, CHUNK))
    stack = dask.array.map_blocks(chunk, chunks=(chunks, 3, 3), dtype=float, meta=np.empty((0, 0, 0)))

    # Nothing is computed yet: arrays of Dask pass through kesl's functions as they pass through NumPy's.
    values, info = kesl.eigvalsh_ex(stack)
    shear = (values[:, 2] - values[:, 0]) / 2

    with LocalCluster(2, threads_per_worker=1, dashboard_address=None) as cluster, Client(cluster) as client:
        workers = set(client.run(os.getpid).values())
        parts = dask.persist(values, info, shear)
        wait(parts)
        holders = {holder for keepers in client.who_has(parts[0]).values() for holder in keepers}
        values, info, shear = dask.compute(*parts)

    alone = kesl.eigvalsh_ex(tensors(0, count))
    if len(holders) != 2 or os.getpid() in workers:
        sys.exit("the work was not shared by two processes")
    if values.tobytes() != alone.result.tobytes() or info.tobytes() != alone.info.tobytes():
        sys.exit("the results differ from those of one process")
    print(f"{count} tensors in {len(chunks)} chunks by {len(holders)} processes: the bits of one process")
    print(f"{np.count_nonzero(info)} failed (info of {np.flatnonzero(info)} is {info[info != 0]}), "
          f"greatest shear {np.nanmax(shear):.3g}")


if __name__ == "__main__":
    main()
