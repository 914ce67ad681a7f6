"""Reference values of the two-group likelihood ratio test, computed step
by step as the rules state it, marker by marker, one log density per line
(no hoisting), in float32.  Run with python3 from this folder; the output
is pasted into TwoGroupTestTest.cpp."""
import numpy as np

from float32 import NAN, f32, hexfloat, log10f

with np.errstate(all="ignore"):

    def log_density10(y, m, v):
        if not np.isnan(v) and not v > f32(0.0):
            return NAN
        a = log10f(f32(6.283185) * v)
        return -(f32(0.5) * a) - ((y - m) * (y - m)) / (f32(2.0) * v) / f32(2.3025851)

    def two_group_test(codes, y):
        y = [f32(v) for v in y]
        typed = [i for i, c in enumerate(codes) if c in "AB"]
        a_lines = [i for i in typed if codes[i] == "A"]
        b_lines = [i for i in typed if codes[i] == "B"]
        na, nb = len(a_lines), len(b_lines)

        def total(lines, term):
            s = f32(0.0)
            for i in lines:
                s = s + term(i)
            return s

        m0 = total(typed, lambda i: y[i]) / f32(na + nb)
        ma = total(a_lines, lambda i: y[i]) / f32(na)
        mb = total(b_lines, lambda i: y[i]) / f32(nb)
        fa = f32(na) / f32(na + nb)
        fb = f32(nb) / f32(na + nb)
        v0 = total(typed, lambda i: (y[i] - m0) * (y[i] - m0)) / f32(na + nb - 1)
        v1 = (total(a_lines, lambda i: (y[i] - ma) * (y[i] - ma)) +
              total(b_lines, lambda i: (y[i] - mb) * (y[i] - mb))) / f32(na + nb - 1)
        l0 = total(typed, lambda i: log_density10(y[i], m0, v0))
        l1 = total(typed, lambda i: log_density10(y[i], ma if codes[i] == "A" else mb, v1))
        lod = l1 - l0
        if lod < f32(0.0):
            lod = f32(0.0)
        return lod, ma, mb, fa, fb

    cases = {
        "Mixed": ("AABXBABAXABA", [3.1, 2.7, 1.2, 99.0, 0.4, 2.2, 1.9, 3.3, -5.0, 0.8, 1.1, 2.9]),
        "EqualMeans": ("ABABABABAB", [0.1, 0.5, 0.2, 0.4, 0.3, 0.3, 0.4, 0.2, 0.5, 0.1]),
        "Strong": ("AAAAABBBBB", [10.25, 11.5, 9.75, 10.5, 10.0, 7.5, 8.25, 7.0, 8.0, 7.75]),
    }
    print("// LogDensity10(1.5, 0.25, 2.0) =", hexfloat(log_density10(f32(1.5), f32(0.25), f32(2.0))))
    for name, (codes, y) in cases.items():
        lod, ma, mb, fa, fb = two_group_test(codes, y)
        print(f"// {name}: LOD {hexfloat(lod)} ({float(lod):.9g}), means {hexfloat(ma)} {hexfloat(mb)}, "
              f"freqs {hexfloat(fa)} {hexfloat(fb)}")

    # Cross-check of the step-by-step values with the closed form of the
    # LOD of two normal models, n/2 log10(RSS0/RSS1), in 64 bits.
    for name, (codes, y) in cases.items():
        t = [float(f32(v)) for c, v in zip(codes, y) if c in "AB"]
        g = [c for c in codes if c in "AB"]
        m = np.mean(t)
        ma = np.mean([v for v, c in zip(t, g) if c == "A"])
        mb = np.mean([v for v, c in zip(t, g) if c == "B"])
        rss0 = sum((v - m) ** 2 for v in t)
        rss1 = sum((v - (ma if c == "A" else mb)) ** 2 for v, c in zip(t, g))
        print(f"// {name}: closed form {len(t) / 2 * np.log10(rss0 / rss1):.9g}")
