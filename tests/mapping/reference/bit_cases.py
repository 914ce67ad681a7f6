"""Writes cases for tests/support/BitCases.h: a line "case NAME", one line
per item "KEY f|i|s VALUES..." (floats as the hex of their 32 bits), and
"end"."""
import numpy as np

from float32 import bits


class BitCases:
    def __init__(self):
        self.lines = []

    def case(self, name, **items):
        self.lines.append("case " + name)
        for key, values in items.items():
            if isinstance(values, str):
                self.lines.append("%s s %s" % (key, values))
            elif all(isinstance(v, (int, np.integer)) for v in values):
                self.lines.append("%s i %s" % (key, " ".join(str(int(v)) for v in values)))
            else:
                self.lines.append("%s f %s" % (key, " ".join("%08x" % bits(v) for v in values)))
        self.lines.append("end")

    def write(self, path):
        with open(path, "w") as f:
            f.write("\n".join(self.lines) + "\n")
