"""The end-to-end project mapping_additive: single-marker analysis and
RSTEP-LRT additive mapping of two traits in two environments, one replication.

- "Yield" carries effects at M1 and M5; the stepwise selection (PIN 0.01)
  takes exactly these two in every pass, with every deciding p-value well
  away from its limit.  The selection is followed in float32 sweeps, so the
  coefficients, the fit and the adjusted phenotypes are the program's to the
  bit; least squares in float64 confirms the estimates.
- "Noise" carries no effect: each .stp block of it has no term, the intercept
  the mean and R-square 0.0.
- Line 4 has no value in environment 2: it leaves that pass and stays in the
  "Mean" pass with its environment-1 value."""
import sys

import numpy as np

import mapping_reference as ref
from projects import TABLE_HEADING, Project, par_file, two_traits

PIN, POUT, LOD = 0.01, 0.02, 2.0
rng = np.random.default_rng(int(sys.argv[1]) if len(sys.argv) > 1 else 24)
N, M = 30, 8
GENOTYPES = ["".join(rng.choice(list("AAAAABBBBBX" if m in (2, 6) else "AB"), N))
             for m in range(M)]
code = lambda m, l: ref.code_value(GENOTYPES[m][l])  # noqa: E731
rows = two_traits(rng, N, 2, 10, 0.7, lambda l: 1.2 * code(0, l) + 0.8 * code(4, l), 2)
project = Project("mapping_additive", ["M%d" % (m + 1) for m in range(M)], GENOTYPES, rows, 2, 1)
project.write_inputs(par_file(1, "2.0", 1, "2.0", "0.01"))

tables = {ext: [TABLE_HEADING] for ext in ("rsm", "qsm", "ric", "qic")}
tables["stp"] = []
for p in project.passes():
    records = [ref.two_group_test(codes, p.y) for codes in p.rows_codes]
    full, selected, _, _ = ref.marker_tables(p, records, LOD)
    tables["rsm"] += full
    tables["qsm"] += selected

    model, slopes, intercept, adj_r2, margin = ref.stepwise32(p.rows_codes, p.y, PIN, POUT)
    print(p.name, p.env, "model", [m + 1 for m in model], "p margin", margin)
    assert model == ([0, 4] if p.name == "Yield" else []) and margin > 1.1
    ref.check_selection(p.rows_codes, p.y, model, slopes, intercept, adj_r2)
    tables["stp"] += ref.stepwise_rows(p.place, [m + 1 for m in model], slopes, intercept, adj_r2)
    records = ref.additive_records(p.rows_codes, p.y, dict(zip(model, slopes)))
    full, selected, shares, rsq = ref.marker_tables(p, records, LOD)
    print("  additive flagged", [r.split()[3] for r in selected], "100 RSq", 100 * rsq)
    tables["ric"] += full
    tables["qic"] += selected
project.write_tables(tables)
