#!/usr/bin/env python3
"""Writes a mapping project of the size of a modern marker array, for timing
whole runs: one trait, one environment, one replication, markers in linked
runs (chromosomes of 2,000 markers, about one recombinant line in a hundred
between neighbours, 1 % missing genotypes), single-marker and additive
mapping on, the multicollinearity step off.

    marker_array_project.py MARKERS DIR [LINES]

DIR receives TOV.mio, array.txt and array.par.  The draws are seeded by the
sizes, so one size always gives the same project.
"""
import os
import random
import sys


def main():
    markers = int(sys.argv[1])
    folder = sys.argv[2]
    lines = int(sys.argv[3]) if len(sys.argv) > 3 else 500
    rng = random.Random(markers * 1000 + lines)
    os.makedirs(folder, exist_ok=True)

    genotypes = []
    current = None
    for m in range(markers):
        if m % 2000 == 0:
            current = [rng.random() < 0.5 for _ in range(lines)]
        else:
            current = [g != (rng.random() < 0.01) for g in current]
        genotypes.append(current)

    # Five loci with real effects, spread over the genome.
    loci = [int(markers * f) for f in (0.1, 0.3, 0.5, 0.7, 0.9)]
    trait = []
    for l in range(lines):
        value = 10.0 + rng.gauss(0.0, 1.0)
        for locus in loci:
            value += 0.4 if genotypes[locus][l] else -0.4
        trait.append(value)

    with open(os.path.join(folder, "TOV.mio"), "w") as mio:
        mio.write("array.txt\narray.par\n")
    with open(os.path.join(folder, "array.par"), "w") as par:
        par.write("! Condition number\n-1\n! SMA\n1 3.0\n! Additive\n1 3.0 0.01\n! Epistatic\n0 5.0 0.0001\n"
                  "! Permutation tests\n0 100 0.05\n0 100 0.05\n0 100 0.05\n")
    with open(os.path.join(folder, "array.txt"), "w") as out:
        out.write(f"! Indicator\n1\n! NumMarkers\n{markers}\n! PopulationSize\n{lines}\n"
                  "! NumTraits\n1\n! NumEnvs\n1\n! NumReps\n1\n! Genotypes\n")
        for m, row in enumerate(genotypes):
            codes = ("X" if rng.random() < 0.01 else ("A" if g else "B") for g in row)
            out.write(f"M{m + 1} " + " ".join(codes) + "\n")
        out.write("! Phenotypes\nTrait " + " ".join(f"{v:.3f}" for v in trait) + "\n")


if __name__ == "__main__":
    main()
