"""Writes the end-to-end mapping projects: input/ and the expected tables of the
float32 model (log, console, .coe, .mtp and .sta are the program's own, pinned
by smaller cases).  Run with /usr/bin/python3 from this folder.

- mapping_single_marker: M3 is 'B' only at lines 15 and 16, which have no
  phenotype, so it gets no row.  The LOD threshold is M2's LOD to the
  shortest decimal, so M2 stands exactly at it and is not flagged.
- mapping_additive: "Yield" carries effects at M1 and M5, which the
  selection takes in every pass, "Noise" none.
- mapping_epistatic: "Yield" carries an additive effect at E1, which the
  selection takes alone, and additive-by-additive effects of E3 with E6 and
  of E4 with E7; E2 and E5 have missing codes.
- mapping_large: 240 lines, 150 markers, three environments of three
  replications with missing cells and lines missing in a whole environment.
  The program's .sta agrees with ../../phenotype/reference/expected_sta.py to
  2.5e-4 relative."""
import numpy as np

from float32 import f32
import mapping_reference as ref
from projects import (PLACE_HEADING, TABLE_HEADING, Project, columns, marker_heading, par_file,
                      two_traits)


def selection(p, planted, tables):
    """The stepwise selection of a pass, which must take the planted markers
    with the estimates of least squares in float64."""
    model, slopes, intercept, adj_r2, margin = ref.stepwise32(p.rows_codes, p.y, 0.01, 0.02)
    assert model == planted and margin > 1.1, (p.name, p.env, model, margin)
    n, k = len(p.y), len(model)
    x = [[ref.code_value(c) for c in p.rows_codes[m]] for m in model]
    beta, rsq = ref.least_squares(x, p.y)
    adj = max(100.0 * (1.0 - (1.0 - rsq) * (n - 1) / (n - k - 1)), 0.0) if model else 0.0
    assert np.allclose(list(beta[1:]) + [beta[0], adj], slopes + [intercept, adj_r2], 1e-5)
    tables["stp"] += ref.stepwise_rows(p.place, [m + 1 for m in model], slopes, intercept, adj_r2)
    return dict(zip(model, slopes))


def code(m, l):  # of the project being written
    return ref.code_value(genotypes[m][l])


# mapping_single_marker
genotypes = ["AAAAAAAABBBBBBBB", "ABABABABABABABAB", "AAAAAAAAAAAAAABB", "AABBAABBAABBAABB",
             "AXBAXBABBXAABABX", "AAAABBBBAAAABBBB"]
rng = np.random.default_rng(82)
values = [["%.1f" % (10 + 1.5 * code(0, l) + 0.9 * code(5, l) + 0.7 * code(1, l) +
                     rng.normal(0, 0.6)) for l in range(16)] for _ in range(2)]
values[0][14] = values[0][15] = values[1][14] = values[1][15] = values[1][2] = "NA"
project = Project("mapping_single_marker", ["M%d" % m for m in range(1, 7)], genotypes,
                  [("Yield", values[0]), ("Yield", values[1])], 1, 2)
tables = {"rsm": [TABLE_HEADING], "qsm": [TABLE_HEADING]}
for p in project.passes():
    records = [ref.two_group_test(codes, p.y) for codes in p.rows_codes]
    lods = [r["LOD"] for r in records]
    assert lods[1] >= 0.5 and lods[5] > lods[1] + 0.02 and lods[0] > lods[5]
    assert max(lods[3], lods[4]) < lods[1]
    threshold = str(lods[1])  # numpy's shortest round-trip form
    assert f32(threshold) == lods[1]
    ref.flagged_tables(p, records, threshold, tables["rsm"], tables["qsm"])
project.write_inputs(par_file(1, threshold, 0, "2.5", "0.01"))
project.write_tables(tables)

# mapping_additive
rng = np.random.default_rng(24)
genotypes = ["".join(rng.choice(list("AAAAABBBBBX" if m in (2, 6) else "AB"), 30))
             for m in range(8)]
rows = two_traits(rng, 30, 2, 10, 0.7, lambda l: 1.2 * code(0, l) + 0.8 * code(4, l), 2)
project = Project("mapping_additive", ["M%d" % m for m in range(1, 9)], genotypes, rows, 2, 1)
project.write_inputs(par_file(1, "2.0", 1, "2.0", "0.01"))
tables = {ext: [TABLE_HEADING] for ext in ("rsm", "qsm", "ric", "qic")}
tables["stp"] = []
for p in project.passes():
    records = [ref.two_group_test(codes, p.y) for codes in p.rows_codes]
    ref.flagged_tables(p, records, 2.0, tables["rsm"], tables["qsm"])
    slopes = selection(p, [0, 4] if p.name == "Yield" else [], tables)
    records = ref.additive_records(p.rows_codes, p.y, slopes)
    ref.flagged_tables(p, records, 2.0, tables["ric"], tables["qic"])
project.write_tables(tables)

# mapping_epistatic: each pair on the residual with the terms of its own
# markers put back, the first marker's first.
rng = np.random.default_rng(6)
genotypes = ["".join(rng.choice(list("AAAAABBBBBX" if m in (1, 4) else "AB"), 60))
             for m in range(7)]
rows = two_traits(rng, 60, 2, 20, 0.6, lambda l: (0.9 * code(0, l) + 1.1 * code(2, l) * code(5, l) +
                                                  0.7 * code(3, l) * code(6, l)), 3)
project = Project("mapping_epistatic", ["E%d" % m for m in range(1, 8)], genotypes, rows, 2, 1)
project.write_inputs(par_file(0, "3.0", 0, "3.0", "0.01", epi=1, epi_lod="2.0"))
heading = PLACE_HEADING + marker_heading("1") + marker_heading("2") + columns(
    "LODaa", "LODtotal", "PVEaa(%)", "PVEtotal(%)", "Add1", "Add2", "AddbyAdd",
    "M(Q1Q1Q2Q2)", "M(Q1Q1q2q2)", "M(q1q1Q2Q2)", "M(q1q1q2q2)")
tables = {"rice": [heading], "qice": [heading], "stp": []}
bounded = 0
for p in project.passes():
    slopes = selection(p, [0] if p.name == "Yield" else [], tables)
    fit = ref.model_fit(slopes, p.rows_codes)
    records = []
    for i in range(7):
        for j in range(i + 1, 7):
            adj = ref.residual(p.y, fit, slopes, p.rows_codes, (i, j))
            record = ref.four_group_test(p.rows_codes[i], p.rows_codes[j], adj)
            records.append(dict(record, Pair=(i, j)))
            bounded += records[-1]["LOD"][0] == records[-1]["LOD"][1] > 0
    ref.flagged_tables(p, records, 2.0, tables["rice"], tables["qice"])
assert bounded > 0
project.write_tables(tables)

# mapping_large
N, M, ENVS, REPS = 240, 150, 3, 3
rng = np.random.default_rng(11)
genotypes = ["".join(rng.choice(list("A" * 19 + "B" * 19 + "XX"), N)) for _ in range(M)]
rows = []
for name, effects in (("Yield", {10: 0.9, 75: -0.6, 140: 0.4}), ("Height", {30: 2.5})):
    for e in range(ENVS):
        for r in range(REPS):
            row = []
            for l in range(N):
                y = 50.0 + 3 * e + rng.normal(0, 1.3) + sum(
                    a * code(m, l) for m, a in effects.items())
                row.append("NA" if rng.random() < 0.04 or (l % 37 == 5 and e == 1) else "%.4f" % y)
            rows.append((name, row))
markers = ["Chr%d_%03d" % (1 + m // 50, m % 50) for m in range(M)]
project = Project("mapping_large", markers, genotypes, rows, ENVS, REPS)
project.write_inputs(par_file(1, "3.0", 0, "2.5", "0.01"))
tables = {"rsm": [TABLE_HEADING], "qsm": [TABLE_HEADING]}
for p in project.passes():
    records = [ref.two_group_test(codes, p.y) for codes in p.rows_codes]
    ref.flagged_tables(p, records, "3.0", tables["rsm"], tables["qsm"])
project.write_tables(tables)
