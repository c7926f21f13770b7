#!/usr/bin/env python3
"""link_bench.py BIN [PREFIX]: how long 27 values take through the helper into KRN.EXE under Wine.

Each value has a conversation of its own, as in a transfer; the best of ten runs counts, and figures are printed, not
judged. BIN is the folder of programs of a build; PREFIX as for tests/wine/road.py (BIN/../wine-prefix).
"""

import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests" / "wine"))
from krn_under_wine import Wine  # noqa: E402

programs = pathlib.Path(sys.argv[1]).resolve()
prefix = pathlib.Path(sys.argv[2]).resolve() if len(sys.argv) > 2 else programs.parent / "wine-prefix"
queries = []
for cell in range(27):
    queries += [["OPEN", "KRN", "Smith"], ["POKE", f"1004MC|{cell}|1", "428,750"], ["CLOSE"]]
with Wine(programs, prefix) as wine, wine.krn():
    taken = sorted(wine.ask_helper(*queries)[1] * 1000 for _ in range(10))
print(f"27 pokes: best {taken[0]:.0f} ms, median {taken[5]:.0f} ms, worst {taken[-1]:.0f} ms")
