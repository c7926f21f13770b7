#!/usr/bin/env python3
"""audit_rows.py CLI SOURCE DATE: the rows of the audit report, worked out a second time.

Imports SOURCE with the program, lets it write the report as of DATE (YYYY-MM-DD) as a PDF, reads that with pdftotext,
and compares the rows of both sections, in their order, with those that the records in the Databook, read by mdb-export,
ask for. Looks also at title, page size and fonts. Exits 77 without these tools or without printing in the program, 1
with a line for each difference.
"""
import csv
import io
import shutil
import subprocess
import sys
import tempfile
from datetime import date
from decimal import ROUND_HALF_UP, Decimal
from pathlib import Path

COLUMNS = ("ADDRESS", "CITY", "ST", "ZIP", "ORIGLISTDATE", "ORIGLISTPRICE", "LASTLISTDATE", "LASTLISTPRICE",
           "CONTRACTDATE", "LISTCANCELDATE", "SALEDATE", "SELLINGPR")
DAY_ZERO = date(1900, 1, 1)
HEADING = ("AddressCityStateZipOrigListDtOrigList$CurrListDtCurrList$ContDtListCancelDtSaleDtSale$", "_" * 110)


def output_of(*command):
    return subprocess.run([str(part) for part in command], capture_output=True, check=True).stdout.decode("utf-8")


def printed(name, text):
    """A field as the report prints it, without blanks."""
    if name.endswith("DATE"):
        day = date.fromisoformat(text[:10]) if text else DAY_ZERO
        return "" if day == DAY_ZERO else f"{day.month}/{day.day}/{day.year}"
    if name.endswith("PRICE") or name == "SELLINGPR":
        price = int(Decimal(text or 0).quantize(Decimal(1), ROUND_HALF_UP))
        return str(price) if price else ""
    return "".join(text.split())


def expected_rows(databook, keys, effective):
    text = output_of("mdb-export", "-D", "%Y-%m-%d", "-T", "%Y-%m-%d", databook, "COMPS")
    records = {row["CENTRALKEY"]: row for row in csv.DictReader(io.StringIO(text))}
    listings, comps = [], []
    for key in keys:
        row = records[key]
        if row["SELECTED"].strip() not in ("1", "3"):
            continue
        line = "".join(printed(name, row[name]) for name in COLUMNS)
        sold = date.fromisoformat(row["SALEDATE"][:10]) if row["SALEDATE"] else DAY_ZERO
        if sold == DAY_ZERO or sold > effective:
            listings.append(line)
        elif (effective - sold).days <= 365:
            comps.append(line)
    return listings, comps


def printed_rows(pdf, name):
    """The rows of both sections, and what stands above the first heading."""
    title, sections = [], []
    for line in output_of("pdftotext", "-layout", pdf, "-").replace("\f", "\n").splitlines():
        line = "".join(line.split())
        if line in ("Listings:", "Comps:"):
            sections.append([])
        elif line and line not in HEADING:
            (sections[-1] if sections else title).append(line)
    if title != ["MarketConditionsAuditReport", "DatabaseName:" + name] or len(sections) != 2:
        raise SystemExit(f"the report does not begin as it should: {title}, {len(sections)} sections")
    return sections


def differences(wanted, found, section):
    for at in range(max(len(wanted), len(found))):
        left = wanted[at] if at < len(wanted) else None
        right = found[at] if at < len(found) else None
        if left != right:
            yield f"{section}, row {at + 1}: the records ask for {left}, the report has {right}"


def main():
    cli, source, effective = sys.argv[1], Path(sys.argv[2]), date.fromisoformat(sys.argv[3])
    for tool in ("mdb-export", "pdftotext", "pdfinfo", "pdffonts"):
        if not shutil.which(tool):
            print(f"{tool} is not installed: nothing was compared")
            return 77
    with tempfile.TemporaryDirectory() as folder:
        databook, pdf = Path(folder) / "SAMPLE.mdb", Path(folder) / "AUDIT.pdf"
        # Exit status 1: some rows of the sample are refused, as the sample means them to be.
        subprocess.run([cli, "import", source, "--into", databook, "--quiet"], capture_output=True, check=False)
        run = subprocess.run([cli, "print", databook, "--date", effective.isoformat(), "--today", effective.isoformat(),
                              "--pdf", pdf, "--fit"], capture_output=True, text=True, check=False)
        if "has no printing" in run.stderr:
            print("this build has no printing: nothing was compared")
            return 77
        run.check_returncode()
        keys = [row["CENTRALKEY"] for row in csv.DictReader(io.StringIO(output_of(cli, "records", databook,
                                                                                  "--format", "csv")))]
        listings, comps = expected_rows(databook, keys, effective)
        if not listings or not comps:
            raise SystemExit("the sample has no rows to compare")
        sections = printed_rows(pdf, "SAMPLE.MDB")
        faults = list(differences(listings, sections[0], "Listings")) + list(differences(comps, sections[1], "Comps"))
        info = output_of("pdfinfo", pdf)
        for wanted in ("Market Conditions Audit Report", "792 x 612 pts (letter)"):
            if wanted not in info:
                faults.append(f"pdfinfo does not tell {wanted}")
        fonts = [line.split()[-5:] for line in output_of("pdffonts", pdf).splitlines()[2:]]
        # emb, sub, uni, object and its generation: embedded, and with its characters named.
        faults += [f"a font is not embedded or not readable: {font}" for font in fonts if (font[0], font[2]) != ("yes", "yes")]
        said = f"{len(listings)} listings and {len(comps)} comps"
        if said not in run.stdout:
            faults.append(f"the command says {run.stdout.strip()}, not {said}")
    for fault in faults:
        print(fault)
    print(f"{len(listings) + len(comps)} rows compared, {len(faults)} differences")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
