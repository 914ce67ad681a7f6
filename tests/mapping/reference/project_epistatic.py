"""The end-to-end project mapping_epistatic: RSTEP-LRT epistatic mapping alone,
two traits in two environments, one replication.

- "Yield" carries an additive effect at E1 and additive-by-additive effects of
  E3 with E6 and of E4 with E7; the stepwise selection (additive PIN 0.01)
  takes E1 alone, so the pairs with E1 get its slope back and the others are
  tested on the residual.  The selection is followed in float32 sweeps, so
  the fit is the program's to the bit.
- "Noise" carries no effect: an empty model, pairs tested on the values.
- E2 and E5 have missing codes; line 4 has no value in environment 2.
- Many pairs have their LODaa bounded by their LODtotal."""
import sys

import numpy as np

from float32 import f32
import mapping_reference as ref
from projects import PLACE_HEADING, Project, columns, marker_heading, par_file, two_traits

PIN, POUT, LOD = 0.01, 0.02, 2.0
rng = np.random.default_rng(int(sys.argv[1]) if len(sys.argv) > 1 else 6)
N, M = 60, 7
GENOTYPES = ["".join(rng.choice(list("AAAAABBBBBX" if m in (1, 4) else "AB"), N))
             for m in range(M)]
code = lambda m, l: ref.code_value(GENOTYPES[m][l])  # noqa: E731
rows = two_traits(rng, N, 2, 20, 0.6, lambda l: (0.9 * code(0, l) + 1.1 * code(2, l) * code(5, l) +
                                                 0.7 * code(3, l) * code(6, l)), 3)
project = Project("mapping_epistatic", ["E%d" % (m + 1) for m in range(M)], GENOTYPES, rows, 2, 1)
project.write_inputs(par_file(0, "3.0", 0, "3.0", "0.01", epi=1, epi_lod="2.0"))

heading = PLACE_HEADING + marker_heading("1") + marker_heading("2") + columns(
    "LODaa", "LODtotal", "PVEaa(%)", "PVEtotal(%)", "Add1", "Add2", "AddbyAdd",
    "M(Q1Q1Q2Q2)", "M(Q1Q1q2q2)", "M(q1q1Q2Q2)", "M(q1q1q2q2)")
tables = {"rice": [heading], "qice": [heading], "stp": []}
bounded = 0
for p in project.passes():
    model, slopes, intercept, adj_r2, margin = ref.stepwise32(p.rows_codes, p.y, PIN, POUT)
    print(p.name, p.env, "model", [m + 1 for m in model], "p margin", margin)
    assert model == ([0] if p.name == "Yield" else []) and margin > 1.1
    ref.check_selection(p.rows_codes, p.y, model, slopes, intercept, adj_r2)
    tables["stp"] += ref.stepwise_rows(p.place, [m + 1 for m in model], slopes, intercept, adj_r2)

    # Each pair on the residual with the terms of its own markers put back,
    # the first marker's before the second's.
    b = dict(zip(model, slopes))
    fit = ref.model_fit(b, p.rows_codes)
    records = []
    for i in range(M):
        for j in range(i + 1, M):
            adj = [v - f for v, f in zip(p.y, fit)]
            for m in (i, j):
                if m in b:
                    adj = [a + b[m] * f32(ref.code_value(c)) for a, c in zip(adj, p.rows_codes[m])]
            records.append(dict(ref.four_group_test(p.rows_codes[i], p.rows_codes[j], adj), Pair=(i, j)))
            bounded += records[-1]["LOD"][0] == records[-1]["LOD"][1] > 0
    full, selected, shares, rsq = ref.pair_tables(p, records, LOD)
    print("  flagged", [r.split()[3] + "x" + r.split()[5] for r in selected], "100 RSq", 100 * rsq)
    # The selected PVEtotal share out R-square among the flagged pairs.
    assert abs(sum(float(s) for s in shares) - 100 * rsq) < 1e-3
    tables["rice"] += full
    tables["qice"] += selected
print("pairs with LODaa bounded by LODtotal:", bounded)
assert bounded > 0
project.write_tables(tables)
