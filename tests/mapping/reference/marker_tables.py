"""Expected rows of the marker tables and of the stepwise block for the
cases of MarkerTablesTest.cpp.  The genetic variances and shares are
worked out by hand in the comments of that test; here they are formatted
into the fixed columns with Python's own formatting."""


def place(trait, name, env):
    return "%12d" % trait + " " + name.rjust(19) + (env if isinstance(env, str) else "%12d" % env).rjust(12)


def row(trait, name, env, marker_id, marker_name, lod, pve, add, mqq, mqq2):
    return (place(trait, name, env) + "%12d" % marker_id + " " + marker_name.rjust(35) +
            "".join("%12.4f" % v for v in (lod, pve, add, mqq, mqq2)))


def show(label, line):
    print("// %s" % label)
    print('"%s"' % line)


# Full table, VarP 16: marker 2 VG 4, marker 5 VG 0.75, marker 11 VG 9.
show("all 2", row(1, "Height", 1, 2, "m2", 3.5, 25.0, 2.0, 12.0, 8.0))
show("all 5", row(1, "Height", 1, 5, "LongMarkerName5", 1.0, 4.6875, -1.0, 9.0, 11.0))
show("all 11", row(1, "Height", 1, 11, "m11", 4.0, 56.25, -3.0, 7.0, 13.0))
show("all 12", row(1, "Height", 1, 12, "m12", 0.0, 0.0, 0.0, 10.0, 10.0))
# Selected table, SumVG 13, RSq 0.65.
show("selected 2", row(1, "Height", 1, 2, "m2", 3.5, 20.0, 2.0, 12.0, 8.0))
show("selected 11", row(1, "Height", 1, 11, "m11", 4.0, 45.0, -3.0, 7.0, 13.0))
# Mean pass, zero VarP, SumVG and RSq.
show("mean all 2", row(2, "Yield", "Mean", 2, "m2", 3.5, 0.0, 2.0, 12.0, 8.0))
show("mean selected 2", row(2, "Yield", "Mean", 2, "m2", 3.5, 0.0, 2.0, 12.0, 8.0))
# Stepwise blocks.
show("stp heading", "TraitID".rjust(12) + " " + "TraitName".rjust(19) + "Environment".rjust(12) +
     "%12d%12d" % (5, 12) + "Intercept".rjust(12) + "R-square".rjust(12))
show("stp values", place(1, "Height", 2) + "%12.4f%12.4f%12.4f%12.4f" % (1.25, -0.5, 10.125, 63.5))
show("stp empty heading", "TraitID".rjust(12) + " " + "TraitName".rjust(19) + "Environment".rjust(12) +
     "Intercept".rjust(12) + "R-square".rjust(12))
show("stp empty values", place(1, "Height", "Mean") + "%12.4f%12.4f" % (9.75, 0.0))
