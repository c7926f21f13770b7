#!/usr/bin/env python3
"""road.py BIN SAMPLES PREFIX: the whole road to KRN where it runs under Wine.

A Databook is made, calculated and sent into KRN.EXE, the stand-in that answers the exchange itself; what arrived is read
back from its file. PREFIX is a folder for a Wine prefix of its own. Exit status 77: Wine or the programs for it are not
here. How quick the helper is: bench/link_bench.py.
"""

import json
import pathlib
import signal
import subprocess
import sys
import time

from krn_under_wine import Missing, Wine

BIN, SAMPLES, PREFIX = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
DATE = "06/30/2026"
LIMIT = 60.0  # far above the five seconds that an answer may take: a machine can be busy, a hang never ends
ROWS = [(16, "txtTotalC"), (17, "txtAveCPrice"), (18, "txtTotalL"), (19, "txtTotalPerAveCPrice"),
        (21, "txtMedianCPrice"), (22, "txtMedianCDOM"), (23, "txtMedianLPrice"), (24, "txtMedianLDOM"),
        (25, "txtMedianLPDivSP")]


def cli(wine, *arguments):
    start = time.monotonic()
    result = subprocess.run([str(BIN / "zenvora-cli"), *arguments], env=wine.environment, cwd=wine.folder,
                            stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=120)
    result.seconds = time.monotonic() - start
    return result


def transfer(wine, *arguments):
    return cli(wine, "transfer", "BOOK.mdb", "--date", DATE, "--no-check", *arguments)


def expect(truth, what, shown=None):
    if not truth:
        detail = f": {shown.returncode} {shown.stdout} {shown.stderr}" if shown is not None else ""
        raise AssertionError(what + detail)


def figures(wine):
    shown = cli(wine, "calc", "BOOK.mdb", "--date", DATE, "--no-check", "--format", "json").stdout
    results = json.loads(shown)["results"]
    return {f"1004MC|{field}|{i + 1}": text for field, name in ROWS for i, text in enumerate(results[name])}


def the_figures_arrive(wine, expected):
    with wine.krn() as krn:
        result = transfer(wine, "--format", "json")
        expect(result.returncode == 0, "the transfer failed", result)
        values = krn.values(27)
        expect(values == expected, f"other texts arrived: {values}")
        expect(transfer(wine, "--condo").returncode == 0, "the condo transfer failed")
        expect(len(krn.values(39)) == 39, "not all of the condo section arrived")


def nobody_is_started_without_krn(wine, _):
    result = transfer(wine)
    expect(result.returncode == 4, "a transfer without KRN did not say so", result)


def a_refused_value_is_told(wine, expected):
    with wine.krn("refuse = 1004MC|18|2", "refuse = 1004MC|25|3") as krn:
        result = transfer(wine)
        expect(result.returncode == 1, "refusals went unnoticed", result)
        expect("25 of 27 values arrived" in result.stderr and "1004MC|18|2, 1004MC|25|3" in result.stderr,
               "the refused values are not named", result)
        values = krn.values(25)
        expect(len(values) == 25 and all(expected[item] == text for item, text in values.items()),
               f"what was not refused did not arrive: {values}")


def refusals_behind_requests_are_seen(wine, _):
    with wine.krn("refuse = 1004MC|18|2"):
        queries = [["OPEN", "KRN", "Smith"]]
        for _ in range(200):
            queries += [["REQUEST", "ListForms"], ["POKE", "1004MC|18|2", "x"]]
        replies, _ = wine.ask_helper(*queries)
        expect(all(reply[1:3] == ["ERR", "380"] for reply in replies[2::2]), "a refused poke looked accepted")


def texts_of_all_kinds_arrive(wine, _):
    text = "Tab\\tback\\\\slash\\r\\nZürich €" + "x" * 100_000
    with wine.krn():
        replies, _ = wine.ask_helper(["OPEN", "Krn", "SMITH"], ["POKE", "Text|10|1", text], ["REQUEST", "Text|10|1"],
                                     ["POKE", "Text|5|1", ""], ["REQUEST", "Text|5|1"], ["FITS", "Ż"], ["FITS", "€"],
                                     ["OPEN", "KRN", ""], ["OPEN", "KRN", "Nobody"], ["REQUEST", "x"])
        expect(replies[2][1:] == ["OK", text], "a text came back otherwise")
        expect(replies[4][1:] == ["OK", ""], "an empty text came back otherwise")
        expect([reply[2] for reply in replies[5:7]] == ["0", "1"], "the character set is judged wrongly")
        expect([reply[2] for reply in replies[7:]] == ["282", "282", "293"], f"wrong faults: {replies[7:]}")


def a_hang_ends_at_the_limit(wine, _):
    with wine.krn("hang = 1004MC|18|2") as krn:
        result = transfer(wine)
        expect(result.returncode == 4 and "7 of 27 values arrived" in result.stderr and
               "Of 1 it is not known" in result.stderr, "a hang was not told", result)
        expect(result.seconds < LIMIT, f"a hang took {result.seconds:.1f} s")
        expect(len(krn.values(7)) == 7, "values of a broken transfer")


def a_stopped_krn_does_not_stop_zenvora(wine, _):
    with wine.krn() as krn:
        krn.process.send_signal(signal.SIGSTOP)
        result = transfer(wine)
        expect(result.returncode == 4, "a stopped KRN was not told", result)
        expect(result.seconds < LIMIT, f"a stopped KRN took {result.seconds:.1f} s")
        krn.process.send_signal(signal.SIGCONT)
        result = transfer(wine)
        expect(result.returncode == 0, "KRN was not reached when it went on", result)


def a_kill_in_mid_transfer_is_told(wine, expected):
    with wine.krn("die = 1004MC|21|1") as krn:
        result = transfer(wine)
        expect(result.returncode == 4 and "12 of 27 values arrived" in result.stderr, "a kill was not told", result)
        values = krn.values(12)
        expect(len(values) == 12 and all(expected[item] == text for item, text in values.items()),
               f"values of a broken transfer: {values}")
    the_figures_arrive(wine, expected)


try:
    with Wine(BIN, PREFIX) as session:
        made = cli(session, "import", str(SAMPLES / "LISTINGS.CSV"), "--into", "BOOK.mdb")
        expect(made.returncode in (0, 1), "no Databook was made", made)
        expect(cli(session, "check", "BOOK.mdb", "--date", DATE).returncode == 0, "the Databook was not checked")
        sent = figures(session)
        for step in (nobody_is_started_without_krn, the_figures_arrive, a_refused_value_is_told,
                     refusals_behind_requests_are_seen, texts_of_all_kinds_arrive, a_hang_ends_at_the_limit,
                     a_stopped_krn_does_not_stop_zenvora, a_kill_in_mid_transfer_is_told):
            step(session, sent)
            print(f"road: {step.__name__}: passed")
except Missing as why:
    print(f"road: {why}: skipped")
    sys.exit(77)
except (AssertionError, subprocess.SubprocessError) as failure:
    print(f"road: FAILED: {failure}")
    sys.exit(1)
