#!/usr/bin/env python3
"""link_bench.py BIN [PREFIX]: how long 27 values take through the helper into KRN.EXE under Wine.

Figures of ten runs are printed, not judged. BIN is the folder of programs of a build; PREFIX as for tests/wine/road.py
(BIN/../wine-prefix).
"""

import os
import pathlib
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests" / "wine"))
from krn_under_wine import Wine  # noqa: E402

programs = pathlib.Path(sys.argv[1]).resolve()
prefix = pathlib.Path(sys.argv[2]).resolve() if len(sys.argv) > 2 else programs.parent / "wine-prefix"


def ask(helper, number, *queries):
    """Sends queries in one go and waits for the reply of the last, wakeful as the program is."""
    text = "".join("\t".join([str(number + i), *words]) + "\n" for i, words in enumerate(queries))
    helper.stdin.write(text.encode())
    helper.stdin.flush()
    wanted = f"{number + len(queries) - 1}\tOK".encode()
    replies = b""
    while wanted not in replies:
        try:
            replies += os.read(helper.stdout.fileno(), 65536)
        except BlockingIOError:
            os.sched_yield()


def transfer(helper):
    """Milliseconds of 27 values; each has a conversation of its own, and the end of one is not waited for."""
    start = time.monotonic()
    for cell in range(27):
        ask(helper, 3 * cell + 1, ["CLOSE"], ["OPEN", "KRN", "Smith"])
        ask(helper, 3 * cell + 3, ["POKE", f"1004MC|{cell}|1", "428,750"])
    return (time.monotonic() - start) * 1000


with Wine(programs, prefix) as wine, wine.krn(), wine.start("zenvora-dde.exe", stdin=subprocess.PIPE) as peer:
    peer.stdout.readline()
    os.set_blocking(peer.stdout.fileno(), False)
    taken = sorted(transfer(peer) for _ in range(10))
    peer.stdin.close()
print(f"27 pokes: best {taken[0]:.0f} ms, median {taken[5]:.0f} ms, worst {taken[-1]:.0f} ms")
