"""Writes the input/ folders and pinned clocks of the end-to-end projects of
simulation, whose expected tables power_reference.py checks.

- simulation_power: two chromosomes of linked markers over 60 lines, 40
  simulations at heritability 0.6; QTL on M03 (large), M11 (small), M07
  (dropped by binning: it equals M06) and M14 (its 'X' lines give it a share).
- independent_markers (read by PowerSimulationTest): 25 unlinked markers, a
  large QTL on M01, 400 simulations at LOD 0.5, with the level that LOD
  implies for a marker without QTL: LOD = n/2 log10(SS0 / SS1), so it passes
  when F(1, n - 2) > (n - 2)(10^(2 LOD / n) - 1)."""
import os
import sys

import numpy as np
from scipy import stats

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "..", "mapping", "reference"))
from projects import PROJECTS, write, write_inputs  # noqa: E402

STATISTICAL = os.path.normpath(os.path.join(HERE, "..", "projects"))


def chromosomes(rng, n, sizes, r=0.15, missing=0.03):
    rows = []
    for size in sizes:
        codes = rng.choice(["A", "B"], n)
        for _ in range(size):
            flip = rng.random(n) < r
            codes = np.where(flip, np.where(codes == "A", "B", "A"), codes)
            rows.append(codes.copy())
    for row in rows:
        row[rng.random(n) < missing] = "X"
    return ["".join(row) for row in rows]


def project(case, genotypes, head, positions, effects, sma=1, add=1, epi=0, lod="2.5",
            condition="30", root=PROJECTS):
    study = ["! A power simulation", "2", "! NumMarkers", str(len(genotypes)),
             "! PopulationSize", str(len(genotypes[0])), "! Genotypes"]
    study += ["M%02d " % (m + 1) + " ".join(codes) for m, codes in enumerate(genotypes)]
    study += ["! NumQTL NumSimulations Heritability", head, " ".join(positions), " ".join(effects)]
    par = ["! Condition number", condition, "! Single marker analysis", "%d %s" % (sma, lod),
           "! Additive mapping", "%d %s 0.01" % (add, lod), "! Epistatic mapping",
           "%d 4.0 0.001" % epi]
    write_inputs(case, study, par, "2026/05/17 09:41:07.250", root)


rng = np.random.default_rng(716)
genotypes = chromosomes(rng, 60, [8, 8])
genotypes[6] = genotypes[5]
project("simulation_power", genotypes, "4 40 0.6", ["3", "11", "7", "14"],
        ["0.9", "0.35", "0.5", "-0.45"])
small = genotypes[:6]
project("simulation_no_runs", small, "1 0 0.5", ["2"], ["1.0"])
project("simulation_heritability_one", small, "2 3 1.0", ["2", "5"], ["1.0", "-0.3"])
project("simulation_heritability_zero", small, "2 3 0.0", ["2", "5"], ["1.0", "-0.3"])
project("simulation_epistatic_only", small, "1 5 0.5", ["2"], ["1.0"], sma=0, add=0, epi=1)

n, lod = 100, 0.5
independent = ["".join(rng.choice(["A", "B"], n)) for _ in range(25)]
project("independent_markers", independent, "1 400 0.5", ["1"], ["1.0"], lod="0.5", condition="-1",
        root=STATISTICAL)
write(os.path.join(STATISTICAL, "independent_markers"), "false_positive_level",
      ["%.6f" % stats.f.sf((n - 2) * (10 ** (2 * lod / n) - 1), 1, n - 2)])
