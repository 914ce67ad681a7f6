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


def pair_maximum(rows_codes, y):
    """LOD(1), the evidence of epistasis, of each pair; starts at pair
    (1, 2), whatever it is."""
    best = None
    for i in range(len(rows_codes)):
        for j in range(i + 1, len(rows_codes)):
            lod = ref.four_group_test(rows_codes[i], rows_codes[j], y)["LOD"][0]
            if best is None or lod > best:
                best = lod
    return f32(0.0) if best is None else best
