"""Reference values of the two-group likelihood ratio test, computed step
by step as the rules state it, marker by marker, one log density per line
(no hoisting), in float32.  Run with python3 from this folder; the output
is pasted into TwoGroupTestTest.cpp."""
import numpy as np

from float32 import f32, hexfloat
from mapping_reference import log_density10, two_group_test

with np.errstate(all="ignore"):
    cases = {
        "Mixed": ("AABXBABAXABA", [3.1, 2.7, 1.2, 99.0, 0.4, 2.2, 1.9, 3.3, -5.0, 0.8, 1.1, 2.9]),
        "EqualMeans": ("ABABABABAB", [0.1, 0.5, 0.2, 0.4, 0.3, 0.3, 0.4, 0.2, 0.5, 0.1]),
        "Strong": ("AAAAABBBBB", [10.25, 11.5, 9.75, 10.5, 10.0, 7.5, 8.25, 7.0, 8.0, 7.75]),
    }
    print("// LogDensity10(1.5, 0.25, 2.0) =", hexfloat(log_density10(f32(1.5), f32(0.25), f32(2.0))))
    for name, (codes, y) in cases.items():
        record = two_group_test(codes, [f32(v) for v in y])
        lod, (ma, mb), (fa, fb) = record["LOD"], record["Mean"], record["Freq"]
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
