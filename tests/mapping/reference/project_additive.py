"""The end-to-end project mapping_additive: single-marker analysis and
RSTEP-LRT additive mapping of two traits in two environments, one
replication.

- "Yield" carries effects at M1 and M5; the stepwise selection (PIN 0.01)
  takes exactly these two in every pass, with every deciding p-value well
  away from its limit.  The selection is followed in float32 sweeps, so
  the coefficients, the fit and the adjusted phenotypes are the program's
  to the bit; a float64 least-squares selection confirms the model.
- "Noise" carries no effect: no marker comes near PIN, and each .stp block
  of it has no term, the intercept the mean and R-square 0.0.
- Line 4 has no value in environment 2: it leaves that pass and stays in
  the "Mean" pass with its environment-1 value.

Writes input/ and the expected .rsm, .qsm, .ric, .qic, .stp."""
import sys

import numpy as np

from float32 import f32
import mapping_reference as ref
from project_files import TABLE_HEADING, input_file, par_file, two_traits, write

CASE = "mapping_additive"
SEED = int(sys.argv[1]) if len(sys.argv) > 1 else 24
PIN, POUT = 0.01, 0.02
SMA_LOD, ADD_LOD = 2.0, 2.0
rng = np.random.default_rng(SEED)
N, M, ENVS = 30, 8, 2
MARKERS = ["M%d" % (m + 1) for m in range(M)]
GENOTYPES = ["".join(rng.choice(list("AAAAABBBBBX" if m in (2, 6) else "AB"), N)) for m in range(M)]
code = lambda m, l: ref.code_value(GENOTYPES[m][l])

rows, pheno = two_traits(rng, N, ENVS, 10, 0.7, lambda l: 1.2 * code(0, l) + 0.8 * code(4, l), 2)

write(CASE, "input", "TOV.mio", ["study.txt", "study.par"])
write(CASE, "input", "study.txt", input_file(MARKERS, GENOTYPES, 2, rows, ENVS, 1))
write(CASE, "input", "study.par", par_file(1, "%.1f" % SMA_LOD, 1, "%.1f" % ADD_LOD, "%g" % PIN))

rsm, qsm, ric, qic, stp = [TABLE_HEADING], [TABLE_HEADING], [TABLE_HEADING], [TABLE_HEADING], []
for t, name in enumerate(["Yield", "Noise"]):
    for env in range(1, ENVS + 2):
        kept, y = ref.line_means(pheno, t, env, ENVS, 1)
        var_p = ref.column_variance(y)
        rows_codes = [[GENOTYPES[m][l - 1] for l in kept] for m in range(M)]
        ids = list(range(1, M + 1))
        records = [ref.two_group_test(codes, y) for codes in rows_codes]
        full, selected, shares, rsq = ref.marker_tables(t + 1, name, env, ENVS, ids, MARKERS, records, var_p, SMA_LOD,
                                                       rows_codes, y)
        rsm += full
        qsm += selected

        model, slopes, intercept, adj_r2, margin = ref.stepwise32(rows_codes, y, PIN, POUT)
        print(name, env, "model", [m + 1 for m in model], "slopes", slopes, "adjR2", adj_r2, "p margin", margin)
        assert model == ([0, 4] if name == "Yield" else []) and margin > 1.1
        # The 64-bit least-squares selection agrees.
        model64, slopes64, intercept64, adj64, _ = ref.stepwise(rows_codes, y, PIN, POUT)
        assert model64 == model and np.allclose(slopes64 + [intercept64, adj64], slopes + [intercept, adj_r2], 1e-5)
        heading = "TraitID".rjust(12) + " " + "TraitName".rjust(19) + "Environment".rjust(12)
        heading += "".join("%12d" % (m + 1) for m in model) + "Intercept".rjust(12) + "R-square".rjust(12)
        stp.append(heading)
        stp.append(ref.place(t + 1, name, env, ENVS) + "".join(ref.fixed(b) for b in slopes + [intercept, adj_r2]))

        # The fit of the model, then each marker on the residual with its
        # own term put back.
        b = dict(zip(model, slopes))
        fit = ref.model_fit(b, kept, code)
        base = [y[i] - fit[i] for i in range(len(kept))]
        additive = []
        for m in range(M):
            adj = base if m not in model else [base[i] + b[m] * f32(code(m, l - 1)) for i, l in enumerate(kept)]
            additive.append(ref.two_group_test(rows_codes[m], adj))
        full, selected, shares, rsq = ref.marker_tables(t + 1, name, env, ENVS, ids, MARKERS, additive, var_p,
                                                       ADD_LOD, rows_codes, y)
        print("  additive flagged", [r.split()[3] for r in selected], "shares", [repr(s) for s in shares], "100 RSq", 100 * rsq)
        ric += full
        qic += selected

for ext, lines in (("rsm", rsm), ("qsm", qsm), ("ric", ric), ("qic", qic), ("stp", stp)):
    write(CASE, "expected", "study." + ext, lines)
