"""The permutation test of a mapping run, for the expected tables of the
end-to-end projects: shuffles from the stream, the maximum of each
shuffle by the method's own start rule, and the pooled threshold, all in
float32."""
import numpy as np

from float32 import f32
import mapping_reference as ref

HEADING = "".join(t.rjust(w) for t, w in (("TraitID", 12), ("TraitName", 20), ("Environment", 12), ("Times", 12),
                                          ("MaxLOD", 12)))


def marker_maximum(rows_codes, y):
    """Starts at 0.0; only a LOD strictly above it replaces it."""
    best = f32(0.0)
    for codes in rows_codes:
        lod = ref.two_group_test(codes, y)["LOD"]
        if lod > best:
            best = lod
    return best


def threshold(maxima, alpha):
    n = len(maxima)
    if n == 0:
        return f32(0.0)
    b = sorted(maxima, key=lambda v: (bool(np.isnan(v)), v))
    at = lambda k: b[min(max(k, 1), n) - 1]
    q = f32(f32(n) * f32(f32(1.0) - f32(alpha)))
    whole = int(np.floor(q))
    if abs(f32(f32(whole) - q)) < f32(1.0e-8):
        return f32(f32(at(int(q)) + at(int(q) + 1)) * f32(0.5))
    return at(whole + 1)


def row(trait, name, env, k, value):
    return ref.place(trait, name, env, env + 1) + "%12d" % k + ref.fixed(value)


def closing_row(value):
    return "Threshold".rjust(12) + " " + "Threshold".rjust(19) + "Threshold".rjust(12) * 2 + ref.fixed(value)


CELLS = {("A", "A"): 0, ("A", "B"): 1, ("B", "A"): 2, ("B", "B"): 3}
WEIGHTS = [(0.25, 0.25, 0.25, 0.25), (0.25, 0.25, -0.25, -0.25), (0.25, -0.25, 0.25, -0.25)]


def four_group_lod(codes1, codes2, y):
    """LOD(1), the evidence of epistasis, of the four-group test of a pair."""
    with np.errstate(all="ignore"):
        lines = [(CELLS[(a, b)], v) for a, b, v in zip(codes1, codes2, y) if (a, b) in CELLS]
        n = len(lines)
        counts, sums, total = [0] * 4, [f32(0.0)] * 4, f32(0.0)
        for k, v in lines:
            counts[k] += 1
            sums[k] = sums[k] + v
            total = total + v
        m0 = total / f32(n)
        means = [sums[k] / f32(counts[k]) for k in range(4)]
        effects = []
        for weights in WEIGHTS:
            s = f32(0.0)
            for w, p in zip(weights, means):
                s = s + f32(w) * p
            effects.append(f32(0.0) if np.isnan(s) else s)
        mean, add1, add2 = effects
        e = [mean + add1 + add2, mean + add1 - add2, mean - add1 + add2, mean - add1 - add2]
        ss = [f32(0.0)] * 3
        for k, v in lines:
            for i, m in enumerate((m0, means[k], e[k])):
                ss[i] = ss[i] + (v - m) * (v - m)
        var = [s / f32(n - 1) for s in ss]
        logl = [f32(0.0)] * 3
        for k, v in lines:
            for i, m in enumerate((m0, means[k], e[k])):
                logl[i] = logl[i] + ref.log_density10(v, m, var[i])
        lod1, lod2 = logl[1] - logl[2], logl[1] - logl[0]
        lod1 = f32(0.0) if lod1 < 0 else lod1
        lod2 = f32(0.0) if lod2 < 0 else lod2
        return lod2 if lod1 > lod2 else lod1


def pair_maximum(rows_codes, y):
    """Starts at LOD(1) of pair (1, 2), whatever it is."""
    best = None
    for i in range(len(rows_codes)):
        for j in range(i + 1, len(rows_codes)):
            lod = four_group_lod(rows_codes[i], rows_codes[j], y)
            if best is None or lod > best:
                best = lod
    return f32(0.0) if best is None else best
