"""Expected bits of the line values (the missing-cell fill) and the line
means, in one environment and across environments in both orders of the
sum, on 300 lines with many decimals, in float32 (see
tests/mapping/reference/float32.py).  Writes ../data/exact_line_values.txt;
run with /usr/bin/python3."""
import os
import sys

import numpy as np

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "mapping", "reference"))
from bit_cases import BitCases  # noqa: E402
from float32 import f32  # noqa: E402
from mapping_reference import MISSING, fill_line  # noqa: E402

L, E, R = 300, 3, 2
rng = np.random.default_rng(41)
cells = [[[f32(round(v, 5)) for v in rng.normal(40.0 + e, 6.0, R)] for e in range(E)] for _ in range(L)]
for line in range(0, L, 7):
    cells[line][1][0] = MISSING
for line in range(3, L, 23):
    cells[line][0] = [MISSING] * R  # empty in environment 1 only
cells[50] = [[MISSING] * R for _ in range(E)]  # empty everywhere
cells[60][2][1] = f32("nan")  # spoils the filled cells of its line


def total(values):
    s = f32(0.0)
    for v in values:
        s = s + v
    return s


out = BitCases()
with np.errstate(all="ignore"):
    # Environment 2 by itself: value (line, rep), reps fastest in the data file.
    kept, values, means = [], [], []
    for line in range(L):
        filled = fill_line(cells[line][1])
        if filled is not None:
            kept.append(line + 1)
            values += filled
            means.append(total(filled) / f32(R))
    out.case("one_environment", values=[v for c in cells for v in c[1]], kept=kept, filled=values, means=means)

    # All environments: the fill sums replications outer, environments inner.
    kept, filled_cells, outer_reps, outer_envs = [], [], [], []
    for line in range(L):
        order = [(e, r) for r in range(R) for e in range(E)]
        filled = fill_line([cells[line][e][r] for e, r in order])
        if filled is None:
            continue
        cube = {(e, r): v for (e, r), v in zip(order, filled)}
        kept.append(line + 1)
        filled_cells += [cube[(e, r)] for e in range(E) for r in range(R)]
        outer_reps.append(total(cube[(e, r)] for r in range(R) for e in range(E)) / f32(R * E))
        outer_envs.append(total(cube[(e, r)] for e in range(E) for r in range(R)) / f32(R * E))
    out.case("across_environments", values=[v for c in cells for e in c for v in e], kept=kept, filled=filled_cells,
             means_reps_outer=outer_reps, means_envs_outer=outer_envs)
out.write(os.path.join(os.path.dirname(__file__), "..", "data", "exact_line_values.txt"))
