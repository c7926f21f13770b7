#!/usr/bin/env python3
"""road.py BIN SAMPLES PREFIX: the whole road to KRN where it runs under Wine.

A Databook is made, calculated and sent into KRN.EXE, the stand-in that answers the exchange itself; what arrived is read
back from its file. PREFIX is a folder for a Wine prefix of its own; it is kept, because making it takes seconds. Exit status
77: Wine or the programs for it are not here.
"""

import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time

BIN, SAMPLES, PREFIX = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
DATE = "06/30/2026"
LIMIT = 5.0 + 1.0  # what an answer may take, and the grace behind it
SLACK = 5.0 if os.getloadavg()[0] < os.cpu_count() else 40.0  # starting Wine, beside other work
ROWS = [(16, "txtTotalC"), (17, "txtAveCPrice"), (18, "txtTotalL"), (19, "txtTotalPerAveCPrice"),
        (21, "txtMedianCPrice"), (22, "txtMedianCDOM"), (23, "txtMedianLPrice"), (24, "txtMedianLDOM"),
        (25, "txtMedianLPDivSP")]


def skip(why):
    print(f"road: {why}: skipped")
    sys.exit(77)


if not shutil.which("wine"):
    skip("Wine is not installed (packages wine, wine64)")
for program in ("zenvora-dde.exe", "KRN.EXE"):
    if not (BIN / program).exists():
        skip(f"{program} was not built (package g++-mingw-w64-x86-64-posix)")

FOLDER = pathlib.Path(tempfile.mkdtemp(prefix="zenvora-road-"))
ENVIRONMENT = {"PATH": os.environ["PATH"], "HOME": str(FOLDER), "LANG": "C.UTF-8", "WINEPREFIX": str(PREFIX),
               "WINEARCH": "win64", "WINEDLLOVERRIDES": "mscoree=;mshtml=", "WINEDEBUG": "-all"}


def wine(*command, **options):
    return subprocess.run(["wine", *command], env=ENVIRONMENT, check=True, stdin=subprocess.DEVNULL,
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=180, **options)


def make_prefix():
    if (PREFIX / "ready").exists():
        return
    shutil.rmtree(PREFIX, ignore_errors=True)
    PREFIX.mkdir(parents=True)
    subprocess.run(["wineboot", "-i"], env=ENVIRONMENT, check=True, stdin=subprocess.DEVNULL,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=300)
    # No display is needed then.
    wine("reg", "add", r"HKCU\Software\Wine\Drivers", "/v", "Graphics", "/d", "null", "/f")
    # The session that made the prefix looked for a display; windows of the next one find each other.
    for end in ("-k", "-w"):
        subprocess.run(["wineserver", end], env=ENVIRONMENT, stderr=subprocess.DEVNULL, timeout=60, check=False)
    (PREFIX / "ready").touch()


class Krn:
    """KRN.EXE with a report, while the block lasts."""

    def __init__(self, *lines):
        self.file = FOLDER / "KRN.txt"
        self.file.write_text("\n".join(["[Smith]", "forms = 1004MC,Text,ICU,", *lines]) + "\n", encoding="utf-8")

    def __enter__(self):
        self.process = subprocess.Popen(["wine", str(BIN / "KRN.EXE"), str(self.file)], env=ENVIRONMENT,
                                        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL, start_new_session=True)
        if self.process.stdout.readline().strip() != b"ready":
            raise AssertionError("KRN.EXE did not come up")
        return self

    def __exit__(self, *unused):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    def values(self):
        time.sleep(0.3)  # it saves a moment later
        lines = self.file.read_text(encoding="utf-8").splitlines()
        return dict(line.split(" = ", 1) for line in lines if line.startswith("1004MC|"))


def cli(*arguments):
    start = time.monotonic()
    result = subprocess.run([str(BIN / "zenvora-cli"), *arguments], env=ENVIRONMENT, cwd=FOLDER,
                            stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=120)
    result.seconds = time.monotonic() - start
    return result


def transfer(*arguments):
    return cli("transfer", "BOOK.mdb", "--date", DATE, "--no-check", *arguments)


def expect(truth, what, shown=None):
    if not truth:
        detail = f": {shown.returncode} {shown.stdout} {shown.stderr}" if shown is not None else ""
        raise AssertionError(what + detail)


def helper(*queries):
    """Asks zenvora-dde.exe itself; returns its replies and how long they took."""
    process = subprocess.Popen(["wine", str(BIN / "zenvora-dde.exe")], env=ENVIRONMENT, stdin=subprocess.PIPE,
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    expect(process.stdout.readline() == b"*READY\t1\n", "the helper did not come up")
    replies = []
    start = time.monotonic()
    for number, query in enumerate(queries, 1):
        process.stdin.write(("\t".join([str(number), *query]) + "\n").encode())
        process.stdin.flush()
        replies.append(process.stdout.readline().decode().rstrip("\n").split("\t"))
    seconds = time.monotonic() - start
    process.stdin.close()
    expect(process.wait(timeout=20) == 0, "the helper did not end at the end of its input")
    return replies, seconds


def figures():
    results = json.loads(cli("calc", "BOOK.mdb", "--date", DATE, "--no-check", "--format", "json").stdout)["results"]
    return {f"1004MC|{field}|{i + 1}": text for field, name in ROWS for i, text in enumerate(results[name])}


def the_figures_arrive(expected):
    with Krn() as krn:
        result = transfer("--format", "json")
        expect(result.returncode == 0, "the transfer failed", result)
        expect(krn.values() == expected, f"other texts arrived: {krn.values()}")
        expect(transfer("--condo").returncode == 0, "the condo transfer failed")
        expect(len(krn.values()) == 39, "not all of the condo section arrived")


def nobody_is_started_without_krn():
    result = transfer()
    expect(result.returncode == 4, "a transfer without KRN did not say so", result)


def a_refused_value_is_told(expected):
    with Krn("refuse = 1004MC|18|2", "refuse = 1004MC|25|3") as krn:
        result = transfer()
        expect(result.returncode == 1, "refusals went unnoticed", result)
        expect("25 of 27 values arrived" in result.stderr and "1004MC|18|2, 1004MC|25|3" in result.stderr,
               "the refused values are not named", result)
        values = krn.values()
        expect(len(values) == 25 and all(expected[item] == text for item, text in values.items()),
               "what was not refused did not arrive")


def refusals_behind_requests_are_seen():
    with Krn("refuse = 1004MC|18|2"):
        queries = [["OPEN", "KRN", "Smith"]]
        for _ in range(200):
            queries += [["REQUEST", "ListForms"], ["POKE", "1004MC|18|2", "x"]]
        replies, _ = helper(*queries)
        expect(all(reply[1:3] == ["ERR", "380"] for reply in replies[2::2]), "a refused poke looked accepted")


def texts_of_all_kinds_arrive():
    text = "Tab\\tback\\\\slash\\r\\nZürich €" + "x" * 100_000
    with Krn():
        replies, _ = helper(["OPEN", "Krn", "SMITH"], ["POKE", "Text|10|1", text], ["REQUEST", "Text|10|1"],
                            ["POKE", "Text|5|1", ""], ["REQUEST", "Text|5|1"], ["FITS", "Ż"], ["FITS", "€"],
                            ["OPEN", "KRN", ""], ["OPEN", "KRN", "Nobody"], ["REQUEST", "x"])
        expect(replies[2][1:] == ["OK", text], "a text came back otherwise")
        expect(replies[4][1:] == ["OK", ""], "an empty text came back otherwise")
        expect([reply[2] for reply in replies[5:7]] == ["0", "1"], "the character set is judged wrongly")
        expect([reply[2] for reply in replies[7:]] == ["282", "282", "293"], f"wrong faults: {replies[7:]}")


def a_hang_ends_at_the_limit():
    with Krn("hang = 1004MC|18|2") as krn:
        result = transfer()
        expect(result.returncode == 4 and "7 of 27 values arrived" in result.stderr and
               "Of 1 it is not known" in result.stderr, "a hang was not told", result)
        expect(result.seconds < LIMIT + SLACK, f"a hang took {result.seconds:.1f} s")
        expect(len(krn.values()) == 7, "values of a broken transfer")


def a_stopped_krn_does_not_stop_zenvora():
    with Krn() as krn:
        krn.process.send_signal(signal.SIGSTOP)
        result = transfer()
        expect(result.returncode == 4, "a stopped KRN was not told", result)
        expect(result.seconds < LIMIT + SLACK, f"a stopped KRN took {result.seconds:.1f} s")
        krn.process.send_signal(signal.SIGCONT)
        expect(transfer().returncode == 0, "KRN was not reached when it went on")


def a_kill_in_mid_transfer_is_told(expected):
    with Krn("die = 1004MC|21|1") as krn:
        result = transfer()
        expect(result.returncode == 4 and "12 of 27 values arrived" in result.stderr, "a kill was not told", result)
        values = krn.values()
        expect(len(values) == 12 and all(expected[item] == text for item, text in values.items()),
               "values of a broken transfer")
    the_figures_arrive(expected)


def it_is_quick():
    queries = []
    for cell in range(27):
        queries += [["OPEN", "KRN", "Smith"], ["POKE", f"1004MC|{cell}|1", "428,750"], ["CLOSE"]]
    with Krn():
        best = min(helper(*queries)[1] for _ in range(5))
    print(f"road: 27 pokes took {best * 1000:.0f} ms")
    if os.getloadavg()[0] < os.cpu_count():
        expect(best < 0.1, "27 pokes took over 100 ms")


try:
    make_prefix()
    made = cli("import", str(SAMPLES / "LISTINGS.CSV"), "--into", "BOOK.mdb")
    expect(made.returncode in (0, 1), "no Databook was made", made)
    expect(cli("check", "BOOK.mdb", "--date", DATE).returncode == 0, "the Databook was not checked")
    sent = figures()
    for step, arguments in ((nobody_is_started_without_krn, ()), (the_figures_arrive, (sent,)),
                            (a_refused_value_is_told, (sent,)), (refusals_behind_requests_are_seen, ()),
                            (texts_of_all_kinds_arrive, ()), (a_hang_ends_at_the_limit, ()),
                            (a_stopped_krn_does_not_stop_zenvora, ()), (a_kill_in_mid_transfer_is_told, (sent,)),
                            (it_is_quick, ())):
        step(*arguments)
        print(f"road: {step.__name__}: passed")
except (AssertionError, subprocess.SubprocessError) as failure:
    print(f"road: FAILED: {failure}")
    sys.exit(1)
finally:
    subprocess.run(["wineserver", "-k"], env=ENVIRONMENT, stderr=subprocess.DEVNULL, check=False)
    shutil.rmtree(FOLDER, ignore_errors=True)
