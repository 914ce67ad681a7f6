"""Expected bits of the 32-bit numerical routines in float32, on hundreds of
values with many decimals.  Probabilities that rest on the incomplete beta or
the complementary error function, whose inner arithmetic is free, are stored
from scipy in 64 bits.  Writes ../data/exact_numerics.txt; run with
/usr/bin/python3."""
import os
import sys

import numpy as np
from scipy import special, stats

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "mapping", "reference"))
from bit_cases import BitCases  # noqa: E402
from float32 import MISSING, NAN, f32, is_missing, libm_float, total  # noqa: E402
from mapping_reference import column_covariance, column_variance  # noqa: E402

atanf, powf = libm_float("atanf"), libm_float("powf", 2)
rng = np.random.default_rng(13)
out = BitCases()


def decimals(n, centre, spread):
    return [f32(round(v, 6)) for v in rng.normal(centre, spread, n)]


def divide(a, b):  # the guarded quotient of finite, well-scaled values
    return NAN if np.isnan(a) or np.isnan(b) else a / b


def chain_shows(n):  # ((S/M - mean^2) M) / (M - 1) differs from its regrouping
    x = decimals(n, 3.3, 2.0)
    m, mean = f32(n), total(x) / f32(n)
    p = total(v * v for v in x) / m - mean * mean
    return x if (p * m) / f32(n - 1) != p * (m / f32(n - 1)) else None


def aov(dfr, ssr, dfe, sse, mean):
    dft, sst = dfr + dfe, ssr + sse
    msr, mse = divide(ssr, dfr), divide(sse, dfe)
    q = divide(mse, divide(sst, dft))
    sd = np.sqrt(mse)
    adjusted = f32(0.0) if q > f32(1.0) else f32(100.0) * (f32(1.0) - q)
    return [dfr, dfe, dft, ssr, sse, sst, msr, mse, divide(msr, mse), NAN,
            divide(f32(100.0) * ssr, sst), adjusted, sd, mean, divide(f32(100.0) * sd, mean)]


def f_probability(f, dfr, dfe):
    return stats.f.sf(float(f), float(dfr), float(dfe))


def tdf_series(t, df):
    t2 = t * t
    y = t2 / df
    b = f32(1.0) + y
    if t2 < f32(4.0):
        s = np.sqrt(y)
        z = f32(0.0) if df == f32(1.0) else s
        n = df - f32(2.0)
        while n > f32(1.0):
            z = s + ((n - f32(1.0)) / (b * n)) * z
            n = n - f32(2.0)
        z = z / np.sqrt(b) if n == f32(0.0) else (z / b + atanf(s)) * f32(0.63661975)
        p = f32(1.0) - z
    else:
        s, u, i = f32(1.0), df, f32(0.0)
        while True:
            before = s
            i = i + f32(2.0)
            u = (i - f32(1.0)) * u / (b * i)
            s = s + u / (df + i)
            if s == before:
                break
        n = df
        while n > f32(1.0) and s >= f32(1.0e-30):
            s = s * (n - f32(1.0)) / (b * n)
            n = n - f32(2.0)
        if n != f32(0.0):
            s = np.sqrt(b) * f32(0.63661975) * s / b
        p = s
    return f32(1.0) - f32(0.5) * p if t > f32(0.0) else f32(0.5) * p


def score_constants(i):
    table = {1: (0.419885, 0.474798, 0.282765, 0.112063, 0.080122),
             2: (0.450536, 0.469051, 0.304856, 0.12177, 0.111348),
             3: (0.456936, 0.208597, 0.407708, 0.239299, -0.211867)}
    if i in table:
        return [f32(v) for v in table[i]]
    return [f32(0.468488), f32(0.259784), f32(0.414093) - f32(0.283833) / (f32(i) - f32(0.106136)),
            f32(0.215159), f32(-0.115049)]


def correc(i, n):
    c1 = [9.5, 28.7, 1.9, 0, -7, -6.2, -1.6]
    c2 = [-6195, -9569, -6728, -17614, -8278, -3570, 1075]
    c3 = [93380, 175160, 410400, 2157000, 2376000, 2065000, 2065000]
    if i * n == 4:
        return f32(1.9e-5)
    if i > 7 or n > 40 or (i != 4 and n > 20):
        return f32(0.0)
    w = f32(1.0) / (f32(n) * f32(n))
    return (f32(c1[i - 1]) + w * (f32(c2[i - 1]) + w * f32(c3[i - 1]))) * f32(1e-6)


# Column statistics: sums of x, x*x, y, x*y over the valid pairs.
chain = next(x for x in map(chain_shows, range(40, 400)) if x is not None)
for name, n, centre in (("small", 300, 0.3), ("large", 300, 1234.5), ("few", 31, -7.7),
                        ("chain", len(chain), 0)):
    x = decimals(n, centre, 2.0) if name != "chain" else list(chain)
    y = decimals(n, -centre, 3.0)
    for i in range(7, n, 41) if name != "chain" else ():
        x[i] = MISSING
    y[5] = y[n // 2] = f32("nan")
    valid = [v for v in x if not is_missing(v)]
    pairs = [(a, b) for a, b in zip(x, y) if not is_missing(a) and not is_missing(b)]
    px, py = [a for a, _ in pairs], [b for _, b in pairs]
    cov = column_covariance(px, py)
    corr = cov / np.sqrt(column_covariance(px, px) * column_covariance(py, py))
    mean = total(valid) / f32(len(valid))
    out.case("column_" + name, x=x, y=y, stats=[mean, column_variance(x), cov, corr])

# UVSTA: 64-bit running mean and update arithmetic, 32-bit moments.
for name, centre in (("small", 0.7), ("large", 5432.1)):
    x = decimals(400, centre, 1.5)
    x[10] = f32("nan")
    valid = [v for v in x if not np.isnan(v)]
    n, mean, s2, s3, s4 = 0, 0.0, f32(0), f32(0), f32(0)
    for v in valid:
        n += 1
        d = float(v) - mean
        e = d / n
        s4 = f32(float(s4) + d * d * d * d * (n - 1.0) * (n * n - 3.0 * n + 3.0) / (n * n * n) +
                 6.0 * e * e * float(s2) - 4.0 * e * float(s3))
        s3 = f32(float(s3) + d * d * d * (n - 1.0) * (n - 2.0) / (n * n) - 3.0 * e * float(s2))
        s2 = f32(float(s2) + d * d * (n - 1.0) / n)
        mean += e
    lo, hi = min(valid), max(valid)
    c = f32(n)
    var = s2 / (c - f32(1))
    p2 = s2 / c
    s = np.sqrt(p2)
    out.case("uvsta_" + name, x=x, stats=[f32(mean), var, np.sqrt(var), s3 / (c * (s * s * s)),
                                          s4 / (c * (p2 * p2)) - f32(3.0), lo, hi, hi - lo, NAN, c])

# One-way analysis of groups of unequal size.
ni = [int(v) for v in rng.integers(2, 9, 60)]
y = decimals(sum(ni), 57.3, 4.0)
groups = [y[end - k:end] for k, end in zip(ni, np.cumsum(ni))]
sums = [total(g) for g in groups]
means = [s / f32(len(g)) for s, g in zip(sums, groups)]
mean = total(sums) / f32(len(y))
ssm = total(f32(len(g)) * ((gm - mean) * (gm - mean)) for g, gm in zip(groups, means))
sse = total(total((v - gm) * (v - gm) for v in g) for g, gm in zip(groups, means))
dfr = f32(len(ni) - 1)
table = aov(dfr, ssm, f32(len(y) - 1) - dfr, sse, mean)
out.case("aonew", ni=ni, y=y, aov=table, p=[f_probability(table[8], table[0], table[1])])

# Two-way analyses: levels A, B, replications, the last subscript
# fastest; the small one has values of mixed signs and few cells, so
# that the order of the subtractions shows in the interaction.
for name, na, nb, nr, centre in (("anway", 40, 3, 4, 81.7), ("anway_small", 3, 2, 2, 0.3)):
    y = decimals(na * nb * nr, centre, 5.0)
    at = lambda a, b, r: y[(a * nb + b) * nr + r]  # noqa: E731
    s = [[total(at(a, b, r) for r in range(nr)) for b in range(nb)] for a in range(na)]
    cell = [[v / f32(nr) for v in sums] for sums in s]
    row = [total(s[a]) / f32(nb * nr) for a in range(na)]
    col = [total(s[a][b] for a in range(na)) / f32(na * nr) for b in range(nb)]
    gm = total(v for sums in s for v in sums) / f32(na * nb * nr)
    sa, sb = total((v - gm) * (v - gm) for v in row), total((v - gm) * (v - gm) for v in col)
    inter = [cell[a][b] - row[a] - col[b] + gm for a in range(na) for b in range(nb)]
    sab = total(i * i for i in inter)
    sse = total((at(a, b, r) - cell[a][b]) * (at(a, b, r) - cell[a][b])
                for a in range(na) for b in range(nb) for r in range(nr))
    ssa, ssb, ssab = f32(nb * nr) * sa, f32(na * nr) * sb, f32(nr) * sab
    dfa, dfb = f32(na - 1), f32(nb - 1)
    table = aov(f32(na * nb - 1), ssa + ssb + ssab, f32(na * nb * (nr - 1)), sse, gm)
    effects, p = [], [f_probability(table[8], table[0], table[1])]
    for df, ss in ((dfa, ssa), (dfb, ssb), (dfa * dfb, ssab)):
        f = divide(divide(ss, df), table[7])
        effects += [df, ss, f]
        p.append(f_probability(f, df, table[1]))
    out.case(name, nl=[na, nb, nr], y=y, aov=table, effects=effects, p=p)

# TDF at the switch-overs: df = t2 (incomplete beta), whole df 19 / 20,
# t2 just below and at 4.0; the series branches are pinned bit for bit.
below4 = np.nextafter(f32(2.0), f32(0.0))
exact, near = [], []
for df in (1, 2, 3, 4, 5, 18, 19):
    for t in (f32(0.37), below4, f32(2.0), -below4, f32(-2.0), f32(2.7183)):
        if t * t < f32(df):
            exact += [t, f32(df), tdf_series(t, f32(df))]
for t, df in ((2.0, 4.0), (-2.0, 4.0), (3.0, 9.0), (1.5, 2.25), (below4, 19.5), (2.0, 20.0),
              (-1.3, 20.0), (2.5, 19.0001), (0.2, 150.0)):
    t, df = f32(t), f32(df)
    near += [t, df, f32(stats.t.cdf(float(t), float(df)))]
out.case("tdf", exact=exact, near=near)

# Normal scores across the ranges of the correction and of the inverse
# normal (centre |p - 0.5| <= 0.425, tails below and above r = 5).
scores = []
for n in (3, 4, 7, 20, 21, 40, 41, 400, 2000):
    for i in sorted({1, 2, 3, 4, 5, 7, 8, n // 2}):
        if i <= n // 2:
            p, g, l, d1, d2 = score_constants(i)
            e1 = (f32(i) - p) / (f32(n) + g)
            e2 = powf(e1, l)
            tail = e1 - correc(i, n) + e2 * (d1 + e2 * d2) / f32(n)
            scores += [f32(i), f32(n), -f32(special.ndtri(float(tail)))]
inverse = []
for p in (0.075, np.nextafter(f32(0.075), f32(0)), 0.925, 0.5, 0.3, 1e-6, 0.9999, 1.3e-11, 1e-30):
    inverse += [f32(p), f32(special.ndtri(float(f32(p))))]
out.case("normal_scores", scores=scores, inverse=inverse)

out.write(os.path.join(os.path.dirname(__file__), "..", "data", "exact_numerics.txt"))
