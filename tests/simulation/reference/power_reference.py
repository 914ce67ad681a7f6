"""Checks the .psm, .pic and .stp of a simulation run against the float32 model;
only the kept markers are read from the run's .mtp.
usage: power_reference.py PROJECT OUTPUT (a case folder and the folder it ran in)"""
import difflib
import os
import sys

import numpy as np

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "mapping", "reference"))
from float32 import Stream, f32, total  # noqa: E402
import mapping_reference as ref  # noqa: E402


def tokens(path):
    with open(path) as f:
        return [t for line in f if line.strip() and not line.startswith("!")
                for t in line.replace(",", " ").split()]


def read_project(project):
    t = tokens(os.path.join(project, "input", "study.txt"))
    num_markers, n, k = int(t[1]), int(t[2]), 3
    genotypes = ["".join(t[k + m * (n + 1) + 1:k + (m + 1) * (n + 1)]) for m in range(num_markers)]
    k += num_markers * (n + 1)
    num_qtl, num_sims, h = int(t[k]), int(t[k + 1]), f32(t[k + 2])
    positions = [int(x) for x in t[k + 3:k + 3 + num_qtl]]
    effects = [f32(x) for x in t[k + 3 + num_qtl:k + 3 + 2 * num_qtl]]
    p = tokens(os.path.join(project, "input", "study.par"))
    par = {"sma": int(p[1]), "sma_lod": f32(p[2]), "add": int(p[3]), "add_lod": f32(p[4]),
           "pin": f32(p[5])}
    return genotypes, num_sims, h, positions, effects, par


def model(genotypes, h, positions, effects):
    """QTLEffect, GenotypicValue, GeneticVariance, ErrorVariance, PGVE, PPVE."""
    n = len(genotypes[0])
    qtl = [f32(0.0)] * len(genotypes)
    for pos, e in zip(positions, effects):
        qtl[pos - 1] = e
    gvalue = [total(qtl[m] if codes[line] == "A" else -qtl[m]
                    for m, codes in enumerate(genotypes) if codes[line] in "AB")
              for line in range(n)]
    mean = total(gvalue) / f32(n)
    vg = total(v * v for v in gvalue) / f32(n) - mean * mean
    ve = ((f32(1.0) - h) / h) * vg
    pgve, ppve = [], []
    for m, codes in enumerate(genotypes):
        p = f32(codes.count("X")) / f32(n)
        v = f32(4.0) * p * (f32(1.0) - p) * (qtl[m] * qtl[m])
        pgve.append((v / vg) * f32(100.0))
        ppve.append((v / (vg + ve)) * f32(100.0))
    return qtl, gvalue, vg, ve, pgve, ppve


def effects_row(s, records, hits, lod):
    """The row of a simulation; counts the markers flagged in hits."""
    row = "%12d" % s
    for j, r in enumerate(records):
        add = f32(0.5) * r["Mean"][0] - f32(0.5) * r["Mean"][1]
        row += ref.fixed(f32(0.0) if np.isnan(add) else add)
        if not ref.has_nan(r) and r["LOD"] > lod:
            hits[j] = hits[j] + f32(1.0)
    return row


def main(project, output):
    genotypes, num_sims, h, positions, effects, par = read_project(project)
    with open(os.path.join(project, "pinned_clock")) as f:
        stream = Stream(f.read())
    base = [name[:-4] for name in os.listdir(output) if name.endswith(".mtp")][0]
    with open(os.path.join(output, base + ".mtp")) as f:
        kept = [int(row.split()[0]) for row in f.readlines()[1:] if row.split()[-1] == "0"]
    qtl, gvalue, vg, ve, pgve, ppve = model(genotypes, h, positions, effects)
    rows_codes = [genotypes[m - 1] for m in kept]
    heading = ["Simulation".rjust(12) + "".join("%12d" % m for m in kept)] if num_sims else []
    psm, pic, stp = list(heading), list(heading), []
    hits_sma, hits_add = [f32(0.0)] * len(kept), [f32(0.0)] * len(kept)
    closest = float("inf")
    for s in range(1, num_sims + 1):
        y = [g + stream.normal() * np.sqrt(ve) for g in gvalue]
        if par["sma"] == 1:
            records = [ref.two_group_test(codes, y) for codes in rows_codes]
            psm.append(effects_row(s, records, hits_sma, par["sma_lod"]))
        if par["add"] == 1:
            terms, slopes, intercept, adj_r2, margin = ref.stepwise32(
                rows_codes, y, par["pin"], f32(2.0) * par["pin"])
            closest = min(closest, margin)
            stp += ref.stepwise_rows(ref.place(1, "SimulatedTrait", 1, 1), [kept[m] for m in terms],
                                     slopes, intercept, adj_r2)
            records = ref.additive_records(rows_codes, y, dict(zip(terms, slopes)))
            pic.append(effects_row(s, records, hits_add, par["add_lod"]))

    def summary(hits):
        rows = [("Power(%)", [hit / f32(num_sims) * f32(100.0) for hit in hits]),
                ("TrueAdd", [qtl[m - 1] for m in kept]), ("PGVE(%)", [pgve[m - 1] for m in kept]),
                ("PPVE(%)", [ppve[m - 1] for m in kept]), ("GenoVar", [vg]),
                ("PhenoVar", [vg + ve])]
        return [label.rjust(12) + "".join(ref.fixed(v) for v in values) for label, values in rows]

    on = {".psm": par["sma"], ".pic": par["add"], ".stp": par["add"]}
    expected = {".psm": psm + summary(hits_sma), ".pic": pic + summary(hits_add), ".stp": stp}
    for ext, lines in expected.items():
        path = os.path.join(output, base + ext)
        if on[ext] != 1:
            assert not os.path.exists(path), path + " should not exist"
            continue
        with open(path) as f:
            actual = f.read()
        diff = difflib.unified_diff(lines, actual.split("\n")[:-1], ext, "OUTPUT", lineterm="")
        assert actual == "".join(line + "\n" for line in lines), "\n".join(diff)
        print(ext, "matches:", len(lines), "lines")
    print("power SMA", [float(x) for x in hits_sma], "additive", [float(x) for x in hits_add])
    print("closest p-value to its limit in a selection: factor", closest)


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])
