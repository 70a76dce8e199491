#!/usr/bin/python3
"""Kalman filters for all satellites in orbit by kesl: one step of all filters is a handful of calls.

Each satellite starts at its place in the catalogue, known to some kilometre; its position is then measured once a minute, to a
hundred metres. Some covariances are spoilt on purpose: `info` tells which and why, and nobody else notices. The filters are checked
by numpy.linalg in another form of the filter, and by statistics: their errors must be as large as they say themselves.
"""
import argparse
import subprocess
import sys
import time

import numpy as np

import kesl

EARTH = 3.986004418e14  # gravity, in m^3/s^2
STEP = 60.0  # seconds from one measurement to the next
START = np.array([800.0, 3000.0, 800.0, 3.0, 1.0, 1.0])  # m and m/s, outward, forward and across
NOISE = 100.0  # of a measured coordinate, in m

PLOT = """
set terminal pngcairo size 1000,400 font ',10'
set output {picture!r}
set multiplot layout 1,2
set title 'Position of {count} satellites, root of the mean square'
set xlabel 'minutes'; set ylabel 'metres'; set logscale y; set yrange [10:]
plot '$errors' using 1:2 with linespoints pt 7 ps 0.6 title 'error', '' using 1:3 with lines lw 2 title 'the filter says'
unset logscale
set title 'Squared error by the covariance, at the end'
set xlabel 'e^T P^{{-1}} e'; set ylabel 'share of the satellites'; set xrange [0:25]; set yrange [0:]
plot '$histogram' using 1:2 with boxes fs solid 0.4 title 'found', x * x * exp(-x / 2) / 16 * 0.5 lw 2 title 'chi squared, 6 degrees'
"""


def read_catalogue(path):
    """Inclination, node, eccentricity, perigee, mean anomaly (radians) and mean motion (radians a second) of each satellite."""
    with open(path, encoding="ascii") as file:
        lines = [(number, line) for number, line in enumerate(file, 1) if line.startswith("2 ")]
    rows = []
    for number, line in lines:
        try:
            angles = [float(line[begin : begin + 8]) for begin in (8, 17, 34, 43)]
            rows.append([*np.radians(angles), float("0." + line[26:33]), float(line[52:63]) * 2 * np.pi / 86400])
        except ValueError as error:
            sys.exit(f"{path}, line {number}: {error}")
    if not rows:
        sys.exit(f"{path}: no two-line elements")
    inclination, node, perigee, anomaly, eccentricity, motion = np.array(rows).T
    return inclination, node, eccentricity, perigee, anomaly, motion


def states(inclination, node, eccentricity, perigee, anomaly, motion):
    """Positions and velocities, (count, 6), in metres and metres a second."""
    angle = anomaly + eccentricity * np.sin(anomaly)
    for _ in range(50):  # Kepler's equation, by Newton
        angle -= (angle - eccentricity * np.sin(angle) - anomaly) / (1 - eccentricity * np.cos(angle))
    axis = np.cbrt(EARTH / motion**2)
    minor = np.sqrt(1 - eccentricity**2)
    speed = axis * motion / (1 - eccentricity * np.cos(angle))
    plane = np.zeros((len(axis), 3, 2))  # position and velocity in the plane of the orbit
    plane[:, 0] = np.stack([axis * (np.cos(angle) - eccentricity), -speed * np.sin(angle)], axis=1)
    plane[:, 1] = np.stack([axis * minor * np.sin(angle), speed * minor * np.cos(angle)], axis=1)
    turned = kesl.matmul(turn(2, node), kesl.matmul(turn(0, inclination), kesl.matmul(turn(2, perigee), plane)))
    return turned.transpose(0, 2, 1).reshape(-1, 6)


def turn(axis, angle):
    """Rotations around an axis."""
    result = np.zeros((len(angle), 3, 3))
    i, j = (axis + 1) % 3, (axis + 2) % 3
    result[:, axis, axis] = 1
    result[:, i, i] = result[:, j, j] = np.cos(angle)
    result[:, j, i] = np.sin(angle)
    result[:, i, j] = -result[:, j, i]
    return result


def start_covariances(x):
    """Errors of START along each satellite's own directions."""
    outward = x[:, :3] / kesl.norm(x[:, :3], axis=-1)[:, None]
    across = kesl.cross(x[:, :3], x[:, 3:])
    across /= kesl.norm(across, axis=-1)[:, None]
    own = np.stack([outward, kesl.cross(across, outward), across], axis=2)
    axes = np.zeros((len(x), 6, 6))
    axes[:, :3, :3] = axes[:, 3:, 3:] = own
    return kesl.matmul(axes * START**2, axes.transpose(0, 2, 1))


def derivative(y):
    """Of states and their derivatives by the first state, side by side in (count, 6, 1 + 6)."""
    position = y[:, :3, 0]
    distance = kesl.norm(position, axis=-1)[:, None, None]
    pull = EARTH / distance**3
    gradient = np.zeros((len(y), 6, 6))
    gradient[:, :3, 3:] = np.eye(3)
    gradient[:, 3:, :3] = pull * (3 * position[:, :, None] * position[:, None, :] / distance**2 - np.eye(3))
    result = kesl.matmul(gradient, y)
    result[:, :3, 0] = y[:, 3:, 0]
    result[:, 3:, 0] = -pull[:, :, 0] * position
    return result


def propagated(x):
    """States one step later and their derivatives by those now, by Runge and Kutta."""
    y = np.concatenate([x[:, :, None], np.broadcast_to(np.eye(6), (len(x), 6, 6))], axis=2)
    k1 = derivative(y)
    k2 = derivative(y + STEP / 2 * k1)
    k3 = derivative(y + STEP / 2 * k2)
    k4 = derivative(y + STEP * k3)
    y = y + STEP / 6 * (k1 + 2 * k2 + 2 * k3 + k4)
    return y[:, :, 0], y[:, :, 1:]


def updated(x, p, measured, linalg=kesl, matmul=kesl.matmul):
    """The filter's step for a measured position: gain K, then state and covariance in Joseph's form."""
    innovation = p[:, :3, :3] + NOISE**2 * np.eye(3)
    gain = linalg.solve(innovation, p[:, :3]).transpose(0, 2, 1)
    rest = np.broadcast_to(np.eye(6), p.shape).copy()
    rest[:, :, :3] -= gain
    new = matmul(matmul(rest, p), rest.transpose(0, 2, 1)) + NOISE**2 * matmul(gain, gain.transpose(0, 2, 1))
    return x + matmul(gain, (measured - x[:, :3])[:, :, None])[:, :, 0], new


def squared_error(error, p):
    """e^T P^-1 e, by the Cholesky factor of P."""
    scaled = kesl.solve(kesl.cholesky(p), error[:, :, None])[:, :, 0]
    return kesl.vecdot(scaled, scaled)


def spoil(p):
    """A copy with bad covariances here and there; their numbers, ascending."""
    p = p.copy()
    bad = np.linspace(5, len(p) - 5, 6).astype(int)
    p[bad[0], 4, 1] = np.nan
    p[bad[1]] = 0
    p[bad[2], 2, 2] *= -1
    p[bad[3], 5, 5] = 0
    p[bad[4], 5, 0] = p[bad[4], 0, 5] = 1e9
    p[bad[5], 3, 3] = np.inf
    return p, bad


def check_info(x, p, measured):
    """Spoils some covariances, lets info find them, and looks whether the others notice."""
    spoilt, bad = spoil(p)
    _, info = kesl.cholesky_ex(spoilt)
    print(f"{len(bad)} covariances spoilt, {np.count_nonzero(info)} found:")
    for k in np.flatnonzero(info):
        print(f"  satellite {k:5}: info {info[k]:2}, " +
              ("a NaN or an infinity" if info[k] < 0 else f"the minor of order {info[k]} is not positive definite"))
    if not np.array_equal(np.flatnonzero(info), bad):
        sys.exit("not those that were spoilt")
    others = np.delete(np.arange(len(p)), bad)
    for apart, together in zip(updated(x, p, measured), updated(x, spoilt, measured)):
        if not np.array_equal(apart[others], together[others]):
            sys.exit("the others noticed")
    print("the steps of all others are the same to the last bit")


def check_form(x, p, measured):
    """The same step by inverses, which is the filter's information form, in numpy.linalg."""
    information = np.linalg.inv(p)
    information[:, :3, :3] += np.eye(3) / NOISE**2
    new = np.linalg.inv(information)
    gain = new[:, :, :3] / NOISE**2
    state = x + (gain @ (measured - x[:, :3])[:, :, None])[:, :, 0]
    x, p = updated(x, p, measured)
    sigma = np.sqrt(np.diagonal(new, axis1=1, axis2=2))
    state_error = (np.abs(state - x) / sigma).max()
    p_error = (np.abs(new - p) / (sigma[:, :, None] * sigma[:, None, :])).max()
    print(f"information form by numpy.linalg: states to {state_error:.1e}, covariances to {p_error:.1e} of the deviations")
    if not (state_error < 1e-6 and p_error < 1e-6):
        sys.exit("this is not the same filter")


def seconds(work):
    best = np.inf
    for _ in range(3):
        start = time.perf_counter()
        work()
        best = min(best, time.perf_counter() - start)
    return best


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("catalogue", help="two-line elements")
    parser.add_argument("-o", dest="picture", default="orbit_tracking.png", help="PNG file to write")
    parser.add_argument("--every", type=int, default=1, help="take only one satellite in so many")
    parser.add_argument("--minutes", type=int, default=30, help="length of the track")
    options = parser.parse_args()

    random = np.random.default_rng(1)
    truth = states(*read_catalogue(options.catalogue))[:: options.every]
    count = len(truth)
    p = start_covariances(truth)
    x = truth + kesl.matmul(kesl.cholesky(p), random.standard_normal((count, 6, 1)))[:, :, 0]
    print(f"{count} satellites")
    track, spoken = [], time.monotonic() + 1
    for minute in range(1, options.minutes + 1):
        truth, _ = propagated(truth)
        x, transition = propagated(x)
        p = kesl.matmul(kesl.matmul(transition, p), transition.transpose(0, 2, 1))
        measured = truth[:, :3] + NOISE * random.standard_normal((count, 3))
        if minute == 1:
            check_info(x, p, measured)
            check_form(x, p, measured)
            fast = seconds(lambda: updated(x, p, measured)) * 1e3
            slow = seconds(lambda: updated(x, p, measured, np.linalg, np.matmul)) * 1e3
            print(f"milliseconds for the step of all filters: kesl {fast:.3g}, numpy.linalg {slow:.3g}")
        x, p = updated(x, p, measured)
        error = kesl.norm(x[:, :3] - truth[:, :3], axis=-1)
        track.append([minute, np.sqrt((error**2).mean()), np.sqrt(kesl.trace(p[:, :3, :3]).mean())])
        if time.monotonic() > spoken:
            print(f"tracking: {100 * minute // options.minutes} %", file=sys.stderr, flush=True)
            spoken = time.monotonic() + 1

    squared = squared_error(x - truth, p)
    mean, spread = squared.mean(), np.sqrt(12 / count)
    print(f"squared error by the covariance: mean {mean:.3f}, should be 6 to {3 * spread:.2f}")
    if not abs(mean - 6) < 4 * spread:
        sys.exit("the filters do not know their errors")

    shares, edges = np.histogram(squared, np.arange(0, 25.5, 0.5))
    blocks = {"$errors": track, "$histogram": np.stack([edges[:-1] + 0.25, shares / count], axis=1)}
    script = "".join(f"{name} << END\n" + "".join(" ".join(map(str, row)) + "\n" for row in rows) + "END\n"
                     for name, rows in blocks.items())
    plot = PLOT.format(picture=options.picture, count=count).replace("'$errors'", "$errors").replace("'$histogram'", "$histogram")
    subprocess.run(["gnuplot"], input=script + plot, text=True, check=True)
    print(f"picture: {options.picture}")


if __name__ == "__main__":
    main()
