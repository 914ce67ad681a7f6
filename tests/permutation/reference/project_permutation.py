"""Writes the end-to-end projects of the permutation test: input/, pinned_clock
and the expected .tsm, .tic and .tice of the float32 model.  Run with
/usr/bin/python3.

- permutation_all_methods: the PAR file's LOD thresholds (9.0) lie above the
  empirical ones, which replace them all the same.  Each test has more
  shuffles than are scanned side by side, so that threads share them.
- permutation_one_shuffle: one shuffle per method, whose maximum is the
  threshold (q = 0.95)."""
import os
import sys

import numpy as np

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "mapping", "reference"))
from float32 import Stream, f32  # noqa: E402
import mapping_reference as ref  # noqa: E402
from projects import PLACE_HEADING, Project, columns  # noqa: E402


def maximum(rows_codes, y, pairs):
    """The largest LOD of the markers from 0.0, or the largest LOD(1), the
    evidence of epistasis, of the pairs from pair (1, 2) whatever it is;
    only a LOD strictly above the largest so far replaces it."""
    if pairs:
        lods = [ref.four_group_test(a, b, y)["LOD"][0]
                for i, a in enumerate(rows_codes) for b in rows_codes[i + 1:]] or [f32(0.0)]
    else:
        lods = [f32(0.0)] + [ref.two_group_test(codes, y)["LOD"] for codes in rows_codes]
    best = lods[0]
    for lod in lods[1:]:
        best = lod if lod > best else best
    return best


def threshold(maxima, alpha):
    n = len(maxima)
    b = sorted(maxima, key=lambda v: (bool(np.isnan(v)), v))
    at = lambda k: b[min(max(k, 1), n) - 1]  # noqa: E731
    q = f32(f32(n) * f32(f32(1.0) - f32(alpha)))
    whole = int(np.floor(q))
    if abs(f32(f32(whole) - q)) < f32(1.0e-8):
        return f32(f32(at(int(q)) + at(int(q) + 1)) * f32(0.5))
    return at(whole + 1)


def make_case(case, clock, markers, genotypes, traits, num_envs, num_reps, values, methods, perms):
    """values[t][e][r]: one text per line ("NA" for missing); methods: the
    PAR lines of the three mappings; perms: (on, times, alpha text) of each."""
    rows = [(traits[t], values[t][e][r]) for t in range(len(traits)) for e in range(num_envs)
            for r in range(num_reps)]
    project = Project(case, markers, genotypes, rows, num_envs, num_reps)
    par = ["! Condition number", "-1", "! SMA", methods[0], "! Additive", methods[1],
           "! Epistatic", methods[2], "! Permutations"]
    project.write_inputs(par + ["%d %d %s" % p for p in perms], clock)
    stream = Stream(clock)
    tests = [(ext, times, alpha) for (on, times, alpha), ext in zip(perms, ("tsm", "tic", "tice"))
             if on]
    tables = {ext: [PLACE_HEADING + columns("Times", "MaxLOD")] for ext, _, _ in tests}
    maxima = {ext: [] for ext, _, _ in tests}
    for p in project.passes(mean_pass=False):
        for ext, times, _ in tests:
            for k in range(1, times + 1):
                maxima[ext].append(maximum(p.rows_codes, stream.shuffle(p.y), ext == "tice"))
                tables[ext].append(p.place + "%12d" % k + ref.fixed(maxima[ext][-1]))
    for ext, _, alpha in tests:
        value = threshold(maxima[ext], float(alpha))
        tables[ext].append("Threshold".rjust(12) + " " + "Threshold".rjust(19) +
                           "Threshold".rjust(12) * 2 + ref.fixed(value))
    project.write_tables(tables)


def random_genotypes(rng, num_markers, n, missing=0.05):
    """Distinct markers, so that binning keeps them all."""
    seen, out = set(), []
    while len(out) < num_markers:
        g = "".join(rng.choice(["A", "B", "X"], p=[(1 - missing) / 2, (1 - missing) / 2, missing])
                    for _ in range(n))
        if g not in seen and "A" in g and "B" in g:
            seen.add(g)
            out.append(g)
    return out


def phenotype(rng, genotypes, n, num_envs, num_reps, effects):
    code = lambda m, l: ref.code_value(genotypes[m][l])  # noqa: E731
    return [[["%.3f" % (20 + sum(b * code(m, l) for m, b in effects) + rng.normal(0, 1.3))
              for l in range(n)] for _ in range(num_reps)] for _ in range(num_envs)]


rng = np.random.default_rng(615)
MARKERS = ["M%02d" % i for i in range(1, 11)]
GENOTYPES = random_genotypes(rng, 10, 32)
VALUES = [phenotype(rng, GENOTYPES, 32, 2, 3, [(1, 1.2), (6, 0.8)]),
          phenotype(rng, GENOTYPES, 32, 2, 3, [(3, 0.9)])]
VALUES[0][0][1][7] = VALUES[0][1][0][30] = "NA"
VALUES[0][1][0][2] = VALUES[0][1][1][2] = "NA"
VALUES[1][1] = [["NA" if l % 4 else v for l, v in enumerate(rep)] for rep in VALUES[1][1]]
make_case("permutation_all_methods", "2026/11/23 14:37:05.250", MARKERS, GENOTYPES,
          ["Yield", "Height"], 2, 3, VALUES, ("1 9.0", "1 9.0 0.01", "1 9.0 0.0001"),
          [(1, 100, "0.05"), (1, 40, "0.1"), (1, 40, "0.05")])
make_case("permutation_one_shuffle", "2026/11/23 09:05:59.999", MARKERS, GENOTYPES, ["Yield"], 1, 1,
          [phenotype(rng, GENOTYPES, 32, 1, 1, [(2, 1.0)])],
          ("1 2.0", "1 2.0 0.01", "0 5.0 0.0001"), [(1, 1, "0.05"), (1, 1, "0.05"), (0, 1, "0.05")])
