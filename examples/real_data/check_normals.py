#!/usr/bin/python3
"""check_normals.py RECORDS: finds the normals again that point_normals found, by numpy.linalg in double precision."""
import sys

import numpy as np

points = np.fromfile(sys.argv[1], np.dtype([("file", "f4", 3), ("covariance", "f4", (3, 3)), ("normal", "f4", 3)]))
covariance, normal = points["covariance"].astype(float), points["normal"].astype(float)
values, vectors = np.linalg.eigh(covariance)


def degrees(a, b):
    return np.degrees(np.arctan2(np.linalg.norm(np.cross(a, b), axis=1), np.abs((a * b).sum(axis=1))))


# Where two eigenvalues nearly meet a rounding error turns the vector; what it leaves of A v = w v stays small all the same. Both that
# and the length are judged as LAPACK does: by the order and the rounding unit of a float, below 50.
unit = 3 * np.finfo(np.float32).eps
left = np.linalg.norm((covariance @ normal[:, :, None])[:, :, 0] - values[:, :1] * normal, axis=1) / values[:, 2] / unit
length = np.abs((normal**2).sum(axis=1) - 1) / unit
found, numpy = degrees(normal, points["file"]), degrees(vectors[:, :, 0], points["file"])
print(f"{len(points)} points, degrees to the file: mean {found.mean():.4g}, by numpy.linalg {numpy.mean():.4g}")
print(f"largest ratios: |A v - w v| / (n |A| eps) {left.max():.2g}, |v v' - 1| / (n eps) {length.max():.2g}")
if not (len(points) and left.max() < 50 and length.max() < 50 and abs(found.mean() - numpy.mean()) < 1e-3):
    sys.exit("these are not the normals")
