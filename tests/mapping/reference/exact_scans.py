"""Expected bits of the log density, the single-marker scan and the additive scan
(a model of markers and a marker pair) on 300 lines with many decimals and
missing genotypes.  Writes ../data/exact_scans.txt; run with /usr/bin/python3 here."""
import numpy as np

from bit_cases import BitCases
from float32 import f32, total
import mapping_reference as ref

rng = np.random.default_rng(29)
M, N = 45, 300
codes = ["".join(rng.choice(list("AABBX"), N)) for _ in range(M)]
codes[4] = "A" * N  # monomorphic: a NaN record
codes[9] = "X" * (N - 1) + "B"
y = [f32(round(v, 5)) for v in rng.normal(20.0, 3.0, N)]
out = BitCases()

density = []
for yi, m, v in ((1.5, 0.25, 2.0), (-3.1234567, 2.7182817, 0.0123457), (123.456, 120.1, 31.4159),
                 (1.0, 1.0, 0.0), (1.0, 0.0, -1.0)):
    density += [f32(yi), f32(m), f32(v), ref.log_density10(f32(yi), f32(m), f32(v))]
out.case("log_density", density=density)


def fields(records):
    return [v for r in records for v in (r["LOD"],) + r["Mean"] + r["Freq"]]


# Terms ascending: markers 3, 17, 30, then the pair (2, 8), numbered past the
# markers and the M - 1 pairs of marker 1.
terms = [3, 17, 30, M + (M - 1) + (8 - 2)]
coef = [f32(19.87), f32(1.234567), f32(-0.7654321), f32(0.3333333), f32(-0.111111)]
code = lambda c: f32(ref.code_value(c))  # noqa: E731
pair = lambda line: code(codes[1][line]) * code(codes[7][line])  # noqa: E731
fit = [total(b * code(codes[t - 1][line]) if t <= M else b * pair(line)
             for t, b in zip(terms, coef[1:])) for line in range(N)]
slopes = {t - 1: b for t, b in zip(terms, coef[1:]) if t <= M}
single = fields(ref.two_group_test(c, y) for c in codes)
additive = fields(ref.additive_records(codes, y, slopes, fit))
out.case("scans", codes=" ".join(codes), y=y, single=single, terms=terms, coef=coef, fit=fit,
         additive=additive)
out.write("../data/exact_scans.txt")
