"""Expected bits of the missing-cell fill and the line means, in one environment
and across environments in both orders of the sum, on 300 lines with many
decimals.  Writes ../data/exact_line_values.txt; run with /usr/bin/python3."""
import os
import sys

import numpy as np

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "mapping", "reference"))
from bit_cases import BitCases  # noqa: E402
from float32 import MISSING, f32  # noqa: E402
from mapping_reference import filled_cells, line_means  # noqa: E402

L, E, R = 300, 3, 2
rng = np.random.default_rng(41)
cells = [[[f32(round(v, 5)) for v in rng.normal(40.0 + e, 6.0, R)] for e in range(E)]
         for _ in range(L)]
for line in range(0, L, 7):
    cells[line][1][0] = MISSING
for line in range(3, L, 23):
    cells[line][0] = [MISSING] * R  # empty in environment 1 only
cells[50] = [[MISSING] * R for _ in range(E)]  # empty everywhere
cells[60][2][1] = f32("nan")  # spoils the filled cells of its line
out = BitCases()

# Environment 2 by itself: value (line, rep), reps fastest in the data file.
pheno = [[c] for c in cells]  # one trait
kept, means, _ = line_means(pheno, 0, 2, E, R)
filled = [v for _, c in filled_cells(cells, [(1, r) for r in range(R)]) for v in c.values()]
out.case("one_environment", values=[v for c in cells for v in c[1]], kept=kept, filled=filled,
         means=means)

# All environments: the fill sums replications outer, environments inner.
order = [(e, r) for r in range(R) for e in range(E)]
kept, reps_outer, envs_outer = line_means(pheno, 0, E + 1, E, R)
out.case("across_environments", values=[v for c in cells for e in c for v in e], kept=kept,
         filled=[c[k] for _, c in filled_cells(cells, order) for k in sorted(order)],
         means_reps_outer=reps_outer, means_envs_outer=envs_outer)
out.write(os.path.join(os.path.dirname(__file__), "..", "data", "exact_line_values.txt"))
