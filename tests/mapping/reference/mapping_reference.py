"""An independent model of a mapping run's tables in float32 (float32.py); the
R-square of the flagged terms comes from least squares in float64, exact
enough for 4 decimals."""
import numpy as np
from scipy import stats

from float32 import NAN, f32, is_missing, log10f, total

PLACE_HEADING = "TraitID".rjust(12) + " " + "TraitName".rjust(19) + "Environment".rjust(12)


def filled_cells(lines, order):
    """The missing-cell rule: each line with data, numbered from 1, and its
    cells {(env, rep): value} filled in the given order of the sum."""
    for line, cells in enumerate(lines, start=1):
        values = [cells[e][r] for e, r in order]
        mask = [0 if is_missing(v) else 1 for v in values]
        if sum(mask) == 0:
            continue
        fill = total(v * f32(k) for v, k in zip(values, mask)) / f32(sum(mask))
        yield line, dict(zip(order, [v if k else fill for v, k in zip(values, mask)]))


def line_means(pheno, t, e, num_envs, num_reps):
    """pheno[line][t][e][r]; e = num_envs + 1 is the mean over all
    environments, which fills replications outer.  Returns the kept line
    numbers and their means summed replications outer, and environments
    outer (whose variance the mean pass's percentages divide by)."""
    envs = [e - 1] if e <= num_envs else range(num_envs)
    order = [(env, r) for r in range(num_reps) for env in envs]
    lines = list(filled_cells([cells[t] for cells in pheno], order))
    means = [[total(cube[k] for k in keys) / f32(len(order)) for _, cube in lines]
             for keys in (order, sorted(order))]
    return [line for line, _ in lines], means[0], means[1]


def column_variance(x):
    valid = [v for v in x if not is_missing(v)]
    m = f32(len(valid))
    mean = total(valid) / m
    return ((total(v * v for v in valid) / m - mean * mean) * m) / f32(len(valid) - 1)


def log_density10(y, m, v):
    if not np.isnan(v) and not v > f32(0.0):
        return NAN
    a = log10f(f32(6.283185) * v)
    return -(f32(0.5) * a) - ((y - m) * (y - m)) / (f32(2.0) * v) / f32(2.3025851)


def code_value(c):
    return 1.0 if c == "A" else -1.0 if c == "B" else 0.0


def two_group_test(codes, y):
    """codes: genotype letters, y: float32 values."""
    typed = [i for i, c in enumerate(codes) if c in "AB"]
    a_lines, b_lines = ([i for i in typed if codes[i] == g] for g in "AB")
    na, nb = len(a_lines), len(b_lines)
    m0 = total(y[i] for i in typed) / f32(na + nb)
    ma = total(y[i] for i in a_lines) / f32(na)
    mb = total(y[i] for i in b_lines) / f32(nb)
    fa = f32(na) / f32(na + nb)
    fb = f32(nb) / f32(na + nb)
    v0 = total((y[i] - m0) * (y[i] - m0) for i in typed) / f32(na + nb - 1)
    v1 = (total((y[i] - ma) * (y[i] - ma) for i in a_lines) +
          total((y[i] - mb) * (y[i] - mb) for i in b_lines)) / f32(na + nb - 1)
    l0 = total(log_density10(y[i], m0, v0) for i in typed)
    l1 = total(log_density10(y[i], ma if codes[i] == "A" else mb, v1) for i in typed)
    lod = l1 - l0
    return {"LOD": max(lod, f32(0.0)), "Mean": (ma, mb), "Freq": (fa, fb)}


def four_group_test(codes1, codes2, y):
    """The tests of a marker pair: cells 1 .. 4 = AA, AB, BA, BB."""
    cell = [1 + 2 * (a == "B") + (b == "B") if a in "AB" and b in "AB" else 0
            for a, b in zip(codes1, codes2)]
    lines = [i for i, k in enumerate(cell) if k]
    counts = [sum(1 for i in lines if cell[i] == k) for k in range(1, 5)]
    n = sum(counts)
    m0 = total(y[i] for i in lines) / f32(n)
    means = [total(y[i] for i in lines if cell[i] == k) / f32(counts[k - 1]) for k in range(1, 5)]
    freqs = [f32(c) / f32(n) for c in counts]
    mean, add1, add2, _ = pair_effects(means)
    e = [None, mean + add1 + add2, mean + add1 - add2, mean - add1 + add2, mean - add1 - add2]
    divisor = f32(n - 1)
    v0 = total((y[i] - m0) * (y[i] - m0) for i in lines) / divisor
    v1 = total((y[i] - means[cell[i] - 1]) * (y[i] - means[cell[i] - 1]) for i in lines) / divisor
    v2 = total((y[i] - e[cell[i]]) * (y[i] - e[cell[i]]) for i in lines) / divisor
    l0 = total(log_density10(y[i], m0, v0) for i in lines)
    l1 = total(log_density10(y[i], means[cell[i] - 1], v1) for i in lines)
    l2 = total(log_density10(y[i], e[cell[i]], v2) for i in lines)
    lod_total = max(l1 - l0, f32(0.0))
    lod_aa = min(max(l1 - l2, f32(0.0)), lod_total)
    return {"LOD": (lod_aa, lod_total), "Mean": tuple(means), "Freq": tuple(freqs)}


def pair_effects(means):
    """mean, add1, add2, addbyadd: sums from 0.0 of +-0.25 m, 0.0 when NaN."""
    out = []
    for weights in ((1, 1, 1, 1), (1, 1, -1, -1), (1, -1, 1, -1), (1, -1, -1, 1)):
        s = total(f32(0.25 * w) * m for w, m in zip(weights, means))
        out.append(f32(0.0) if np.isnan(s) else s)
    return out


def genetic_variance(record):
    f1, f2 = record["Freq"]
    m1, m2 = record["Mean"]
    p1, p2 = f1 / (f1 + f2), f2 / (f1 + f2)
    mu = p1 * m1 + p2 * m2
    vg = p1 * (m1 * m1) + p2 * (m2 * m2) - mu * mu
    return f32(0.0) if np.isnan(vg) else vg


def two_way_variance(freqs, means):
    """VT, V1, V2, V12 of a 2 x 2 table given row by row."""
    at = lambda a, b: 2 * a + b  # noqa: E731
    p = [f / total(freqs) for f in freqs]
    mu = total(p[k] * means[k] for k in range(4))
    rows = [total(p[at(a, b)] for b in range(2)) for a in range(2)]
    cols = [total(p[at(a, b)] for a in range(2)) for b in range(2)]
    row_effect = [total(cols[b] * means[at(a, b)] for b in range(2)) - mu for a in range(2)]
    col_effect = [total(rows[a] * means[at(a, b)] for a in range(2)) - mu for b in range(2)]
    inter = [means[at(a, b)] - row_effect[a] - col_effect[b] - mu
             for a in range(2) for b in range(2)]
    vt = total(p[k] * (means[k] * means[k]) for k in range(4)) - mu * mu

    def spread(w, x):
        first = total(wi * xi for wi, xi in zip(w, x))
        return total(wi * (xi * xi) for wi, xi in zip(w, x)) - first * first

    v1, v2, v12 = spread(rows, row_effect), spread(cols, col_effect), spread(p, inter)
    scale = vt / (v1 + v2 + v12)
    v1, v2, v12 = v1 * scale, v2 * scale, v12 * scale
    return tuple(f32(0.0) if np.isnan(v) else v for v in (v1 + v2 + v12, v1, v2, v12))


def has_nan(record):
    return any(np.isnan(v) for v in np.hstack([record["LOD"], record["Mean"], record["Freq"]]))


def place(trait, name, env, num_envs):
    label = "Mean".rjust(12) if env == num_envs + 1 else "%12d" % env
    return "%12d" % trait + " " + name.rjust(19) + label


def fixed(v):
    v = f32(v)
    if np.isnan(v):
        return "NaN".rjust(12)
    if np.isinf(v):
        return ("Infinity" if v > 0 else "-Infinity").rjust(12)
    return "%12.4f" % float(v)


class Pass:
    """One pass of a mapping run: a trait in one environment, or in all
    (env = num_envs + 1); rows_codes are the markers' codes over its lines."""

    def __init__(self, pheno, genotypes, markers, trait, name, env, num_envs, num_reps):
        self.markers, self.trait, self.name, self.env = markers, trait, name, env
        self.place = place(trait, name, env, num_envs)
        self.kept, self.y, envs_outer = line_means(pheno, trait - 1, env, num_envs, num_reps)
        self.var_p = column_variance(envs_outer)
        self.rows_codes = [[codes[l - 1] for l in self.kept] for codes in genotypes]

    def marker(self, m):
        return "%12d" % (m + 1) + " " + self.markers[m].rjust(35)


def share(v, base, rsq=None):
    """100 v / base, times the R-square when given; 0.0 if negative or NaN."""
    s = (f32(100.0) * v) / base
    s = s if rsq is None else s * f32(rsq)
    return f32(0.0) if np.isnan(s) or s < 0 else s


def stable_share(v, base, rsq):
    """The share of a flagged term carries the last bits of the least-squares
    R-square, which only single precision defines: its printed digits must
    not move within two units of the last place of the R-square."""
    near = [f32(rsq)]
    for _ in range(2):
        near = [np.nextafter(near[0], f32(-1.0))] + near + [np.nextafter(near[-1], f32(2.0))]
    printed = {fixed(share(v, base, q)) for q in near}
    assert len(printed) == 1, "share %s at a rounding edge" % printed
    return share(v, base, rsq)


def flagged_tables(p, records, threshold, full, selected):
    """Appends the rows of a pass's full and selected tables, of markers
    (records in marker order) or of pairs (records with their 0-based
    markers as "Pair"); the R-square of the flagged terms is shared out by
    their last variance."""
    x = [[code_value(c) for c in codes] for codes in p.rows_codes]
    rows, terms = [], []
    for m, r in enumerate(records):
        if has_nan(r):
            continue
        if "Pair" in r:
            i, j = r["Pair"]
            head = p.marker(i) + p.marker(j) + fixed(r["LOD"][0]) + fixed(r["LOD"][1])
            vt, _, _, v12 = two_way_variance(r["Freq"], r["Mean"])
            tail = "".join(fixed(v) for v in tuple(pair_effects(r["Mean"])[1:]) + r["Mean"])
            flag, variances = r["LOD"][0] > f32(threshold), [v12, vt]
            terms += [x[i], x[j], [a * b for a, b in zip(x[i], x[j])]] if flag else []
        else:
            m1, m2 = r["Mean"]
            head = p.marker(m) + fixed(r["LOD"])
            tail = fixed(f32(0.5) * m1 - f32(0.5) * m2) + fixed(m1) + fixed(m2)
            flag, variances = r["LOD"] > f32(threshold), [genetic_variance(r)]
            terms += [x[m]] if flag else []
        rows.append((p.place + head, variances, tail, flag))
    sum_v = total(v[-1] for _, v, _, flag in rows if flag)
    rsq = r_square(terms, p.y)
    for head, variances, tail, flag in rows:
        full.append(head + "".join(fixed(share(v, f32(p.var_p))) for v in variances) + tail)
        if flag:
            shares = "".join(fixed(stable_share(v, sum_v, rsq)) for v in variances)
            selected.append(head + shares + tail)


def least_squares(columns, y):
    """Intercept and slopes of least squares on numeric columns, and the
    R-square, in float64."""
    yv = np.array(y, dtype=np.float64)
    design = np.column_stack([np.ones(len(y))] + list(np.array(columns, dtype=np.float64)))
    beta, *_ = np.linalg.lstsq(design, yv, rcond=None)
    sse = float(((yv - design @ beta) ** 2).sum())
    sst = float(((yv - yv.mean()) ** 2).sum())
    return beta, (sst - sse) / sst


def r_square(columns, y):
    """The R-square of the flagged terms; asserts that the correlation matrix
    is far from singular (else the program would run a stepwise selection)."""
    if not columns:
        return 0.0
    x = np.array(columns, dtype=np.float64)
    xc = x - x.mean(axis=1, keepdims=True)
    c = xc @ xc.T / len(y)
    np.fill_diagonal(c, (xc * xc).sum(axis=1) / (len(y) - 1))
    assert abs(np.linalg.det(c)) > 0.0001, "the stepwise branch would be taken"
    return least_squares(columns, y)[1]


def stepwise_rows(place, ids, slopes, intercept, adj_r2):
    """The heading and the row of one .stp block."""
    return [PLACE_HEADING + "".join("%12d" % i for i in ids) + "Intercept".rjust(12) +
            "R-square".rjust(12),
            place + "".join(fixed(b) for b in slopes + [intercept, adj_r2])]


def model_fit(slopes, rows_codes):
    """The fit without the intercept at each line: slopes maps a 0-based row
    of rows_codes to its coefficient, terms in order."""
    return [total(b * f32(code_value(rows_codes[m][i])) for m, b in slopes.items())
            for i in range(len(rows_codes[0]))]


def residual(y, fit, slopes, rows_codes, markers):
    """y less the fit, with the terms of the given markers put back in turn."""
    adj = [v - f for v, f in zip(y, fit)]
    for m in markers:
        if m in slopes:
            adj = [a + slopes[m] * f32(code_value(c)) for a, c in zip(adj, rows_codes[m])]
    return adj


def additive_records(rows_codes, y, slopes, fit=None):
    """Each marker tested on the residual with its own term put back."""
    fit = model_fit(slopes, rows_codes) if fit is None else fit
    return [two_group_test(codes, residual(y, fit, slopes, rows_codes, [m]))
            for m, codes in enumerate(rows_codes)]


def column_covariance(x, y):
    m = f32(len(x))
    return total(a * b for a, b in zip(x, y)) / m - (total(x) / m) * (total(y) / m)


def distance(p, limit):
    """The factor by which p stands from its limit, on either side."""
    return max(p / limit, limit / p) if p > 0 else float("inf")


def stepwise32(columns, y, pin, pout):
    """The stepwise selection by sweeps of the covariance matrix.  The p-values
    that decide a step come from scipy in 64 bits; the margin returned (the
    smallest factor by which a deciding p stood from its limit) shows that
    32-bit ones would decide the same.  Returns (terms 0-based, slopes,
    intercept, adjusted R-square, margin)."""
    v, n = len(columns), len(y)
    xbar = [f32(sum(int(code_value(c)) for c in col)) / f32(n) for col in columns]
    cols = [[f32(code_value(c)) - xbar[m] for c in col] for m, col in enumerate(columns)]
    ybar = total(y) / f32(n)
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
        while True:
            stat = statistics(nvin)
            step += 1
            tested = [i for i in range(v) if not np.isnan(stat[i][2])]
            inside = [i for i in tested if hist[i] > 0]
            if inside:
                weakest = min(inside, key=lambda i: (abs(stat[i][1]), i))
                margin = min(margin, distance(stat[weakest][2], pout))
                if stat[weakest][2] > pout:
                    sweep(weakest)
                    nvin, hist[weakest] = nvin - 1, -step
                    continue
            outside = [i for i in tested if not hist[i] > 0]
            if not outside:
                break
            best = max(outside, key=lambda i: (abs(stat[i][1]), -i))
            margin = min(margin, distance(stat[best][2], pin))
            if not stat[best][2] < pin:
                break
            sweep(best)
            nvin, hist[best] = nvin + 1, step
        adj = NAN
        if nvin > 0:
            sse = a[idep][idep]
            ssr = scale[idep] - sse
            dfr, dfe = f32(nvin), f32(n - nvin - 1)
            q = (sse / dfe) / ((ssr + sse) / (dfr + dfe))
            adj = f32(0.0) if q > 1 else f32(100.0) * (f32(1.0) - q)
        return hist, stat, adj, margin

    for halving in range(6):  # a fit too close to perfect reruns with halved limits
        hist, stat, adj, margin = run(f32(pin) / f32(2 ** halving), f32(pout) / f32(2 ** halving))
        if not f32(99.0) < adj <= f32(100.0):
            break
    terms = [i for i in range(v) if hist[i] > 0.5]
    coef = [stat[i][0] if hist[i] > 0.5 else f32(0.0) for i in range(v)]
    intercept = ybar - total(coef[i] * xbar[i] for i in range(v))
    adj = f32(0.0) if np.isnan(adj) else adj
    return terms, [coef[i] for i in terms], intercept, adj, margin
