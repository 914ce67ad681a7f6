"""Writes the input/ folders and pinned clocks of the end-to-end projects of
simulation; their expected tables are then checked by power_reference.py.

- simulation_power: two chromosomes of linked markers over 60 lines, both
  methods on, 40 simulations at heritability 0.6.  A large QTL on M03, a
  small one on M11, one on M07, which binning drops (it equals M06), and
  one on M14, whose 'X' lines give it a share of variance.
- simulation_no_runs: NumSimulations 0.
- simulation_heritability_one and _zero: no error, and an infinite one.
- simulation_epistatic_only: only the epistatic indicator on."""
import os

import numpy as np

PROJECTS = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "projects"))


def write(case, name, lines):
    os.makedirs(os.path.join(PROJECTS, case, "input"), exist_ok=True)
    with open(os.path.join(PROJECTS, case, "input" if name != "pinned_clock" else "", name), "w") as f:
        f.write("".join(line + "\n" for line in lines))


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


def project(case, genotypes, head, positions, effects, sma=1, add=1, epi=0, clock="2026/05/17 09:41:07.250"):
    lines = ["! A power simulation", "2", "! NumMarkers", str(len(genotypes)), "! PopulationSize",
             str(len(genotypes[0])), "! Genotypes"]
    lines += ["M%02d " % (m + 1) + " ".join(codes) for m, codes in enumerate(genotypes)]
    lines += ["! NumQTL NumSimulations Heritability", head, " ".join(positions), " ".join(effects)]
    write(case, "study.txt", lines)
    write(case, "study.par", ["! Condition number", "30", "! Single marker analysis", "%d 2.5" % sma,
                              "! Additive mapping", "%d 2.5 0.01" % add, "! Epistatic mapping", "%d 4.0 0.001" % epi])
    write(case, "TOV.mio", ["study.txt", "study.par"])
    write(case, "pinned_clock", [clock])


rng = np.random.default_rng(716)
genotypes = chromosomes(rng, 60, [8, 8])
genotypes[6] = genotypes[5]
project("simulation_power", genotypes, "4 40 0.6", ["3", "11", "7", "14"], ["0.9", "0.35", "0.5", "-0.45"])
small = genotypes[:6]
project("simulation_no_runs", small, "1 0 0.5", ["2"], ["1.0"])
project("simulation_heritability_one", small, "2 3 1.0", ["2", "5"], ["1.0", "-0.3"])
project("simulation_heritability_zero", small, "2 3 0.0", ["2", "5"], ["1.0", "-0.3"])
project("simulation_epistatic_only", small, "1 5 0.5", ["2"], ["1.0"], sma=0, add=0, epi=1)
