"""The end-to-end project mapping_large: single-marker analysis of two
traits on 240 lines and 150 markers (5% missing genotypes), three
environments of three replications with missing cells and lines missing
in a whole environment, values with four decimals.  Its .rsm and .qsm come
from the float32 model of mapping_reference.py; the percentages of the
Mean pass divide by the variance of the line means summed environments
outer, as the phenotypic variance is formed.  The log, console, .coe, .mtp
and .sta are the program's own: the smaller projects pin their layout, and
the .sta agrees with tests/phenotype/reference/expected_sta.py in every
field to 2.5e-4 relative (float64 against the stated 32-bit sums, which
lose digits around a mean of 50).  Run with /usr/bin/python3 from this
folder; the seed is the one whose shares stand clear of rounding edges."""
import sys

import numpy as np

from float32 import f32
import mapping_reference as ref
from project_files import TABLE_HEADING, input_file, par_file, write

CASE = "mapping_large"
N, M, ENVS, REPS, LOD = 240, 150, 3, 3, "3.0"
rng = np.random.default_rng(int(sys.argv[1]) if len(sys.argv) > 1 else 11)
MARKERS = ["Chr%d_%03d" % (1 + m // 50, m % 50) for m in range(M)]
GENOTYPES = ["".join(rng.choice(list("A" * 19 + "B" * 19 + "XX"), N)) for _ in range(M)]
QTL = {"Yield": {10: 0.9, 75: -0.6, 140: 0.4}, "Height": {30: 2.5}}

rows, values = [], {}
for name, effects in QTL.items():
    for e in range(ENVS):
        for r in range(REPS):
            row = []
            for l in range(N):
                y = 50.0 + 3 * e + rng.normal(0, 1.3) + sum(a * ref.code_value(GENOTYPES[m][l]) for m, a in effects.items())
                row.append("NA" if rng.random() < 0.04 or (l % 37 == 5 and e == 1) else "%.4f" % y)
            values[(name, e, r)] = row
            rows.append((name, row))

traits = list(QTL)
pheno = [[[[f32(-9999.0) if values[(t, e, r)][l] == "NA" else f32(values[(t, e, r)][l]) for r in range(REPS)]
           for e in range(ENVS)] for t in traits] for l in range(N)]


def envs_outer_variance(t):
    """The line means across environments summed environments outer."""
    means = []
    with np.errstate(all="ignore"):
        for cells in pheno:
            order = [(e, r) for r in range(REPS) for e in range(ENVS)]
            filled = ref.fill_line([cells[t][e][r] for e, r in order])
            if filled is None:
                continue
            cube = dict(zip(order, filled))
            s = f32(0.0)
            for e in range(ENVS):
                for r in range(REPS):
                    s = s + cube[(e, r)]
            means.append(s / f32(ENVS * REPS))
    return ref.column_variance(means)


write(CASE, "input", "TOV.mio", ["study.txt", "study.par"])
write(CASE, "input", "study.txt", input_file(MARKERS, GENOTYPES, len(traits), rows, ENVS, REPS))
write(CASE, "input", "study.par", par_file(1, LOD, 0, "2.5", "0.01"))
rsm, qsm = [TABLE_HEADING], [TABLE_HEADING]
for t, name in enumerate(traits):
    for env in range(1, ENVS + 2):
        kept, y = ref.line_means(pheno, t, env, ENVS, REPS)
        var_p = ref.column_variance(y) if env <= ENVS else envs_outer_variance(t)
        rows_codes = [[GENOTYPES[m][l - 1] for l in kept] for m in range(M)]
        records = [ref.two_group_test(codes, y) for codes in rows_codes]
        full, selected, shares, rsq = ref.marker_tables(t + 1, name, env, ENVS, list(range(1, M + 1)), MARKERS, records,
                                                       var_p, f32(LOD), rows_codes, y)
        print(name, env, len(kept), "lines, flagged", [s.split()[4] for s in selected])
        rsm += full
        qsm += selected
write(CASE, "expected", "study.rsm", rsm)
write(CASE, "expected", "study.qsm", qsm)
