#!/usr/bin/python3
"""Ridges and valleys of a brain by kesl: the eigenvalues of the Hessians at all its voxels, in one call.

The largest eigenvalue of the second derivatives is large where the picture has a dark fold, the smallest one is far below zero
where it has a bright ridge. The six derivatives stand in arrays of their own: strides make matrices of them, nothing is copied.
The result is checked by the invariants of all matrices, and against numpy.linalg on a part of them.
"""
import argparse
import gzip
import struct
import subprocess
import sys
import time

import numpy as np

import kesl

HEAD = """
set terminal pngcairo size {width},{height} background '#101418'
set output {picture!r}
set multiplot layout 1,2 margins 0,1,0,1 spacing 0
unset key; unset border; unset tics; unset colorbox
set xrange [-0.5:{x}-0.5]; set yrange [-0.5:{y}-0.5]
"""
SLICE = """
set palette {palette}; set cbrange [{least}:{most}]
plot '-' binary array=({x},{y}) format='%float32' using 1 with image
"""


def read_nifti(path):
    """The volume of a NIfTI-1 file of bytes, as float32, axes z, y, x."""
    try:
        with gzip.open(path) as file:
            content = file.read()
        size, (axes, x, y, z), kind = (struct.unpack_from(f, content, at) for f, at in (("<i", 0), ("<4h", 40), ("<h", 70)))
        if (*size, axes, *kind) != (348, 3, 2):
            raise ValueError("not a NIfTI-1 volume of bytes")
        (begin,) = struct.unpack_from("<f", content, 108)
        return np.frombuffer(content, np.uint8, x * y * z, int(begin)).reshape(z, y, x).astype(np.float32)
    except (OSError, EOFError, ValueError, struct.error) as error:
        sys.exit(f"{path}: {error}")


def smoothed(volume, sigma):
    """A Gaussian along each axis."""
    radius = int(3 * sigma + 0.5)
    weights = np.exp(-0.5 * (np.arange(-radius, radius + 1, dtype=np.float32) / sigma) ** 2)
    for axis in range(3):
        padded = np.pad(volume, [(radius, radius) if a == axis else (0, 0) for a in range(3)], mode="edge")
        parts = (np.take(padded, range(k, k + volume.shape[axis]), axis) * w for k, w in enumerate(weights / weights.sum()))
        volume = sum(parts)
    return volume


def hessians(volume, inside):
    """The second derivatives at the voxels inside, as a stack of symmetric matrices.

    Of a symmetric matrix the lower triangle is read. Its element (i, j) is put into array i + 2 j, so that a step of one row goes
    to the next array and a step of one column to the one behind that: six arrays, in a block of seven.
    """
    block = np.full((7, np.count_nonzero(inside)), np.nan, np.float32)  # array 5 stays empty and is never read
    for i in range(3):
        slope = np.gradient(volume, axis=i)
        for j in range(i + 1):
            block[i + 2 * j] = np.gradient(slope, axis=j)[inside]
    array, element = block.strides
    return block, np.lib.stride_tricks.as_strided(block, (block.shape[1], 3, 3), (element, array, 2 * array), writeable=False)


def check(block, matrices, values):
    """Trace and Frobenius norm of all matrices, and the values of numpy.linalg, in double precision, for one in fifty."""
    xx, yx, zx, yy, zy, _, zz = block.astype(np.float64)
    w = values.astype(np.float64)
    largest = np.abs(w).max(axis=1)
    norm = np.sqrt(xx**2 + yy**2 + zz**2 + 2 * (yx**2 + zx**2 + zy**2))
    exact = np.linalg.eigvalsh(matrices[::50].astype(np.float64))
    errors = {
        "trace": np.abs(xx + yy + zz - w.sum(axis=1)) / largest,
        "norm": np.abs(norm - np.sqrt((w**2).sum(axis=1))) / largest,
        "numpy": np.abs(exact - values[::50]).max(axis=1) / largest[::50],
    }
    for name, error in errors.items():
        print(f"largest difference of the {name:5}: {error.max():.1e} of the largest eigenvalue")
    if not all(error.max() < 2e-6 for error in errors.values()):
        sys.exit("these are not the eigenvalues")


def progress(percent, what):
    print(f"{what}: {percent} %", file=sys.stderr, flush=True)


def seconds(work):
    start = time.perf_counter()
    work()
    return time.perf_counter() - start


def draw(picture, brain, strength):
    """Two slices side by side, three pixels for each voxel."""
    y, x = brain.shape
    limit = np.abs(strength).max() / 2
    colours = "defined (-1 '#39a0ff', 0 '#101418', 1 '#ff9a2e')"
    commands = HEAD.format(picture=picture, width=6 * x, height=3 * y, x=x, y=y).encode()
    for data, palette, least, most in (brain, "gray", 0, brain.max()), (strength, colours, -limit, limit):
        commands += SLICE.format(palette=palette, least=least, most=most, x=x, y=y).encode() + data.tobytes()
    subprocess.run(["gnuplot"], input=commands, check=True)
    print(f"picture: {picture}, {6 * x} by {3 * y} pixels")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("volume", help="NIfTI-1 file, gzipped")
    parser.add_argument("-o", dest="picture", default="ridge_filter.png", help="PNG file to write")
    parser.add_argument("--slices", type=int, help="take only so many slices, from the middle")
    options = parser.parse_args()

    volume = read_nifti(options.volume)
    if options.slices:
        skip = (len(volume) - options.slices) // 2
        volume = volume[skip : skip + options.slices]
    inside = volume > 0
    progress(0, "smoothing")
    smooth = smoothed(volume, 1.2)
    progress(40, "second derivatives")
    block, matrices = hessians(smooth, inside)
    progress(70, "eigenvalues")

    values, info = kesl.eigvalsh_ex(matrices)
    print(f"{len(matrices)} voxels inside of {volume.size}; {np.count_nonzero(info)} of their matrices failed")
    few = matrices[: len(matrices) // 50]
    rate = len(matrices) / seconds(lambda: kesl.eigvalsh(matrices)) / 1e6
    slow = len(few) / seconds(lambda: np.linalg.eigvalsh(few)) / 1e6
    print(f"millions a second: kesl {rate:.3g}, numpy.linalg {slow:.3g}")
    progress(80, "checking")
    check(block, matrices, values)

    strength = np.zeros(volume.shape, np.float32)  # above 0 a dark fold, below it a bright ridge
    strength[inside] = np.where(values[:, 2] > -values[:, 0], values[:, 2].clip(0), values[:, 0].clip(None, 0))
    middle = len(volume) // 2
    draw(options.picture, volume[middle], strength[middle])


if __name__ == "__main__":
    main()
