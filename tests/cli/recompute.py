#!/usr/bin/env python3
"""recompute.py CLI SOURCE DATE: the figures of a sample, worked out a second time.

Imports SOURCE with the program, lets it calculate as of DATE (YYYY-MM-DD), and works all nine rows of the form out again
from what mdb-export reads in the Databook: by the plain meaning of each figure, with no code of the program's. Exits 77
without mdb-export, 1 with a line for each figure that differs.
"""
import csv
import io
import json
import shutil
import subprocess
import sys
import tempfile
from datetime import date, timedelta
from decimal import ROUND_HALF_UP, Decimal
from pathlib import Path

PERIODS = ((365, 182, 6), (181, 91, 3), (90, 0, 3))  # first and last day back, months
DAY_ZERO = date(1900, 1, 1)


def read_table(databook):
    text = subprocess.run(["mdb-export", "-D", "%Y-%m-%d", "-T", "%Y-%m-%d", str(databook), "COMPS"],
                          capture_output=True, check=True).stdout.decode("utf-8")
    records = []
    for row in csv.DictReader(io.StringIO(text)):
        record = {"SELECTED": row["SELECTED"].strip()}
        for name in ("ORIGLISTDATE", "LASTLISTDATE", "CONTRACTDATE", "LISTCANCELDATE", "SALEDATE"):
            day = date.fromisoformat(row[name][:10]) if row[name] else DAY_ZERO
            record[name] = None if day == DAY_ZERO else day
        for name in ("ORIGLISTPRICE", "LASTLISTPRICE", "SELLINGPR"):
            record[name] = int(Decimal(row[name] or 0).quantize(Decimal(1), ROUND_HALF_UP))
        records.append(record)
    return records


def days(earlier, later):
    return (later - earlier).days


def classify(record, start, end, effective):
    """What a record is in a period: ("sale", DOM, price, list price), ("listing", DOM, price) or None."""
    listed = record["ORIGLISTDATE"] or DAY_ZERO

    def listing(age):
        if age <= 0:
            return None
        changed = record["LASTLISTDATE"]
        in_force = changed is not None and (start <= changed <= end or
                                            effective - timedelta(365) <= changed < start)
        return "listing", age + 1, record["LASTLISTPRICE" if in_force else "ORIGLISTPRICE"]

    if record["SALEDATE"]:
        sold = record["SALEDATE"]
        if sold < start:
            return None
        if sold > end:
            return listing(days(listed, end) - 1)
        if sold < listed:
            return None
        return "sale", days(listed, sold) + 1, record["SELLINGPR"], record["LASTLISTPRICE"]
    off_market = record["LISTCANCELDATE"] or record["CONTRACTDATE"]
    if off_market is None:
        return listing(days(listed, end) - (0 if start <= listed <= end else 1))
    if off_market < start:
        return None
    return listing(days(listed, off_market) if off_market <= end else days(listed, end) - 1)


def median(values):
    """As the form's lists have it: the lower whole number between the two in the middle."""
    values = sorted(values)
    middle = len(values) // 2
    return values[middle] if len(values) % 2 else (values[middle - 1] + values[middle]) // 2


def two_places(value):
    return Decimal(value).quantize(Decimal("0.01"), ROUND_HALF_UP)


def figures(records, effective):
    rows = {name: [] for name in ("txtTotalC", "txtAveCPrice", "txtTotalL", "txtTotalPerAveCPrice", "txtMedianCPrice",
                                  "txtMedianCDOM", "txtMedianLPrice", "txtMedianLDOM", "txtMedianLPDivSP")}
    for first, last, months in PERIODS:
        start, end = effective - timedelta(first), effective - timedelta(last)
        found = [classify(r, start, end, effective) for r in records if r["SELECTED"] in ("1", "3")]
        sales = [f for f in found if f and f[0] == "sale"]
        listings = [f for f in found if f and f[0] == "listing"]
        rate = two_places(Decimal(len(sales)) / months)
        rows["txtTotalC"].append(str(len(sales)))
        rows["txtAveCPrice"].append(str(rate))
        rows["txtTotalL"].append(str(len(listings)))
        rows["txtTotalPerAveCPrice"].append(str(two_places(len(listings) / rate if rate else 0)))
        sale_price = median([s[2] for s in sales]) if sales else 0
        list_price = median([s[3] for s in sales]) if sales else ""
        rows["txtMedianCPrice"].append(f"{sale_price:,}")
        rows["txtMedianCDOM"].append(str(median([s[1] for s in sales]) if sales else 0))
        rows["txtMedianLPrice"].append(str(list_price))
        rows["txtMedianLDOM"].append(str(median([f[1] for f in listings]) if listings else 0))
        ratio = str(two_places(Decimal(sale_price) / list_price)) if list_price else "0"
        rows["txtMedianLPDivSP"].append(ratio[1:] if ratio.startswith("0.") else ratio)
    return rows


def main():
    cli, source, effective = sys.argv[1], sys.argv[2], date.fromisoformat(sys.argv[3])
    if not shutil.which("mdb-export"):
        print("mdb-export (mdbtools) is not installed")
        return 77
    with tempfile.TemporaryDirectory() as folder:
        databook = Path(folder) / "SAMPLE.mdb"
        # Status 1: some rows of the sample are refused, as they are meant to be.
        if subprocess.run([cli, "import", source, "--into", databook, "--quiet"], check=False).returncode not in (0, 1):
            return 1
        calculated = json.loads(subprocess.run([cli, "calc", databook, "--date", str(effective), "--today", str(effective),
                                                "--format", "json"],
                                               capture_output=True, check=True).stdout)["results"]
        recomputed = figures(read_table(databook), effective)
    if not all(int(count) > 0 for count in recomputed["txtTotalC"] + recomputed["txtTotalL"]):
        print("the sample leaves a period empty: this proves little")
        return 1
    wrong = [name for name in recomputed if recomputed[name] != calculated[name]]
    for name in wrong:
        print(f"{name}: the program has {calculated[name]}, recomputed {recomputed[name]}")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
