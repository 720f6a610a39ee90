#!/usr/bin/env python3
"""Times velmoria.irreps from Python against the same look-ups through the command line.

For each of the 230 groups (by number, with the generators of the tables) and each k of a
set (Gamma, (1/2,0,0), (0,0,1/2), (1/2,1/2,1/2) and a general point), the representations of
the little group are looked up once in this process through the module, and once by running
`velmoria --irreps N kx ky kz` as a process.  Prints the two totals.

    PYTHONPATH=build/python /usr/bin/python3 bench/irreps_python.py build/velmoria

A benchmark, not a test: nothing here is checked beyond both ways succeeding.
"""

import subprocess
import sys
import time

import velmoria

K_POINTS = [("0", "0", "0"), ("1/2", "0", "0"), ("0", "0", "1/2"), ("1/2", "1/2", "1/2"),
            ("0.13", "0.21", "0.37")]


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: irreps_python.py PATH/TO/velmoria")
    binary = sys.argv[1]
    cases = [(str(n), k) for n in range(1, 231) for k in K_POINTS]

    start = time.perf_counter()
    failed_python = 0
    representations = 0
    for group, k in cases:
        try:
            representations += len(velmoria.irreps(group, k)["dims"])
        except velmoria.InputError:
            failed_python += 1
    python_seconds = time.perf_counter() - start

    start = time.perf_counter()
    failed_cli = 0
    for group, k in cases:
        run = subprocess.run([binary, "--irreps", group, *k], capture_output=True)
        failed_cli += run.returncode != 0
    cli_seconds = time.perf_counter() - start

    print(f"{len(cases)} look-ups (230 groups x {len(K_POINTS)} k), {representations} "
          f"representations")
    print(f"velmoria.irreps from Python: {python_seconds:8.2f} s  "
          f"({1e3 * python_seconds / len(cases):.2f} ms each, {failed_python} failed)")
    print(f"velmoria --irreps processes: {cli_seconds:8.2f} s  "
          f"({1e3 * cli_seconds / len(cases):.2f} ms each, {failed_cli} failed)")


if __name__ == "__main__":
    main()
