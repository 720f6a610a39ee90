#!/usr/bin/env python3
"""Derives the asymmetric-unit box of every tabulated setting and writes it into data/settings.tsv.

Usage: derive_asu.py VELMORIA_PROGRAM [--check]

The operators of each setting come from the program's listing of the group of the setting's Hall
symbol (velmoria --group --hall HALL).  A box, six bounds in 24ths of the cell edges, is an asymmetric
unit when every point of a grid of the cell has an image under the group inside the box, the
boundaries included.  For each setting the box is chosen as follows:

1. The rows whose boxes were entered by hand (GIVEN below) keep them.
2. Every other setting first tries the box of the reference setting of its number (the row that
   the number alone selects) carried over by a permutation of the axes with signs; the first of
   these that covers the cell with the smallest volume is kept when its volume times the general
   multiplicity is no more than that of the reference box (so that a centred cell does not keep
   the box of its primitive companion) and no more than four.
3. Otherwise the box is searched among bounds in multiples of 1/8 and 1/6 of the cell edge: the
   covering box of smallest volume, on a tie the one with most bounds on eighths, then most lower
   bounds at 0.

Coverage is tested on a grid of 1/12 first (a quick rejection), then on grids of 1/24 and 1/48.
With --check the derived boxes are compared with the file instead of written.
"""
import itertools
import re
import subprocess
import sys
from fractions import Fraction
from pathlib import Path

import numpy as np

root = Path(__file__).resolve().parent.parent
settings_path = root / "data" / "settings.tsv"

# Boxes entered by hand, by symbol and setting tag.
GIVEN = {("P 1", ""), ("P -1", ""), ("I 2/M", "b3"), ("P 2/N", "b2"), ("F D -3 C", "2"),
         ("I M -3 M", ""), ("I A -3 D", "")}


def parse_operator(text):
    """The rotation and the translation in 24ths of an operator written as x,y,z."""
    rot = np.zeros((3, 3), dtype=int)
    tr = np.zeros(3, dtype=int)
    for i, comp in enumerate(text.split(",")):
        for sign, num, var in re.findall(r"([+-]?)(\d+(?:/\d+)?)?([xyz]?)", comp):
            if not num and not var:
                continue
            s = -1 if sign == "-" else 1
            if var:
                rot[i, "xyz".index(var)] = s * (int(num) if num else 1)
            else:
                tr[i] = s * Fraction(num) * 24
    return rot, tr % 24


def operators(program, hall):
    out = subprocess.run([program, "--group", "--hall", hall], capture_output=True, text=True).stdout
    written = re.search(r"Hall Symbol: (.*)", out).group(1).strip()
    assert written == hall, (hall, written)
    ops = [parse_operator(m) for m in re.findall(r"=> SYMM\(\s*\d+\): (\S+)", out)]
    return np.array([o[0] for o in ops]), np.array([o[1] for o in ops])


class Coverage:
    """The points of a grid of n steps in the cell, sorted into their orbits under the group."""

    def __init__(self, rots, trs, n):
        self.n = n
        g = np.indices((n, n, n)).reshape(3, -1)
        label = np.arange(n ** 3)
        assert not (trs * n % 24).any(), "translations off the grid"
        for rot, tr in zip(rots, trs):
            image = (rot @ g + (tr * n // 24)[:, None]) % n
            label = np.minimum(label, (image[0] * n + image[1]) * n + image[2])
        self.order = np.argsort(label, kind="stable")
        sorted_label = label[self.order]
        self.starts = np.flatnonzero(np.r_[True, sorted_label[1:] != sorted_label[:-1]])
        self.masks = {}

    def axis_mask(self, lo, hi):
        """Which grid coordinates c/n lie in [lo/24, hi/24] modulo 1."""
        key = (lo, hi)
        if key not in self.masks:
            n = self.n
            v = np.arange(-2 * n, 3 * n) * 24
            inside = (v >= lo * n) & (v <= hi * n)
            self.masks[key] = inside.reshape(5, n).any(axis=0)
        return self.masks[key]

    def covers(self, boxes):
        """For each box, whether every orbit has a point inside it."""
        mx = np.array([self.axis_mask(b[0], b[3]) for b in boxes])
        my = np.array([self.axis_mask(b[1], b[4]) for b in boxes])
        mz = np.array([self.axis_mask(b[2], b[5]) for b in boxes])
        inside = (mx[:, :, None, None] & my[:, None, :, None] & mz[:, None, None, :])
        inside = inside.reshape(len(boxes), -1)[:, self.order]
        return np.logical_or.reduceat(inside, self.starts, axis=1).all(axis=1)


def volume(box):
    return (box[3] - box[0]) * (box[4] - box[1]) * (box[5] - box[2])


def signed_permutations():
    for perm in itertools.permutations(range(3)):
        for signs in itertools.product((1, -1), repeat=3):
            yield perm, signs


def carried_over(box, perm, signs):
    """The box of new axis i from old axis perm[i], reversed when signs[i] is -1."""
    out = [0] * 6
    for i in range(3):
        lo, hi = box[perm[i]], box[perm[i] + 3]
        out[i], out[i + 3] = (lo, hi) if signs[i] > 0 else (-hi, -lo)
    return out


def candidate_boxes():
    """All boxes of the search, in the order of preference."""
    intervals = set()
    for step in (3, 4):
        for lo in range(-6, 13, step):
            for length in range(step, 25, step):
                intervals.add((lo, lo + length))
    iv = np.array(sorted(intervals))
    ix, iy, iz = np.meshgrid(np.arange(len(iv)), np.arange(len(iv)), np.arange(len(iv)),
                             indexing="ij")
    boxes = np.stack([iv[ix.ravel(), 0], iv[iy.ravel(), 0], iv[iz.ravel(), 0],
                      iv[ix.ravel(), 1], iv[iy.ravel(), 1], iv[iz.ravel(), 1]], axis=1)
    vol = (boxes[:, 3] - boxes[:, 0]) * (boxes[:, 4] - boxes[:, 1]) * (boxes[:, 5] - boxes[:, 2])
    eighths = (boxes % 3 == 0).sum(axis=1)
    zeros = (boxes[:, :3] == 0).sum(axis=1)
    # np.lexsort sorts by the last key first; the box itself breaks the remaining ties.
    keys = [boxes[:, i] for i in range(5, -1, -1)] + [-zeros, -eighths, vol]
    boxes = boxes[np.lexsort(keys)]
    return boxes, np.sort(vol)


def covers_all(grids, box):
    return all(g.covers([box])[0] for g in grids)


def derive(rots, trs, reference, limit, candidates):
    """reference: the reference box and its volume times its general multiplicity, or None."""
    grids = [Coverage(rots, trs, n) for n in (12, 24, 48)]
    if reference is not None:
        box, weight = reference
        tried = [carried_over(box, p, s) for p, s in signed_permutations()]
        good = [b for b in tried if covers_all(grids, b)]
        if good:
            best = min(good, key=volume)
            if volume(best) <= limit and volume(best) * len(rots) <= weight:
                return best
    boxes, vols = candidates
    start = int(np.searchsorted(vols, 24 ** 3 // len(rots)))
    batch = 4096
    for first in range(start, len(boxes), batch):
        chunk = boxes[first:first + batch]
        for box in chunk[grids[0].covers(chunk)]:
            if covers_all(grids[1:], box):
                return [int(v) for v in box]
    raise SystemExit("no box found")


def main():
    program = sys.argv[1]
    check = "--check" in sys.argv[2:]
    lines = settings_path.read_text().splitlines()
    rows = [l.split("\t") for l in lines[1:]]
    boxes = candidate_boxes()
    # The reference row of a number: the one the number alone selects (no ":" in the symbol).
    reference_row = {}
    for k, r in enumerate(rows):
        if ":" not in r[1]:
            reference_row.setdefault(r[0], k)
    order = sorted(range(len(rows)), key=lambda k: (reference_row[rows[k][0]] != k, k))
    derived = {}
    weight = {}
    for k in order:
        n, hm, hall, laue, pg, asu, tag = rows[k]
        rots, trs = operators(program, hall)
        if (hm, tag) in GIVEN:
            derived[k] = [int(v) for v in asu.split()]
        else:
            r = reference_row[n]
            ref = None if r == k else (derived[r], weight[r])
            limit = 4 * 24 ** 3 // len(rots)
            derived[k] = derive(rots, trs, ref, limit, boxes)
        weight[k] = volume(derived[k]) * len(rots)
    out = [lines[0]]
    for k, r in enumerate(rows):
        r[5] = " ".join(str(v) for v in derived[k])
        out.append("\t".join(r))
    text = "\n".join(out) + "\n"
    if check:
        sys.exit(0 if text == settings_path.read_text() else 1)
    settings_path.write_text(text)


if __name__ == "__main__":
    main()
