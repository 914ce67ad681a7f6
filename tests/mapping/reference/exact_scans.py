"""Expected bits of the scans: the log density, the single-marker scan and
the additive scan against a model of markers and a marker pair, on 300
lines with many decimals and missing genotypes, by the two-group test of
mapping_reference.py.  Writes ../data/exact_scans.txt; run with
/usr/bin/python3 from this folder."""
import numpy as np

from bit_cases import BitCases
from float32 import NAN, f32
import mapping_reference as ref

rng = np.random.default_rng(29)
M, N = 45, 300
codes = ["".join(rng.choice(list("AABBX"), N)) for _ in range(M)]
codes[4] = "A" * N  # monomorphic: a NaN record
codes[9] = "X" * (N - 1) + "B"
y = [f32(round(v, 5)) for v in rng.normal(20.0, 3.0, N)]
out = BitCases()

with np.errstate(all="ignore"):
    density = []
    for yi, m, v in ((1.5, 0.25, 2.0), (-3.1234567, 2.7182817, 0.0123457), (123.456, 120.1, 31.4159), (1.0, 1.0, 0.0),
                     (1.0, 0.0, -1.0)):
        density += [f32(yi), f32(m), f32(v), ref.log_density10(f32(yi), f32(m), f32(v))]
    out.case("log_density", density=density)


def records(values):
    result = []
    for c in codes:
        r = ref.two_group_test(c, values)
        result += [r["LOD"], r["Mean"][0], r["Mean"][1], r["Freq"][0], r["Freq"][1]]
    return result


def code(c):
    return f32(ref.code_value(c))


def pair_number(p, q):
    return sum(M - k for k in range(1, p)) + (q - p)


# Terms ascending: markers 3, 17, 30, then the pair (2, 8) numbered past the markers.
terms = [3, 17, 30, M + pair_number(2, 8)]
coef = [f32(19.87), f32(1.234567), f32(-0.7654321), f32(0.3333333), f32(-0.111111)]
with np.errstate(all="ignore"):
    fit = [f32(0.0)] * N
    for t, b in zip(terms, coef[1:]):
        for line in range(N):
            term = b * code(codes[t - 1][line]) if t <= M else b * code(codes[1][line]) * code(codes[7][line])
            fit[line] = fit[line] + term
    additive = []
    for m in range(1, M + 1):
        adj = [yi - fi for yi, fi in zip(y, fit)]
        if m in terms:
            b = coef[terms.index(m) + 1]
            adj = [a + b * code(codes[m - 1][line]) for line, a in enumerate(adj)]
        r = ref.two_group_test(codes[m - 1], adj)
        additive += [r["LOD"], r["Mean"][0], r["Mean"][1], r["Freq"][0], r["Freq"][1]]
out.case("scans", codes=" ".join(codes), y=y, single=records(y), terms=terms, coef=coef, fit=fit, additive=additive)
out.write("../data/exact_scans.txt")
