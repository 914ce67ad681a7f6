"""Expected row of the marker tables for MarkerTablesTest.cpp, the Mean pass
where the shares of variance cannot be formed; the values are worked out by
hand in the comments of that test and formatted here into the fixed
columns with Python's own formatting."""


def place(trait, name, env):
    return "%12d" % trait + " " + name.rjust(19) + (env if isinstance(env, str) else "%12d" % env).rjust(12)


def row(trait, name, env, marker_id, marker_name, lod, pve, add, mqq, mqq2):
    return (place(trait, name, env) + "%12d" % marker_id + " " + marker_name.rjust(35) +
            "".join("%12.4f" % v for v in (lod, pve, add, mqq, mqq2)))


print('"%s"' % row(2, "Yield", "Mean", 2, "m2", 3.5, 0.0, 2.0, 12.0, 8.0))
