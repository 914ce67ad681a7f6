"""Expected ".sta" of a project from its phenotype rows, in float64 with numpy
and scipy: the missing rule, the line means, their statistics and W test, and
the one-way and two-way analyses of variance from the textbook formulas.
usage: /usr/bin/python3 expected_sta.py study.txt NumEnvs NumReps"""
import math
import sys

import numpy as np
from scipy import stats as st

from w_test import swilk

NAN = float("nan")
HEAD = ("     TraitID           TraitName  SampleSize        Mean    Variance    StdError"
        "    Skewness    Kurtosis     Minimum     Maximum       Range      W-test     P-value")
FIT = "    R-square(%) AdjustedR^2(%)   Est.Std.Dev.           Mean"
SOURCES = ("         Source             DF             SS             MS              F"
           "              P")


def e_form(v, w=12, e=2):
    """0.dddd E+xx, the mantissa rounded to four digits."""
    if v != v:
        return "NaN".rjust(w)
    m, x = 0, 0
    if v != 0:
        x = math.floor(math.log10(abs(v))) + 1
        m = round(abs(v) / 10 ** x, 4)
        if m >= 1.0:
            m, x = m / 10, x + 1
        m = round(m * 1e4)
    sign = "-" if v < 0 else ""
    return (sign + "0.%04dE%s%0*d" % (m, "-" if x < 0 else "+", e, abs(x))).rjust(w)


def fixed(v, w=12):
    if v != v:
        return "NaN".rjust(w)
    return "Infinity".rjust(w) if v == float("inf") else ("%.4f" % v).rjust(w)


def source(label, df, values):
    return label.rjust(15) + "%15d" % df + "".join(
        e_form(v, 15, 3) if i == 3 else fixed(v, 15) for i, v in enumerate(values))


def summary_row(t, name, means):
    head = "%12d" % t + " " + name.rjust(19)
    if not means:
        return head + "%12d" % 0 + fixed(-9999.0) * 9 + e_form(-9999.0)
    x = np.asarray(means, dtype=np.float64)
    n, d = len(x), x - x.mean()
    var = (d ** 2).sum() / (n - 1) if n > 1 else NAN
    s2 = (d ** 2).sum() / n
    skew = (d ** 3).sum() / (n * s2 ** 1.5) if n > 1 and s2 > 0 else (0.0 if n > 1 else NAN)
    kurt = (d ** 4).sum() / (n * s2 ** 2) - 3 if n > 1 and s2 > 0 else (0.0 if n > 1 else NAN)
    w, p = swilk(means) if n >= 3 else (-9999.0, -9999.0)
    values = (x.mean(), var, np.sqrt(var), skew, kurt, x.min(), x.max(), x.max() - x.min(), w)
    return head + "%12d" % n + "".join(fixed(v) for v in values) + e_form(p)


def oneway_lines(v):
    """v[line][rep]; no line at all: no group, model DF -1, error DF 0."""
    if not v:
        return [FIT, fixed(NAN, 15) * 4, "", SOURCES,
                source("Among Groups", -1, [0.0, -0.0, NAN, NAN]),
                source("Within Groups", 0, [0.0, NAN]), source("Total", -1, [0.0]), ""]
    v = np.asarray(v, dtype=np.float64)
    k, r = v.shape
    gm, lm = v.mean(), v.mean(axis=1)
    ssa, sse = r * ((lm - gm) ** 2).sum(), ((v - lm[:, None]) ** 2).sum()
    dfa, dfe = k - 1, k * (r - 1)
    f = (ssa / dfa) / (sse / dfe) if sse > 0 else NAN
    q = (sse / dfe) / ((ssa + sse) / (dfa + dfe))  # a fit worse than the mean alone: 0 %
    fit = (100 * ssa / (ssa + sse), 0.0 if q > 1.0 else 100 * (1 - q), np.sqrt(sse / dfe), gm)
    return [FIT, "".join(fixed(x, 15) for x in fit), "", SOURCES,
            source("Among Groups", dfa, [ssa, ssa / dfa, f, st.f.sf(f, dfa, dfe)]),
            source("Within Groups", dfe, [sse, sse / dfe]),
            source("Total", dfa + dfe, [ssa + sse]), ""]


def twoway_lines(v):
    """v[line][env][rep], balanced."""
    v = np.asarray(v, dtype=np.float64)
    k, e, r = v.shape
    gm, a, b, c = v.mean(), v.mean(axis=(1, 2)), v.mean(axis=(0, 2)), v.mean(axis=2)
    ssa, ssb = e * r * ((a - gm) ** 2).sum(), k * r * ((b - gm) ** 2).sum()
    ssab = r * ((c - a[:, None] - b[None, :] + gm) ** 2).sum()
    sse = ((v - c[:, :, None]) ** 2).sum()
    ssm, dfm, dfe = ssa + ssb + ssab, k * e - 1, k * e * (r - 1)
    mse = sse / dfe

    def effect(label, ss, df):
        return source(label, df, [ss, ss / df, (ss / df) / mse, st.f.sf((ss / df) / mse, df, dfe)])

    q = mse / ((ssm + sse) / (k * e * r - 1))
    fit = (100 * ssm / (ssm + sse), 0.0 if q > 1.0 else 100 * (1 - q), np.sqrt(mse), gm)
    return ["   R-square (%) AdjustedR^2(%) Est. Std. Dev.           Mean",
            "".join(fixed(x, 15) for x in fit), "", SOURCES, effect("Model", ssm, dfm),
            source("Error", dfe, [sse, mse]), source("Total", k * e * r - 1, [ssm + sse]), "",
            "Variation due to the model", SOURCES, effect("A (Lines)", ssa, k - 1),
            effect("B (Envs)", ssb, e - 1), effect("AxB", ssab, (k - 1) * (e - 1)), ""]


def filled(cells):
    """The lines with data, a missing cell given the mean of the line's others;
    cells[line] nested by environment and replication or by replication."""
    out = []
    for line in cells:
        line = np.array(line, dtype=object)
        valid = [x for x in line.ravel() if x is not None]
        if valid:
            m = sum(valid) / len(valid)
            out.append(np.where(line == None, m, line).astype(np.float64))  # noqa: E711
    return out


def sta(traits, num_envs, num_reps):
    """traits: (name, cells[line][env][rep], None where missing)."""
    out = [HEAD]
    for t, (name, cells) in enumerate(traits, 1):
        for e in range(num_envs):
            out.append(summary_row(t, name, [np.mean(v) for v in filled([c[e] for c in cells])]))
        out.append(summary_row(t, name, [np.mean(v) for v in filled(cells)]))
    out.append("")
    for t, (name, cells) in enumerate(traits, 1):
        if num_reps >= 2:
            for e in range(num_envs):
                out += oneway_lines(filled([c[e] for c in cells]))
            if num_envs > 1:
                out += twoway_lines(filled(cells))
    return "\n".join(out) + "\n"


def parse(path, num_envs, num_reps):
    """The phenotype rows after the genotypes: name and values, in the order
    trait, environment, replication."""
    rows = [line.split() for line in open(path) if line.strip() and not line.startswith("!")]
    num_markers, n, num_traits = int(rows[1][0]), int(rows[2][0]), int(rows[3][0])
    block = num_envs * num_reps
    value = lambda s: None if s in ("NA", "na", "*", ".", "-") else float(s)  # noqa: E731
    traits = []
    for t in range(num_traits):
        rows_t = rows[6 + num_markers + t * block:6 + num_markers + (t + 1) * block]
        cells = [[[value(rows_t[e * num_reps + r][1 + i]) for r in range(num_reps)]
                  for e in range(num_envs)] for i in range(n)]
        traits.append((rows_t[0][0], cells))
    return traits


if __name__ == "__main__":
    num_envs, num_reps = int(sys.argv[2]), int(sys.argv[3])
    sys.stdout.write(sta(parse(sys.argv[1], num_envs, num_reps), num_envs, num_reps))
