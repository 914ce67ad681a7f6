"""The end-to-end project mapping_large: single-marker analysis of two traits
on 240 lines and 150 markers (5% missing genotypes), three environments of
three replications with missing cells and lines missing in a whole
environment, values with four decimals.  Writes the inputs and the .rsm and
.qsm; the percentages of the Mean pass divide by the variance of the line
means summed environments outer, as the phenotypic variance is formed.  The
other expected files are the program's own: the smaller projects pin their
layout, and the .sta agrees with tests/phenotype/reference/expected_sta.py
in every field to 2.5e-4 relative (float64 against the 32-bit sums, which
lose digits around a mean of 50).  The seed is one whose shares stand clear
of rounding edges."""
import sys

import numpy as np

from float32 import f32, total
import mapping_reference as ref
from projects import TABLE_HEADING, Project, par_file

N, M, ENVS, REPS, LOD = 240, 150, 3, 3, "3.0"
rng = np.random.default_rng(int(sys.argv[1]) if len(sys.argv) > 1 else 11)
GENOTYPES = ["".join(rng.choice(list("A" * 19 + "B" * 19 + "XX"), N)) for _ in range(M)]
rows = []
for name, effects in (("Yield", {10: 0.9, 75: -0.6, 140: 0.4}), ("Height", {30: 2.5})):
    for e in range(ENVS):
        for r in range(REPS):
            row = []
            for l in range(N):
                y = 50.0 + 3 * e + rng.normal(0, 1.3) + sum(
                    a * ref.code_value(GENOTYPES[m][l]) for m, a in effects.items())
                row.append("NA" if rng.random() < 0.04 or (l % 37 == 5 and e == 1) else "%.4f" % y)
            rows.append((name, row))
markers = ["Chr%d_%03d" % (1 + m // 50, m % 50) for m in range(M)]
project = Project("mapping_large", markers, GENOTYPES, rows, ENVS, REPS)
project.write_inputs(par_file(1, LOD, 0, "2.5", "0.01"))


def envs_outer_variance(t):
    """The variance of the line means across environments summed
    environments outer."""
    order = [(e, r) for r in range(REPS) for e in range(ENVS)]
    means = []
    for cells in project.pheno:
        filled = ref.fill_line([cells[t][e][r] for e, r in order])
        if filled is not None:
            cube = dict(zip(order, filled))
            means.append(total(cube[(e, r)] for e in range(ENVS) for r in range(REPS)) /
                         f32(ENVS * REPS))
    return ref.column_variance(means)


tables = {"rsm": [TABLE_HEADING], "qsm": [TABLE_HEADING]}
for p in project.passes():
    if p.env > ENVS:
        p.var_p = envs_outer_variance(p.trait - 1)
    records = [ref.two_group_test(codes, p.y) for codes in p.rows_codes]
    full, selected, _, _ = ref.marker_tables(p, records, LOD)
    print(p.name, p.env, len(p.kept), "lines, flagged", [s.split()[4] for s in selected])
    tables["rsm"] += full
    tables["qsm"] += selected
project.write_tables(tables)
