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
    """R-square of the flagged markers: columns of code letters."""
    return r_square_of_columns([[code_value(c) for c in col] for col in columns], y)


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
                share = (vg * f32(100.0) / sum_vg) * f32(rsq)
                share = f32(0.0) if np.isnan(share) or share < 0 else share
                assert_stable_share(lambda q: (vg * f32(100.0) / sum_vg) * q, rsq)
                shares.append(share)
                selected.append(head + fixed(r["LOD"]) + fixed(share) + fixed(add) + fixed(m1) + fixed(m2))
    return full, selected, shares, rsq


def stepwise(columns, y, pin, pout):
    """Forward-backward selection by partial t tests, as the covariance
    sweep decides it: a candidate enters when its p, with the degrees of
    freedom of the model it would join, is strictly below pin; a member
    leaves when its p is strictly above pout.  Returns the selected column
    indices (0-based, ascending), their slopes, the intercept and the
    adjusted R-square in percent (0.0 when none entered), and the smallest
    factor by which a p-value of the last step stood from its limit."""
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
    margin = float("inf")
    for _ in range(4 * len(columns)):
        if model:
            _, _, t, p = fit(model)
            weakest = int(np.argmin(t))
            margin = min(margin, pout / p[weakest])
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
            margin = float("inf")
            continue
        if best is not None:
            margin = min(margin, best[2] / pin)
        break
    if not model:
        return [], [], float(np.mean(yv)), 0.0, margin
    beta, sse, _, _ = fit(model)
    sst = float(((yv - yv.mean()) ** 2).sum())
    adj = 100.0 * (1.0 - (sse / (n - len(model) - 1)) / (sst / (n - 1)))
    return model, list(beta[1:]), float(beta[0]), max(adj, 0.0), margin


def model_fit(slopes, kept, code):
    """The fit of a model without its intercept at each kept line (1-based
    line numbers): slopes maps a 0-based marker to its coefficient, in the
    order of the terms; code(m, l) the regressor of marker m at line l
    (0-based); terms added from 0.0 in float32."""
    fit = []
    for l in kept:
        v = f32(0.0)
        for m, slope in slopes.items():
            v = v + slope * f32(code(m, l - 1))
        fit.append(v)
    return fit


def column_covariance(x, y):
    """Sum of x y divided by M, less the product of the two means; 32 bits."""
    m = len(x)
    sx, sy, sxy = f32(0.0), f32(0.0), f32(0.0)
    for a, b in zip(x, y):
        sx = sx + a
        sy = sy + b
        sxy = sxy + a * b
    return sxy / f32(m) - (sx / f32(m)) * (sy / f32(m))


def distance(p, limit):
    """The factor by which p stands from its limit, on either side."""
    return max(p / limit, limit / p) if p > 0 else float("inf")


def stepwise32(columns, y, pin, pout):
    """The stepwise selection by covariance sweeps as the rules state it, in
    float32: centred columns, the covariance matrix by N, sweeps of its
    upper triangle, estimates read off the swept matrix, the intercept and
    the adjusted R-square of the analysis of variance.  The p-values that
    decide a step come from scipy in 64 bits; the margin returned (the
    smallest factor by which a deciding p stood from its limit) shows that
    32-bit p-values would decide the same.  Returns (terms 0-based, slopes,
    intercept, adjusted R-square, margin) with float32 numbers."""
    v, n = len(columns), len(y)
    xbar = [f32(sum(int(code_value(c)) for c in col)) / f32(n) for col in columns]
    cols = [[f32(code_value(c)) - xbar[m] for c in col] for m, col in enumerate(columns)]
    s = f32(0.0)
    for value in y:
        s = s + value
    ybar = s / f32(n)
    cols.append([value - ybar for value in y])
    nvar = v + 1
    cov = [[column_covariance(cols[i], cols[j]) for j in range(nvar)] for i in range(nvar)]
    tol = f32(100.0) * f32(2.0 ** -23)
    idep = nvar - 1

    def run(pin, pout):
        a = [row[:] for row in cov]
        scale = [cov[i][i] for i in range(nvar)]
        swept = [f32(-1.0)] * nvar
        hist = [0.0] * nvar

        def at(i, j):
            return a[min(i, j)][max(i, j)]

        def sweep(k):
            p = a[k][k]
            if swept[k] <= 0:
                refuse = p <= tol * scale[k] or any(
                    swept[i] > 0 and f32(1.0) / (at(i, k) * at(i, k) / p + a[i][i]) < tol * scale[i]
                    for i in range(nvar) if i != k)
                if refuse:
                    for j in range(nvar):
                        a[k][j] = a[j][k] = f32(0.0)
                    return
            d = f32(1.0) / p
            for i in range(k):
                w = -d * a[i][k]
                for j in range(i, k):
                    a[i][j] = a[i][j] + swept[j] * w * swept[k] * a[j][k]
                for j in range(k + 1, nvar):
                    a[i][j] = a[i][j] + w * a[k][j]
            for i in range(k + 1, nvar):
                w = swept[i] * (-(d * swept[k])) * a[k][i]
                for j in range(i, nvar):
                    a[i][j] = a[i][j] + w * a[k][j]
            for j in range(k + 1, nvar):
                a[k][j] = a[k][j] * d
            for i in range(k):
                a[i][k] = a[i][k] * -d
            a[k][k] = d
            swept[k] = -swept[k]

        def statistics(nvin):
            rss = a[idep][idep]
            out = []
            with np.errstate(all="ignore"):
                for i in range(v):
                    if hist[i] > 0:
                        est = a[i][idep]
                        df = n - nvin - 1
                        se = np.sqrt(a[i][i] * rss / f32(df)) if df > 0 else NAN
                    else:
                        df = n - nvin - 2
                        if a[i][i] == 0:
                            est, inner = f32(0.0), f32(0.0)
                        else:
                            est = a[i][idep] / a[i][i]
                            inner = rss / a[i][i] - est * est
                        se = np.sqrt(inner / f32(df)) if df > 0 and inner >= 0 else NAN
                    t = est / se
                    p = NAN if np.isnan(t) or df == 0 else 2 * stats.t.sf(abs(float(t)), df)
                    out.append((est, t, p))
            return out

        nvin, step, margin = 0, 0, float("inf")
        stat = statistics(nvin)
        while True:
            step += 1
            moved = False
            if nvin > 0:
                cands = [i for i in range(v) if hist[i] > 0 and not np.isnan(stat[i][2])]
                if cands:
                    weakest = min(cands, key=lambda i: (abs(stat[i][1]), i))
                    margin = min(margin, distance(stat[weakest][2], pout))
                    if stat[weakest][2] > pout:
                        sweep(weakest)
                        nvin -= 1
                        hist[weakest] = -step
                        moved = True
            if not moved:
                cands = [i for i in range(v) if not hist[i] > 0 and not np.isnan(stat[i][2])]
                if cands:
                    best = max(cands, key=lambda i: (abs(stat[i][1]), -i))
                    margin = min(margin, distance(stat[best][2], pin))
                    if stat[best][2] < pin:
                        sweep(best)
                        nvin += 1
                        hist[best] = step
                        moved = True
            if not moved:
                break
            stat = statistics(nvin)
        adj = NAN
        if nvin > 0:
            sse = a[idep][idep]
            ssr = scale[idep] - sse
            dfr, dfe = f32(nvin), f32(n - nvin - 1)
            mse = sse / dfe
            q = mse / ((ssr + sse) / (dfr + dfe))
            adj = f32(0.0) if q > 1 else f32(100.0) * (f32(1.0) - q)
        return hist, stat, adj, margin

    hist, stat, adj, margin = run(f32(pin), f32(pout))
    runs = 1
    while runs < 6 and f32(99.0) < adj <= f32(100.0):
        pin, pout = f32(pin) / f32(2.0), f32(pout) / f32(2.0)
        hist, stat, adj, margin = run(pin, pout)
        runs += 1
    terms = [i for i in range(v) if hist[i] > 0.5]
    coef = [stat[i][0] if hist[i] > 0.5 else f32(0.0) for i in range(v)]
    s = f32(0.0)
    for i in range(v):
        s = s + coef[i] * xbar[i]
    intercept = ybar - s
    adj = f32(0.0) if np.isnan(adj) else adj
    return terms, [coef[i] for i in terms], intercept, adj, margin


def four_group_test(codes1, codes2, y):
    """The four-group tests of a marker pair as stated: cells 1 .. 4 =
    AA, AB, BA, BB, one log density per line, float32."""
    with np.errstate(all="ignore"):
        cell = [1 + 2 * (a == "B") + (b == "B") if a in "AB" and b in "AB" else 0 for a, b in zip(codes1, codes2)]
        lines = [i for i, k in enumerate(cell) if k]
        counts = [sum(1 for i in lines if cell[i] == k) for k in range(1, 5)]
        total = sum(counts)

        def add(terms):
            s = f32(0.0)
            for t in terms:
                s = s + t
            return s

        m0 = add(y[i] for i in lines) / f32(total)
        means = [add(y[i] for i in lines if cell[i] == k) / f32(counts[k - 1]) for k in range(1, 5)]
        freqs = [f32(c) / f32(total) for c in counts]
        mean, add1, add2, _ = pair_effects(means)
        e = [None, mean + add1 + add2, mean + add1 - add2, mean - add1 + add2, mean - add1 - add2]
        divisor = f32(total - 1)
        v0 = add((y[i] - m0) * (y[i] - m0) for i in lines) / divisor
        v1 = add((y[i] - means[cell[i] - 1]) * (y[i] - means[cell[i] - 1]) for i in lines) / divisor
        v2 = add((y[i] - e[cell[i]]) * (y[i] - e[cell[i]]) for i in lines) / divisor
        l0 = add(log_density10(y[i], m0, v0) for i in lines)
        l1 = add(log_density10(y[i], means[cell[i] - 1], v1) for i in lines)
        l2 = add(log_density10(y[i], e[cell[i]], v2) for i in lines)
        lod_aa, lod_total = l1 - l2, l1 - l0
        lod_aa = f32(0.0) if lod_aa < 0 else lod_aa
        lod_total = f32(0.0) if lod_total < 0 else lod_total
        if lod_aa > lod_total:
            lod_aa = lod_total
        return {"LOD": (lod_aa, lod_total), "Mean": tuple(means), "Freq": tuple(freqs)}


def pair_effects(means):
    """mean, add1, add2, addbyadd: sums from 0.0 of +-0.25 m, 0.0 when NaN."""
    out = []
    with np.errstate(all="ignore"):
        for weights in ((1, 1, 1, 1), (1, 1, -1, -1), (1, -1, 1, -1), (1, -1, -1, 1)):
            s = f32(0.0)
            for w, m in zip(weights, means):
                s = s + f32(0.25 * w) * m
            out.append(f32(0.0) if np.isnan(s) else s)
    return out


def two_way_variance(r, c, freqs, means):
    """VT, V1, V2, V12 of an r x c table given row by row, float32."""
    with np.errstate(all="ignore"):
        def add(terms):
            s = f32(0.0)
            for t in terms:
                s = s + t
            return s

        at = lambda a, b: a * c + b
        total = add(freqs)
        p = [f / total for f in freqs]
        mu = add(p[k] * means[k] for k in range(r * c))
        rows = [add(p[at(a, b)] for b in range(c)) for a in range(r)]
        cols = [add(p[at(a, b)] for a in range(r)) for b in range(c)]
        row_effect = [add(cols[b] * means[at(a, b)] for b in range(c)) - mu for a in range(r)]
        col_effect = [add(rows[a] * means[at(a, b)] for a in range(r)) - mu for b in range(c)]
        inter = [means[at(a, b)] - row_effect[a] - col_effect[b] - mu for a in range(r) for b in range(c)]
        vt = add(p[k] * (means[k] * means[k]) for k in range(r * c)) - mu * mu

        def spread(w, x):
            first = add(wi * xi for wi, xi in zip(w, x))
            return add(wi * (xi * xi) for wi, xi in zip(w, x)) - first * first

        v1, v2, v12 = spread(rows, row_effect), spread(cols, col_effect), spread(p, inter)
        scale = vt / (v1 + v2 + v12)
        v1, v2, v12 = v1 * scale, v2 * scale, v12 * scale
        vt = v1 + v2 + v12
        return tuple(f32(0.0) if np.isnan(v) else v for v in (vt, v1, v2, v12))


def pair_tables(trait, name, env, num_envs, kept_markers, marker_names, records, var_p, threshold, rows_codes, y):
    """Rows of .rice and .qice of one pass; records in table order, each
    with its 0-based marker indices as "Pair"."""
    flagged = [not has_nan_pair(r) and r["LOD"][0] > f32(threshold) for r in records]
    sum_vg = f32(0.0)
    for r, flag in zip(records, flagged):
        if flag:
            sum_vg = sum_vg + two_way_variance(2, 2, r["Freq"], r["Mean"])[0]
    pairs = [r["Pair"] for r, flag in zip(records, flagged) if flag]
    columns = ([[code_value(c) for c in rows_codes[i]] for i, _ in pairs] +
               [[code_value(c) for c in rows_codes[j]] for _, j in pairs] +
               [[code_value(a) * code_value(b) for a, b in zip(rows_codes[i], rows_codes[j])] for i, j in pairs])
    rsq = r_square_of_columns(columns, y)
    full, selected, shares = [], [], []
    with np.errstate(all="ignore"):
        for r, flag in zip(records, flagged):
            if has_nan_pair(r):
                continue
            i, j = r["Pair"]
            head = place(trait, name, env, num_envs)
            for m in (i, j):
                head += "%12d" % kept_markers[m] + " " + marker_names[kept_markers[m] - 1].rjust(35)
            _, add1, add2, aa = pair_effects(r["Mean"])
            vt, _, _, v12 = two_way_variance(2, 2, r["Freq"], r["Mean"])
            tail = "".join(fixed(v) for v in (add1, add2, aa) + r["Mean"])
            share = lambda v, base, scale=None: clip_share((f32(100.0) * v) / base if scale is None else
                                                          ((f32(100.0) * v) / base) * f32(scale))
            full.append(head + fixed(r["LOD"][0]) + fixed(r["LOD"][1]) + fixed(share(v12, f32(var_p))) +
                        fixed(share(vt, f32(var_p))) + tail)
            if flag:
                pve_aa, pve_total = share(v12, sum_vg, rsq), share(vt, sum_vg, rsq)
                assert_stable_share(lambda q: ((f32(100.0) * v12) / sum_vg) * q, rsq)
                assert_stable_share(lambda q: ((f32(100.0) * vt) / sum_vg) * q, rsq)
                shares.append(pve_total)
                selected.append(head + fixed(r["LOD"][0]) + fixed(r["LOD"][1]) + fixed(pve_aa) + fixed(pve_total) +
                                tail)
    return full, selected, shares, rsq


def assert_stable_share(share_of, rsq):
    """A share carries the last bits of the least-squares R-square, which
    only single precision defines: the printed digits must not move within
    two units of its last place."""
    near = f32(rsq)
    for _ in range(2):
        near = np.nextafter(near, f32(-1.0))
    want = fixed(clip_share(share_of(f32(rsq))))
    for _ in range(5):
        assert fixed(clip_share(share_of(near))) == want, "share %s at a rounding edge" % want
        near = np.nextafter(near, f32(2.0))


def clip_share(v):
    return f32(0.0) if np.isnan(v) or v < 0 else v


def has_nan_pair(record):
    return any(np.isnan(v) for v in record["LOD"] + record["Mean"] + record["Freq"])


def r_square_of_columns(columns, y):
    """R-square of least squares with an intercept on numeric columns, in
    float64, asserting the determinant branch as r_square_of_flagged does."""
    if not columns:
        return 0.0
    n = len(y)
    x = np.array(columns, dtype=np.float64)
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
