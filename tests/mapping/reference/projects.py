"""Writing the end-to-end projects: their input files, pinned clocks and
expected tables, and the passes of a mapping run over them."""
import os

from float32 import MISSING, f32
from mapping_reference import PLACE_HEADING, Pass

HERE = os.path.dirname(os.path.abspath(__file__))
PROJECTS = os.path.normpath(os.path.join(HERE, "..", "..", "projects"))


def columns(*titles):
    return "".join(t.rjust(12) for t in titles)


def marker_heading(suffix=""):
    return columns("MarkerID" + suffix) + " " + ("MarkerName" + suffix).rjust(35)


TABLE_HEADING = PLACE_HEADING + marker_heading() + columns("LOD", "PVE(%)", "Add", "M(QQ)", "M(qq)")


def write(folder, name, lines):
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, name), "w") as f:
        f.write("".join(line + "\n" for line in lines))


def write_inputs(case, study, par, clock=None, root=PROJECTS):
    write(os.path.join(root, case, "input"), "TOV.mio", ["study.txt", "study.par"])
    write(os.path.join(root, case, "input"), "study.txt", study)
    write(os.path.join(root, case, "input"), "study.par", par)
    if clock:
        write(os.path.join(root, case), "pinned_clock", [clock])


def par_file(sma, sma_lod, add, add_lod, add_pin, epi=0, epi_lod="5.0"):
    return ["! Condition number (negative: no handling of multicollinearity)", "-1",
            "! Single marker analysis: indicator, LOD", "%d %s" % (sma, sma_lod),
            "! Additive mapping: indicator, LOD, PIN", "%d %s %s" % (add, add_lod, add_pin),
            "! Epistatic mapping: indicator, LOD, PIN", "%d %s 0.0001" % (epi, epi_lod),
            "! Permutation tests", "0 100 0.05", "0 100 0.05", "0 100 0.05"]


def two_traits(rng, n, envs, mean, sd, yield_effect, decimals):
    """The phenotype rows of "Yield" (mean + yield_effect(l) + noise) and
    "Noise" in envs environments of one replication, line 4 missing in
    environment 2."""
    rows = []
    for name in ["Yield", "Noise"]:
        for e in range(envs):
            row = []
            for l in range(n):
                y = mean + rng.normal(0, sd)
                if name == "Yield":
                    y += yield_effect(l)
                row.append("%.*f" % (decimals, y))
            if e == 1:
                row[3] = "NA"
            rows.append((name, row))
    return rows


class Project:
    """A mapping project: marker names, one string of codes per marker, and
    the phenotype rows (trait name, value texts) in the order of the file
    (trait, environment, replication)."""

    def __init__(self, case, markers, genotypes, rows, num_envs, num_reps):
        self.case, self.markers, self.genotypes = case, markers, genotypes
        self.rows, self.num_envs, self.num_reps = rows, num_envs, num_reps
        self.traits = [name for name, _ in rows[::num_envs * num_reps]]
        value = lambda text: MISSING if text == "NA" else f32(float(text))  # noqa: E731
        at = lambda t, e, r: rows[(t * num_envs + e) * num_reps + r][1]  # noqa: E731
        self.pheno = [[[[value(at(t, e, r)[l]) for r in range(num_reps)] for e in range(num_envs)]
                       for t in range(len(self.traits))] for l in range(len(genotypes[0]))]

    def write_inputs(self, par, clock=None):
        study = ["! Indicator", "1", "! NumMarkers", str(len(self.markers)),
                 "! PopulationSize", str(len(self.genotypes[0])), "! NumTraits",
                 str(len(self.traits)), "! NumEnvs", str(self.num_envs), "! NumReps",
                 str(self.num_reps), "! Genotypes"]
        study += [name + " " + " ".join(codes) for name, codes in zip(self.markers, self.genotypes)]
        study += ["! Phenotypes"] + [name + " " + " ".join(values) for name, values in self.rows]
        write_inputs(self.case, study, par, clock)

    def passes(self, mean_pass=True):
        for t, name in enumerate(self.traits, 1):
            for env in range(1, self.num_envs + 1 + mean_pass):
                yield Pass(self.pheno, self.genotypes, self.markers, t, name, env, self.num_envs,
                           self.num_reps)

    def write_tables(self, tables):
        for ext, lines in tables.items():
            write(os.path.join(PROJECTS, self.case, "expected"), "study." + ext, lines)
