"""An independent model of a simulation run's power tables, for the expected
files of the end-to-end projects of simulation.

usage: power_reference.py PROJECT OUTPUT
PROJECT is a case folder (input/, pinned_clock); OUTPUT a folder where the
program ran it.  The kept markers are read from OUTPUT's .mtp (preprocessing
has its own checks); everything else is worked out here in float32: the
genetic model, the stream of uniforms from the pinned clock, the normal
deviates, the simulated traits, the two-group tests, the stepwise selection
and the additive scan (tests/mapping/reference).  The .psm, .pic and .stp
that OUTPUT holds must equal these to the byte."""
import ctypes
import ctypes.util
import math
import os
import struct
import sys

import numpy as np

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "mapping", "reference"))
import mapping_reference as ref  # noqa: E402
from float32 import NAN, f32  # noqa: E402

_libm = ctypes.CDLL(ctypes.util.find_library("m"))
for _name in ("logf", "expf"):
    getattr(_libm, _name).restype = ctypes.c_float
    getattr(_libm, _name).argtypes = [ctypes.c_float]
logf = lambda x: f32(_libm.logf(float(x)))  # noqa: E731
expf = lambda x: f32(_libm.expf(float(x)))  # noqa: E731


class Stream:
    SCALE = float(np.frombuffer(struct.pack("<I", 0x2FFFFFFF), dtype=np.float32)[0])

    def __init__(self, hour, minute, second):
        seed = hour * 10000 + minute * 100 + second + 1
        self.state = 123457 if seed <= 1 else seed

    def uniform(self):
        value = math.fmod(16807.0 * float(self.state), 2147483647.0)
        self.state = int(value + 0.5)
        return f32(value * self.SCALE)

    def normal(self):
        u = self.uniform()
        if u < f32(0.8840704):
            v = self.uniform()
            return ((u * f32(1.1311316) - f32(1.0)) + v) * f32(2.2160358)
        if u >= f32(0.97331095):
            while True:
                p, q = self.uniform(), self.uniform()
                t = f32(2.4554074) - logf(q)
                if not p * p * t > f32(2.4554074):
                    break
            r = np.sqrt(t + t)
            return f32(0.0) - r if u >= f32(0.9866555) else r
        if u >= f32(0.9587208):
            return self.wedge(lambda lo: f32(2.2160358) - lo * f32(0.6308348), 0.7555915, 0.034240503, False)
        if u >= f32(0.91131276):
            return self.wedge(lambda lo: f32(0.47972742) + lo * f32(1.1054736), 0.872835, 0.049264498, False)
        return self.wedge(lambda lo: f32(0.47972742) - lo * f32(0.59550714), 0.80557793, 0.05337755, True)

    def wedge(self, candidate, quick, factor, reject_negative):
        while True:
            a, b = self.uniform(), self.uniform()
            lo, hi, d = min(a, b), max(a, b), a - b
            x = candidate(lo)
            if reject_negative and x < 0:
                continue
            f = expf(f32(0.0) - f32(0.5) * x * x) * f32(0.3989423) - (f32(2.2160358) - abs(x)) * f32(0.18002519)
            if hi <= f32(quick) or f >= abs(d) * f32(factor):
                return f32(0.0) - x if d >= 0 else x


def tokens(path):
    with open(path) as f:
        return [t for line in f if line.strip() and not line.startswith("!") for t in line.replace(",", " ").split()]


def read_project(project):
    t = tokens(os.path.join(project, "input", "study.txt"))
    num_markers, n = int(t[1]), int(t[2])
    genotypes, k = [], 3
    for _ in range(num_markers):
        genotypes.append("".join(t[k + 1:k + 1 + n]))
        k += 1 + n
    num_qtl, num_sims, h = int(t[k]), int(t[k + 1]), f32(t[k + 2])
    positions = [int(x) for x in t[k + 3:k + 3 + num_qtl]]
    effects = [f32(x) for x in t[k + 3 + num_qtl:k + 3 + 2 * num_qtl]]
    p = tokens(os.path.join(project, "input", "study.par"))
    par = {"sma": int(p[1]), "sma_lod": f32(p[2]), "add": int(p[3]), "add_lod": f32(p[4]), "pin": f32(p[5]),
           "epi": int(p[6])}
    par["pout"] = f32(2.0) * par["pin"]
    return genotypes, num_sims, h, positions, effects, par


def model(genotypes, h, positions, effects):
    """QTLEffect, GenotypicValue, GeneticVariance, ErrorVariance, PGVE, PPVE."""
    n = len(genotypes[0])
    qtl = [f32(0.0)] * len(genotypes)
    for pos, e in zip(positions, effects):
        qtl[pos - 1] = e
    gvalue = []
    with np.errstate(all="ignore"):
        for line in range(n):
            v = f32(0.0)
            for m, codes in enumerate(genotypes):
                if codes[line] == "A":
                    v = v + qtl[m]
                elif codes[line] == "B":
                    v = v - qtl[m]
            gvalue.append(v)
        s1, s2 = f32(0.0), f32(0.0)
        for v in gvalue:
            s2 = s2 + v * v
            s1 = s1 + v
        mean = s1 / f32(n)
        vg = s2 / f32(n) - mean * mean
        ve = ((f32(1.0) - h) / h) * vg
        pgve, ppve = [], []
        for m, codes in enumerate(genotypes):
            p = f32(codes.count("X")) / f32(n)
            v = f32(4.0) * p * (f32(1.0) - p) * (qtl[m] * qtl[m])
            pgve.append((v / vg) * f32(100.0))
            ppve.append((v / (vg + ve)) * f32(100.0))
    return qtl, gvalue, vg, ve, pgve, ppve


def effect(record):
    m1, m2 = record["Mean"]
    with np.errstate(all="ignore"):
        add = f32(0.5) * m1 - f32(0.5) * m2
    return f32(0.0) if np.isnan(add) else add


def additive_scan(rows_codes, y, terms, slopes):
    b = dict(zip(terms, slopes))
    code = lambda m, l: f32(ref.code_value(rows_codes[m][l]))  # noqa: E731
    fit = []
    for line in range(len(y)):
        v = f32(0.0)
        for m in terms:
            v = v + b[m] * code(m, line)
        fit.append(v)
    base = [y[i] - fit[i] for i in range(len(y))]
    records = []
    for m in range(len(rows_codes)):
        adj = base if m not in terms else [base[i] + b[m] * code(m, i) for i in range(len(y))]
        records.append(ref.two_group_test(rows_codes[m], adj))
    return records


def main(project, output):
    genotypes, num_sims, h, positions, effects, par = read_project(project)
    with open(os.path.join(project, "pinned_clock")) as f:
        hh, mm, ss = (int(x) for x in f.read().split()[1].split(".")[0].split(":"))
    base = [name[:-4] for name in os.listdir(output) if name.endswith(".mtp")][0]
    with open(os.path.join(output, base + ".mtp")) as f:
        kept = [int(row.split()[0]) for row in f.readlines()[1:] if row.split()[-1] == "0"]
    qtl, gvalue, vg, ve, pgve, ppve = model(genotypes, h, positions, effects)
    rows_codes = [genotypes[m - 1] for m in kept]
    n = len(gvalue)
    stream = Stream(hh, mm, ss)
    root = np.sqrt(ve)
    heading = "Simulation".rjust(12) + "".join("%12d" % m for m in kept)
    psm, pic, stp = [heading] if num_sims else [], [heading] if num_sims else [], []
    hits_sma, hits_add = [f32(0.0)] * len(kept), [f32(0.0)] * len(kept)
    closest = float("inf")
    for s in range(1, num_sims + 1):
        with np.errstate(all="ignore"):
            errors = [stream.normal() for _ in range(n)]
            y = [gvalue[i] + errors[i] * root for i in range(n)]
        if par["sma"] == 1:
            records = [ref.two_group_test(codes, y) for codes in rows_codes]
            psm.append("%12d" % s + "".join(fixed(effect(r)) for r in records))
            for j, r in enumerate(records):
                if not ref.has_nan(r) and r["LOD"] > par["sma_lod"]:
                    hits_sma[j] = hits_sma[j] + f32(1.0)
        if par["add"] == 1:
            terms, slopes, intercept, adj_r2, margin = ref.stepwise32(rows_codes, y, par["pin"], par["pout"])
            closest = min(closest, margin)
            stp.append("TraitID".rjust(12) + " " + "TraitName".rjust(19) + "Environment".rjust(12) +
                       "".join("%12d" % kept[m] for m in terms) + "Intercept".rjust(12) + "R-square".rjust(12))
            stp.append(ref.place(1, "SimulatedTrait", 1, 1) + "".join(fixed(b) for b in slopes + [intercept, adj_r2]))
            records = additive_scan(rows_codes, y, terms, slopes)
            pic.append("%12d" % s + "".join(fixed(effect(r)) for r in records))
            for j, r in enumerate(records):
                if not ref.has_nan(r) and r["LOD"] > par["add_lod"]:
                    hits_add[j] = hits_add[j] + f32(1.0)

    def summary(hits):
        with np.errstate(all="ignore"):
            power = [hit / f32(num_sims) * f32(100.0) for hit in hits]
        rows = [("Power(%)", power), ("TrueAdd", [qtl[m - 1] for m in kept]), ("PGVE(%)", [pgve[m - 1] for m in kept]),
                ("PPVE(%)", [ppve[m - 1] for m in kept]), ("GenoVar", [vg]), ("PhenoVar", [vg + ve])]
        return [label.rjust(12) + "".join(fixed(v) for v in values) for label, values in rows]

    expected = {}
    if par["sma"] == 1:
        expected[".psm"] = psm + summary(hits_sma)
    if par["add"] == 1:
        expected[".pic"] = pic + summary(hits_add)
        expected[".stp"] = stp
    for ext in (".psm", ".pic", ".stp"):
        path = os.path.join(output, base + ext)
        if ext not in expected:
            assert not os.path.exists(path), path + " should not exist"
            continue
        with open(path) as f:
            actual = f.read().split("\n")[:-1]
        for i, (want, got) in enumerate(zip(expected[ext], actual)):
            assert want == got, "%s line %d\n expected [%s]\n actual   [%s]" % (ext, i + 1, want, got)
        assert len(expected[ext]) == len(actual), "%s: %d lines, %d expected" % (ext, len(actual), len(expected[ext]))
        print(ext, "matches:", len(actual), "lines")
    print("power SMA", [float(x) for x in hits_sma], "additive", [float(x) for x in hits_add])
    print("closest p-value to its limit in a selection: factor", closest)


def fixed(v):
    v = f32(v)
    if np.isinf(v):
        return ("Infinity" if v > 0 else "-Infinity").rjust(12)
    return ref.fixed(v)


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])
