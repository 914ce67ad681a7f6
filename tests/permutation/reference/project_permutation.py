"""The end-to-end projects of the permutation test.  Writes each case's
input/, pinned_clock and the expected permutation tables (.tsm, .tic,
.tice) from the float32 model here; the case's other expected files (log,
console, the marker reports, .sta and the mapping tables, which the
thresholds flag) are the program's own output, checked against these
tables and by the mapping projects.

- permutation_all_methods: two traits in two environments with three
  replications; trait 2 has 8 lines with data in environment 2, and
  trait 1 misses single values that the line's others fill.  The LOD
  thresholds of the PAR file (9.0) are above the empirical
  ones, which replace them all the same, and the three mappings flag by
  them.  Each test has more shuffles than are scanned side by side, so
  that several threads share them.
- permutation_one_shuffle: one trait, one environment, one shuffle per
  method: each threshold is that shuffle's maximum (q = 0.95).

Run with the system python3 (numpy): python3 project_permutation.py"""
import os
import sys

import numpy as np

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "mapping", "reference"))

from float32 import f32  # noqa: E402
import mapping_reference as ref  # noqa: E402
from permutation_reference import HEADING, closing_row, marker_maximum, pair_maximum, row, threshold  # noqa: E402
from project_files import input_file, write  # noqa: E402
from stream import Stream  # noqa: E402


def par_lines(sma, add, epi, perms):
    lines = ["! Condition number", "-1", "! SMA", sma, "! Additive", add, "! Epistatic", epi, "! Permutations"]
    return lines + ["%d %d %s" % p for p in perms]


def make_case(case, clock, markers, genotypes, traits, num_envs, num_reps, values, par, perms):
    """values[t][e][r]: one text per line ("NA" for missing)."""
    names = [name for name, _ in traits]
    write(case, "input", "TOV.mio", ["study.txt", "study.par"])
    rows = [(names[t], values[t][e][r]) for t in range(len(traits)) for e in range(num_envs) for r in range(num_reps)]
    write(case, "input", "study.txt", input_file(markers, genotypes, len(traits), rows, num_envs, num_reps))
    write(case, "input", "study.par", par)
    write(case, ".", "pinned_clock", [clock])

    n = len(genotypes[0])
    pheno = [[[[f32(-9999.0) if values[t][e][r][l] == "NA" else f32(float(values[t][e][r][l]))
                for r in range(num_reps)] for e in range(num_envs)] for t in range(len(traits))] for l in range(n)]
    hh, mm, ss = (int(x) for x in clock.split()[1].split(".")[0].split(":"))
    stream = Stream(hh, mm, ss)
    tables = {ext: [HEADING] for (on, _, _), ext in zip(perms, ("tsm", "tic", "tice")) if on == 1}
    maxima = {ext: [] for ext in tables}
    for t in range(len(traits)):
        for e in range(1, num_envs + 1):
            kept, y = ref.line_means(pheno, t, e, num_envs, num_reps)
            rows_codes = [[genotypes[m][l - 1] for l in kept] for m in range(len(markers))]
            for (on, times, _), ext in zip(perms, ("tsm", "tic", "tice")):
                if on != 1 or (ext == "tice" and len(markers) >= 1001):
                    continue
                maximum = pair_maximum if ext == "tice" else marker_maximum
                for k in range(1, times + 1):
                    best = maximum(rows_codes, stream.shuffle(y))
                    maxima[ext].append(best)
                    tables[ext].append(row(t + 1, names[t], e, k, best))
    for (on, times, alpha), ext in zip(perms, ("tsm", "tic", "tice")):
        if on == 1:
            pooled = maxima[ext] + [f32(0.0)] * (len(traits) * num_envs * times - len(maxima[ext]))
            tables[ext].append(closing_row(threshold(pooled, alpha)))
            write(case, "expected", "study." + ext, tables[ext])


def random_genotypes(rng, num_markers, n, missing=0.05):
    """Distinct markers, so that binning keeps them all."""
    seen, out = set(), []
    while len(out) < num_markers:
        g = "".join(rng.choice(["A", "B", "X"], p=[(1 - missing) / 2, (1 - missing) / 2, missing]) for _ in range(n))
        if g not in seen and "A" in g and "B" in g:
            seen.add(g)
            out.append(g)
    return out


def phenotype(rng, genotypes, n, num_envs, num_reps, effects):
    code = lambda m, l: ref.code_value(genotypes[m][l])
    return [[["%.3f" % (20 + sum(b * code(m, l) for m, b in effects) + rng.normal(0, 1.3)) for l in range(n)]
             for _ in range(num_reps)] for _ in range(num_envs)]


rng = np.random.default_rng(615)
MARKERS = ["M%02d" % i for i in range(1, 11)]
GENOTYPES = random_genotypes(rng, 10, 32)
VALUES = [phenotype(rng, GENOTYPES, 32, 2, 3, [(1, 1.2), (6, 0.8)]), phenotype(rng, GENOTYPES, 32, 2, 3, [(3, 0.9)])]
VALUES[0][0][1][7] = VALUES[0][1][0][30] = "NA"
VALUES[0][1][0][2] = VALUES[0][1][1][2] = "NA"
VALUES[1][1] = [["NA" if l % 4 else v for l, v in enumerate(rep)] for rep in VALUES[1][1]]
make_case("permutation_all_methods", "2026/11/23 14:37:05.250", MARKERS, GENOTYPES, [("Yield", 0), ("Height", 0)], 2,
          3, VALUES, par_lines("1 9.0", "1 9.0 0.01", "1 9.0 0.0001", [(1, 100, "0.05"), (1, 40, "0.1"), (1, 40, "0.05")]),
          [(1, 100, 0.05), (1, 40, 0.1), (1, 40, 0.05)])

ONE = [phenotype(rng, GENOTYPES, 32, 1, 1, [(2, 1.0)])]
make_case("permutation_one_shuffle", "2026/11/23 09:05:59.999", MARKERS, GENOTYPES, [("Yield", 0)], 1, 1, ONE,
          par_lines("1 2.0", "1 2.0 0.01", "0 5.0 0.0001", [(1, 1, "0.05"), (1, 1, "0.05"), (0, 1, "0.05")]),
          [(1, 1, 0.05), (1, 1, 0.05), (0, 1, 0.05)])
