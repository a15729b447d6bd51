"""Reads MAT-files with scipy and prints what it finds, for the matrix tests to compare.

For each file: a line "file" and its name, the start of the header text, then for each variable a line
"variable", its name in repr form, its shape, its element type, and a line of its values in row-major
order, each in repr form: repr of a float is exact.
"""

import os
import sys

try:
    import scipy.io
except ImportError:
    print("python3-scipy is missing")
    sys.exit(3)


def dump(path):
    contents = scipy.io.loadmat(path)
    print("file", os.path.basename(path))
    # The date and time behind the second separator change from run to run.
    print("header", b" - ".join(contents["__header__"].split(b" - ")[:2]).decode("ascii"))
    # scipy files an array without a name under "__function_workspace__", so only its own keys are left out.
    for name in sorted(key for key in contents if key not in ("__header__", "__version__", "__globals__")):
        value = contents[name]
        print("variable", repr(name), "x".join(str(n) for n in value.shape), value.dtype)
        print(" ".join(repr(float(element)) for element in value.flatten(order="C")))


for argument in sys.argv[1:]:
    dump(argument)
