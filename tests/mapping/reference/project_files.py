"""Writing the input files of an end-to-end project and the expected
mapping tables."""
import os

from float32 import f32

HERE = os.path.dirname(os.path.abspath(__file__))
PROJECTS = os.path.normpath(os.path.join(HERE, "..", "..", "projects"))

TABLE_HEADING = ("TraitID".rjust(12) + " " + "TraitName".rjust(19) + "Environment".rjust(12) + "MarkerID".rjust(12) +
                 " " + "MarkerName".rjust(35) + "".join(t.rjust(12) for t in ("LOD", "PVE(%)", "Add", "M(QQ)", "M(qq)")))


def write(case, folder, name, lines):
    path = os.path.join(PROJECTS, case, folder)
    os.makedirs(path, exist_ok=True)
    with open(os.path.join(path, name), "w") as f:
        for line in lines:
            f.write(line + "\n")


def input_file(markers, genotypes, traits, phenotype_rows, num_envs, num_reps):
    """markers: names; genotypes: one string of letters per marker;
    phenotype_rows: (trait name, [value text per line]) in the file's order
    (trait, environment, replication)."""
    lines = ["! Indicator", "1", "! NumMarkers", str(len(markers)), "! PopulationSize", str(len(genotypes[0])),
             "! NumTraits", str(traits), "! NumEnvs", str(num_envs), "! NumReps", str(num_reps), "! Genotypes"]
    for name, codes in zip(markers, genotypes):
        lines.append(name + " " + " ".join(codes))
    lines.append("! Phenotypes")
    for name, values in phenotype_rows:
        lines.append(name + " " + " ".join(values))
    return lines


def par_file(sma, sma_lod, add, add_lod, add_pin, epi=0, epi_lod="5.0", epi_pin="0.0001", condition="-1"):
    return ["! Condition number (negative: no handling of multicollinearity)", condition,
            "! Single marker analysis: indicator, LOD", "%d %s" % (sma, sma_lod),
            "! Additive mapping: indicator, LOD, PIN", "%d %s %s" % (add, add_lod, add_pin),
            "! Epistatic mapping: indicator, LOD, PIN", "%d %s %s" % (epi, epi_lod, epi_pin),
            "! Permutation tests", "0 100 0.05", "0 100 0.05", "0 100 0.05"]


def two_traits(rng, n, envs, mean, sd, yield_effect, decimals):
    """The phenotype rows of "Yield" (mean + yield_effect(l) + noise) and
    "Noise" in envs environments of one replication, written with the given
    decimals, line 4 missing in environment 2; and the values as float32
    [line][trait][environment][1], -9999.0 where missing."""
    rows, values = [], {}
    for t, name in enumerate(["Yield", "Noise"]):
        for e in range(envs):
            row = []
            for l in range(n):
                y = mean + rng.normal(0, sd)
                if name == "Yield":
                    y += yield_effect(l)
                row.append("%.*f" % (decimals, y))
            if e == 1:
                row[3] = "NA"
            values[(t, e)] = row
            rows.append((name, row))
    pheno = [[[[f32(-9999.0) if values[(t, e)][l] == "NA" else f32(float(values[(t, e)][l]))] for e in range(envs)]
              for t in range(2)] for l in range(n)]
    return rows, pheno
