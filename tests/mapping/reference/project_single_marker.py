"""The end-to-end project mapping_single_marker: single-marker analysis of
one trait in one environment with two replications.

- Lines 15 and 16 have no phenotype; marker M3 is 'B' only there, so it is
  monomorphic among the lines with data and gets no row.
- Line 3 misses its second replication, which takes the first one's value.
- The LOD threshold of the PAR file is the shortest decimal of M2's LOD in
  32 bits, so M2 stands exactly at the threshold and is not significant.
- NumEnvs = 1: the "Mean" pass repeats environment 1.

Writes input/ and the expected .rsm and .qsm; the other expected files
(log, console, .coe, .mtp, .sta) are checked separately."""
import numpy as np

from float32 import f32
import mapping_reference as ref
from project_files import TABLE_HEADING, input_file, par_file, write

CASE = "mapping_single_marker"
MARKERS = ["M1", "M2", "M3", "M4", "M5", "M6"]
GENOTYPES = [
    "AAAAAAAABBBBBBBB",
    "ABABABABABABABAB",
    "AAAAAAAAAAAAAABB",
    "AABBAABBAABBAABB",
    "AXBAXBABBXAABABX",
    "AAAABBBBAAAABBBB",
]
N = 16
import sys
rng = np.random.default_rng(int(sys.argv[1]) if len(sys.argv) > 1 else 82)
code = lambda m, l: ref.code_value(GENOTYPES[m][l])
values = []
for rep in range(2):
    row = []
    for l in range(N):
        y = 10 + 1.5 * code(0, l) + 0.9 * code(5, l) + 0.7 * code(1, l) + rng.normal(0, 0.6)
        row.append("%.1f" % y)
    values.append(row)
values[0][14] = values[0][15] = values[1][14] = values[1][15] = "NA"
values[1][2] = "NA"

pheno = [[[[f32(-9999.0) if values[r][l] == "NA" else f32(float(values[r][l])) for r in range(2)]]] for l in range(N)]
kept, y = ref.line_means(pheno, 0, 1, 1, 2)
var_p = ref.column_variance(y)
kept_markers = list(range(1, 7))
rows_codes = [[GENOTYPES[m - 1][l - 1] for l in kept] for m in kept_markers]
records = [ref.two_group_test(codes, y) for codes in rows_codes]
for m, r in zip(MARKERS, records):
    print(m, float(r["LOD"]), r["Mean"])
lods = [r["LOD"] for r in records]
assert lods[1] >= 0.5 and lods[5] > lods[1] + 0.02 and lods[0] > lods[5] and max(lods[3], lods[4]) < lods[1]
threshold = str(records[1]["LOD"])  # numpy's shortest round-trip form
assert f32(threshold) == records[1]["LOD"]
print("threshold", threshold)

write(CASE, "input", "TOV.mio", ["study.txt", "study.par"])
write(CASE, "input", "study.txt", input_file(MARKERS, GENOTYPES, 1, [("Yield", values[0]), ("Yield", values[1])], 1, 2))
write(CASE, "input", "study.par", par_file(1, threshold, 0, "2.5", "0.01"))

full_rows, selected_rows = [TABLE_HEADING], [TABLE_HEADING]
for env in (1, 2):
    full, selected, shares, rsq = ref.marker_tables(1, "Yield", env, 1, kept_markers, MARKERS, records, var_p,
                                                   f32(threshold), rows_codes, y)
    print("env", env, "RSq", rsq, "shares", shares, "sum", sum(shares))
    assert abs(sum(shares) - 100 * rsq) < 1e-4
    full_rows += full
    selected_rows += selected
write(CASE, "expected", "study.rsm", full_rows)
write(CASE, "expected", "study.qsm", selected_rows)
