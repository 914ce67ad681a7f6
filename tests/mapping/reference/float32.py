"""Plain 32-bit arithmetic for the reference scripts: numpy float32 scalars, sums
from 0.0 in the order given, and the C library's float log10, log, exp, atan and
pow (numpy's float32 log10 is less accurate); also the run's random stream."""
import ctypes
import ctypes.util
import struct

import numpy as np

_libm = ctypes.CDLL(ctypes.util.find_library("m"))
f32 = np.float32
NAN = f32("nan")
MISSING = f32(-9999.0)
np.seterr(all="ignore")  # NaNs and infinities are part of the modelled arithmetic


def libm_float(name, arity=1):
    """The C library's float function of that name, on float32 values."""
    function = getattr(_libm, name)
    function.restype = ctypes.c_float
    function.argtypes = [ctypes.c_float] * arity
    return lambda *args: f32(function(*(float(f32(a)) for a in args)))


log10f, logf, expf = libm_float("log10f"), libm_float("logf"), libm_float("expf")


def bits(x):
    return struct.unpack("<I", struct.pack("<f", float(f32(x))))[0]


def total(values):
    s = f32(0.0)
    for v in values:
        s = s + v
    return s


def is_missing(v):
    return np.isnan(v) or abs(v - MISSING) < f32(0.0001)


class Stream:
    """The run's random stream, seeded by a pinned clock reading: the state in
    exact integers, the draws rounded to float32."""

    def __init__(self, clock):
        hour, minute, second = (int(x) for x in clock.split()[1].split(".")[0].split(":"))
        seed = hour * 10000 + minute * 100 + second + 1
        self.state = seed if seed > 1 else 123457
        scale = f32(2.0 ** -31)
        while float(scale) * 2147483648.0 >= 1.0:
            scale = f32(scale * f32(1.0 - 2.0 ** -24))
        self.scale = float(scale)

    def uniform(self):
        self.state = self.state * 16807 % 2147483647
        return f32(self.state * self.scale)

    def shuffle(self, values):
        """values in the order of a permutation of 1..k, whose swap with an
        index one past the end leaves the position as it is."""
        k = len(values)
        order = list(range(1, k + 1))
        for i in range(k, 1, -1):
            j = int(f32(self.uniform() * f32(i)) + f32(1.0))
            if j <= k:
                order[i - 1], order[j - 1] = order[j - 1], order[i - 1]
        return [values[p - 1] for p in order]

    def normal(self):
        u = self.uniform()
        if u < f32(0.8840704):
            v = self.uniform()
            return ((u * f32(1.1311316) - f32(1.0)) + v) * f32(2.2160358)
        if u >= f32(0.97331095):
            while True:
                p, q = self.uniform(), self.uniform()
                t = f32(2.4554074) - logf(q)
                if not p * p * t > f32(2.4554074):
                    break
            r = np.sqrt(t + t)
            return f32(0.0) - r if u >= f32(0.9866555) else r
        if u >= f32(0.9587208):
            return self._wedge(lambda lo: f32(2.2160358) - lo * f32(0.6308348),
                               0.7555915, 0.034240503, False)
        if u >= f32(0.91131276):
            return self._wedge(lambda lo: f32(0.47972742) + lo * f32(1.1054736),
                               0.872835, 0.049264498, False)
        return self._wedge(lambda lo: f32(0.47972742) - lo * f32(0.59550714),
                           0.80557793, 0.05337755, True)

    def _wedge(self, candidate, quick, factor, reject_negative):
        while True:
            a, b = self.uniform(), self.uniform()
            lo, hi, d = min(a, b), max(a, b), a - b
            x = candidate(lo)
            if reject_negative and x < 0:
                continue
            f = (expf(f32(0.0) - f32(0.5) * x * x) * f32(0.3989423) -
                 (f32(2.2160358) - abs(x)) * f32(0.18002519))
            if hi <= f32(quick) or f >= abs(d) * f32(factor):
                return f32(0.0) - x if d >= 0 else x
