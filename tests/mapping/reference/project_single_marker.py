"""The end-to-end project mapping_single_marker: single-marker analysis of one
trait in one environment with two replications.

- Lines 15 and 16 have no phenotype; marker M3 is 'B' only there, so it is
  monomorphic among the lines with data and gets no row.
- Line 3 misses its second replication, which takes the first one's value.
- The LOD threshold of the PAR file is the shortest decimal of M2's LOD in
  32 bits, so M2 stands exactly at the threshold and is not significant.
- NumEnvs = 1: the "Mean" pass repeats environment 1."""
import sys

import numpy as np

from float32 import f32
import mapping_reference as ref
from projects import TABLE_HEADING, Project, par_file

GENOTYPES = ["AAAAAAAABBBBBBBB", "ABABABABABABABAB", "AAAAAAAAAAAAAABB", "AABBAABBAABBAABB",
             "AXBAXBABBXAABABX", "AAAABBBBAAAABBBB"]
rng = np.random.default_rng(int(sys.argv[1]) if len(sys.argv) > 1 else 82)
code = lambda m, l: ref.code_value(GENOTYPES[m][l])  # noqa: E731
values = [["%.1f" % (10 + 1.5 * code(0, l) + 0.9 * code(5, l) + 0.7 * code(1, l) +
                     rng.normal(0, 0.6)) for l in range(16)] for _ in range(2)]
values[0][14] = values[0][15] = values[1][14] = values[1][15] = values[1][2] = "NA"
project = Project("mapping_single_marker", ["M%d" % m for m in range(1, 7)], GENOTYPES,
                  [("Yield", values[0]), ("Yield", values[1])], 1, 2)

tables = {"rsm": [TABLE_HEADING], "qsm": [TABLE_HEADING]}
for p in project.passes():
    records = [ref.two_group_test(codes, p.y) for codes in p.rows_codes]
    lods = [r["LOD"] for r in records]
    assert lods[1] >= 0.5 and lods[5] > lods[1] + 0.02 and lods[0] > lods[5]
    assert max(lods[3], lods[4]) < lods[1]
    threshold = str(lods[1])  # numpy's shortest round-trip form
    assert f32(threshold) == lods[1]
    full, selected, shares, rsq = ref.marker_tables(p, records, threshold)
    print("env", p.env, "LODs", lods, "threshold", threshold, "shares", shares)
    assert abs(sum(shares) - 100 * rsq) < 1e-4
    tables["rsm"] += full
    tables["qsm"] += selected
project.write_inputs(par_file(1, threshold, 0, "2.5", "0.01"))
project.write_tables(tables)
