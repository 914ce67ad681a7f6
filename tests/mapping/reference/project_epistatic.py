"""The end-to-end project mapping_epistatic: RSTEP-LRT epistatic mapping
alone, two traits in two environments, one replication.

- "Yield" carries an additive effect at E1 and additive-by-additive
  effects of E3 with E6 and of E4 with E7; the stepwise selection (additive PIN 0.01) takes
  E1 and no other marker, so the pairs with E1 get its slope back and the
  others are tested on the residual.  The selection is followed in float32
  sweeps, so the fit is the program's to the bit.
- "Noise" carries no effect: an empty model, pairs tested on the values.
- E2 and E5 have missing codes; line 4 has no value in environment 2.
- Many pairs have their LODaa bounded by their LODtotal.

Writes input/ and the expected .rice, .qice and .stp."""
import sys

import numpy as np

from float32 import f32
import mapping_reference as ref
from project_files import input_file, par_file, two_traits, write

CASE = "mapping_epistatic"
SEED = int(sys.argv[1]) if len(sys.argv) > 1 else 6
PIN, POUT = 0.01, 0.02
EPI_LOD = 2.0
rng = np.random.default_rng(SEED)
N, M, ENVS = 60, 7, 2
MARKERS = ["E%d" % (m + 1) for m in range(M)]
GENOTYPES = ["".join(rng.choice(list("AAAAABBBBBX" if m in (1, 4) else "AB"), N)) for m in range(M)]
code = lambda m, l: ref.code_value(GENOTYPES[m][l])

rows, pheno = two_traits(rng, N, ENVS, 20, 0.6,
                         lambda l: 0.9 * code(0, l) + 1.1 * code(2, l) * code(5, l) + 0.7 * code(3, l) * code(6, l), 3)

write(CASE, "input", "TOV.mio", ["study.txt", "study.par"])
write(CASE, "input", "study.txt", input_file(MARKERS, GENOTYPES, 2, rows, ENVS, 1))
write(CASE, "input", "study.par", par_file(0, "3.0", 0, "3.0", "%g" % PIN, epi=1, epi_lod="%.1f" % EPI_LOD))

heading = ("TraitID".rjust(12) + " " + "TraitName".rjust(19) + "Environment".rjust(12) + "MarkerID1".rjust(12) + " " +
           "MarkerName1".rjust(35) + "MarkerID2".rjust(12) + " " + "MarkerName2".rjust(35) +
           "".join(t.rjust(12) for t in ("LODaa", "LODtotal", "PVEaa(%)", "PVEtotal(%)", "Add1", "Add2", "AddbyAdd",
                                         "M(Q1Q1Q2Q2)", "M(Q1Q1q2q2)", "M(q1q1Q2Q2)", "M(q1q1q2q2)")))
rice, qice, stp = [heading], [heading], []
bounded = 0
for t, name in enumerate(["Yield", "Noise"]):
    for env in range(1, ENVS + 2):
        kept, y = ref.line_means(pheno, t, env, ENVS, 1)
        var_p = ref.column_variance(y)
        rows_codes = [[GENOTYPES[m][l - 1] for l in kept] for m in range(M)]
        model, slopes, intercept, adj_r2, margin = ref.stepwise32(rows_codes, y, PIN, POUT)
        print(name, env, "model", [m + 1 for m in model], "p margin", margin)
        assert model == ([0] if name == "Yield" else []) and margin > 1.1
        model64, _, _, _, _ = ref.stepwise(rows_codes, y, PIN, POUT)
        assert model64 == model
        stp.append("TraitID".rjust(12) + " " + "TraitName".rjust(19) + "Environment".rjust(12) +
                   "".join("%12d" % (m + 1) for m in model) + "Intercept".rjust(12) + "R-square".rjust(12))
        stp.append(ref.place(t + 1, name, env, ENVS) + "".join(ref.fixed(b) for b in slopes + [intercept, adj_r2]))

        # The fit, then each pair on the residual with the terms of its own
        # markers put back, the first marker's before the second's.
        b = dict(zip(model, slopes))
        fit = ref.model_fit(b, kept, code)
        records = []
        for i in range(M):
            for j in range(i + 1, M):
                adj = [y[k] - fit[k] for k in range(len(kept))]
                for m in (i, j):
                    if m in b:
                        adj = [adj[k] + b[m] * f32(code(m, l - 1)) for k, l in enumerate(kept)]
                record = ref.four_group_test(rows_codes[i], rows_codes[j], adj)
                record["Pair"] = (i, j)
                bounded += record["LOD"][0] == record["LOD"][1] and record["LOD"][0] > 0
                records.append(record)
        full, selected, shares, rsq = ref.pair_tables(t + 1, name, env, ENVS, list(range(1, M + 1)), MARKERS, records,
                                                      var_p, EPI_LOD, rows_codes, y)
        print("  flagged", [r.split()[3] + "x" + r.split()[5] for r in selected], "PVEtotal sum",
              sum(float(s) for s in shares), "100 RSq", 100 * rsq)
        # The selected PVEtotal share out R-square among the flagged pairs.
        assert abs(sum(float(s) for s in shares) - 100 * rsq) < 1e-3
        rice += full
        qice += selected
print("pairs with LODaa bounded by LODtotal:", bounded)
assert bounded > 0

for ext, lines in (("rice", rice), ("qice", qice), ("stp", stp)):
    write(CASE, "expected", "study." + ext, lines)
