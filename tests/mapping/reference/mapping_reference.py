"""An independent model of a mapping run's tables, for the expected files of
the end-to-end projects.  The line values, the two-group test and the
flagging follow the stated steps in float32 (see float32.py); the R-square
of the flagged markers, the stepwise model and the additive fit are worked
out in float64 from closed forms of least squares (scipy for the t
distribution), which is exact enough for 4 decimals.  Tables are formatted
with Python's own formatting."""
import numpy as np
from scipy import stats

from float32 import NAN, f32, log10f

MISSING = f32(-9999.0)


def is_missing(v):
    return np.isnan(v) or abs(v - MISSING) < f32(0.0001)


def fill_line(cells):
    """The missing-cell rule for one line: cells in the stated summing
    order.  Returns the filled cells, or None for a line without data."""
    mask = [0 if is_missing(c) else 1 for c in cells]
    gaps = len(cells) - sum(mask)
    if gaps == len(cells):
        return None
    if gaps == 0:
        return list(cells)
    s = f32(0.0)
    for c, k in zip(cells, mask):
        s = s + c * f32(k)
    fill = s / f32(len(cells) - gaps)
    return [c if k else fill for c, k in zip(cells, mask)]


def line_means(pheno, t, e, num_envs, num_reps):
    """pheno[line][t][e][r] as float32.  e = num_envs + 1 is the mean over
    all environments, replications outer.  Returns (kept line numbers,
    means)."""
    kept, means = [], []
    with np.errstate(all="ignore"):
        for line, cells in enumerate(pheno, start=1):
            if e <= num_envs:
                order = [(e, r) for r in range(num_reps)]
                filled = fill_line([cells[t][e - 1][r] for r in range(num_reps)])
                divisor = f32(num_reps)
            else:
                # The rule runs over environments inner, replications outer
                # for the sum of the fill; the mean sums the same way.
                order = [(env, r) for r in range(num_reps) for env in range(1, num_envs + 1)]
                filled = fill_line([cells[t][env - 1][r] for env, r in order])
                divisor = f32(num_reps * num_envs)
            if filled is None:
                continue
            s = f32(0.0)
            for v in filled:
                s = s + v
            kept.append(line)
            means.append(s / divisor)
    return kept, means


def column_variance(x):
    with np.errstate(all="ignore"):
        valid = [v for v in x if not is_missing(v)]
        m = len(valid)
        s, ss = f32(0.0), f32(0.0)
        for v in valid:
            s = s + v
            ss = ss + v * v
        mean = s / f32(m)
        return ((ss / f32(m) - mean * mean) * f32(m)) / f32(m - 1)


def log_density10(y, m, v):
    if not np.isnan(v) and not v > f32(0.0):
        return NAN
    a = log10f(f32(6.283185) * v)
    return -(f32(0.5) * a) - ((y - m) * (y - m)) / (f32(2.0) * v) / f32(2.3025851)


def two_group_test(codes, y):
    """codes: a string of genotype letters, y: float32 values."""
    with np.errstate(all="ignore"):
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
        return {"LOD": lod, "Mean": (ma, mb), "Freq": (fa, fb)}


def has_nan(record):
    return any(np.isnan(v) for v in (record["LOD"],) + record["Mean"] + record["Freq"])


def genetic_variance(record):
    with np.errstate(all="ignore"):
        f1, f2 = record["Freq"]
        m1, m2 = record["Mean"]
        total = f1 + f2
        p1, p2 = f1 / total, f2 / total
        mu = p1 * m1 + p2 * m2
        q = p1 * (m1 * m1) + p2 * (m2 * m2)
        vg = q - mu * mu
        return f32(0.0) if np.isnan(vg) else vg


def code_value(c):
    return 1.0 if c == "A" else -1.0 if c == "B" else 0.0


def r_square_of_flagged(columns, y):
    """R-square of least squares with an intercept, in float64; asserts the
    determinant branch that leads there (variances by N - 1 on the
    diagonal, covariances by N elsewhere)."""
    if not columns:
        return 0.0
    n = len(y)
    x = np.array([[code_value(c) for c in col] for col in columns], dtype=np.float64)
    xc = x - x.mean(axis=1, keepdims=True)
    c = xc @ xc.T / n
    np.fill_diagonal(c, (xc * xc).sum(axis=1) / (n - 1))
    assert abs(np.linalg.det(c)) > 0.0001, "the stepwise branch would be taken"
    yv = np.array(y, dtype=np.float64)
    design = np.column_stack([np.ones(n)] + list(x))
    beta, *_ = np.linalg.lstsq(design, yv, rcond=None)
    sse = float(((yv - design @ beta) ** 2).sum())
    sst = float(((yv - yv.mean()) ** 2).sum())
    return (sst - sse) / sst


def place(trait, name, env, num_envs):
    label = "Mean".rjust(12) if env == num_envs + 1 else "%12d" % env
    return "%12d" % trait + " " + name.rjust(19) + label


def fixed(v):
    v = f32(v)
    if np.isnan(v):
        return "NaN".rjust(12)
    return "%12.4f" % float(v)


def marker_tables(trait, name, env, num_envs, kept_markers, marker_names, records, var_p, threshold, rows_codes,
                  y):
    """Rows of the full and the selected table of one pass.  records in
    kept-marker order; rows_codes the codes of each kept marker over the
    kept lines."""
    flagged = [not has_nan(r) and r["LOD"] > f32(threshold) for r in records]
    sum_vg = f32(0.0)
    for r, flag in zip(records, flagged):
        if flag:
            sum_vg = sum_vg + genetic_variance(r)
    rsq = r_square_of_flagged([codes for codes, flag in zip(rows_codes, flagged) if flag], y)
    full, selected, shares = [], [], []
    with np.errstate(all="ignore"):
        for marker_id, r, flag in zip(kept_markers, records, flagged):
            if has_nan(r):
                continue
            m1, m2 = r["Mean"]
            add = f32(0.5) * m1 - f32(0.5) * m2
            vg = genetic_variance(r)
            head = place(trait, name, env, num_envs) + "%12d" % marker_id + " " + marker_names[marker_id - 1].rjust(35)
            pve = vg * f32(100.0) / f32(var_p)
            pve = f32(0.0) if np.isnan(pve) or pve < 0 else pve
            full.append(head + fixed(r["LOD"]) + fixed(pve) + fixed(add) + fixed(m1) + fixed(m2))
            if flag:
                share = float(vg) * 100.0 / float(sum_vg) * rsq
                share = 0.0 if np.isnan(share) or share < 0 else share
                shares.append(share)
                selected.append(head + fixed(r["LOD"]) + fixed(share) + fixed(add) + fixed(m1) + fixed(m2))
    return full, selected, shares, rsq


def stepwise(columns, y, pin, pout):
    """Forward-backward selection by partial t tests, as the covariance
    sweep decides it: a candidate enters when its p, with the degrees of
    freedom of the model it would join, is strictly below pin; a member
    leaves when its p is strictly above pout.  Returns the selected column
    indices (0-based, ascending), their slopes, the intercept and the
    adjusted R-square in percent (0.0 when none entered)."""
    n = len(y)
    yv = np.array(y, dtype=np.float64)
    x = [np.array([code_value(c) for c in col]) for col in columns]

    def fit(members):
        design = np.column_stack([np.ones(n)] + [x[j] for j in members])
        beta, *_ = np.linalg.lstsq(design, yv, rcond=None)
        resid = yv - design @ beta
        sse = float(resid @ resid)
        df = n - len(members) - 1
        cov = np.linalg.inv(design.T @ design) * sse / df
        t = np.abs(beta[1:] / np.sqrt(np.diag(cov)[1:]))
        return beta, sse, t, 2 * (1 - stats.t.cdf(t, df))

    model = []
    for _ in range(4 * len(columns)):
        if model:
            _, _, t, p = fit(model)
            weakest = int(np.argmin(t))
            if p[weakest] > pout:
                model.pop(weakest)
                continue
        best = None
        for j in range(len(columns)):
            if j in model or np.var(x[j]) == 0:
                continue
            joined = sorted(model + [j])
            _, _, t, p = fit(joined)
            k = joined.index(j)
            if best is None or t[k] > best[1]:
                best = (j, t[k], p[k])
        if best is not None and best[2] < pin:
            model = sorted(model + [best[0]])
            continue
        break
    if not model:
        return [], [], float(np.mean(yv)), 0.0
    beta, sse, _, _ = fit(model)
    sst = float(((yv - yv.mean()) ** 2).sum())
    adj = 100.0 * (1.0 - (sse / (n - len(model) - 1)) / (sst / (n - 1)))
    return model, list(beta[1:]), float(beta[0]), max(adj, 0.0)
