"""Plain 32-bit arithmetic for the reference values of the mapping tests.

Every operation rounds to IEEE single precision (numpy float32 scalars),
sums run from 0.0 in the order the rules state, and log10 is the platform
C library's log10f (numpy's own float32 log10 is less accurate and would
not be the single-precision logarithm the rules ask for).
"""
import ctypes
import ctypes.util
import struct

import numpy as np

_libm = ctypes.CDLL(ctypes.util.find_library("m"))
_libm.log10f.restype = ctypes.c_float
_libm.log10f.argtypes = [ctypes.c_float]

f32 = np.float32
NAN = f32("nan")


def log10f(x):
    return f32(_libm.log10f(float(f32(x))))


def hexfloat(x):
    """A C++ float literal that holds x exactly."""
    x = f32(x)
    if np.isnan(x):
        return "NaN"
    if np.isinf(x):
        return "Inf" if x > 0 else "-Inf"
    return float(x).hex() + "f"


def bits(x):
    return struct.unpack("<I", struct.pack("<f", float(f32(x))))[0]


def libm_float(name, arity=1):
    """The C library's float function of that name, on float32 values."""
    function = getattr(_libm, name)
    function.restype = ctypes.c_float
    function.argtypes = [ctypes.c_float] * arity
    return lambda *args: f32(function(*(float(f32(a)) for a in args)))
