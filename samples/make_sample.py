#!/usr/bin/env python3
"""Writes the sample source and its map file: LISTINGS.CSV and LISTINGS.map.

Usage: make_sample.py [FOLDER]     (default: the folder of this script)

The output is the same on every run and every machine: the generator below is a plain linear congruential one, so that no
change of Python's own can alter it. Streets, towns and figures are invented.
"""

import datetime
import pathlib
import sys

EFFECTIVE = datetime.date(2026, 6, 30)

HEADER = ["MLS #", "Status", "Address", "City", "State", "Zip Code", "List Date", "Original List Price",
          "Price Change Date", "List Price", "Contract Date", "Off Market Date", "Close Date", "Close Price", "DOM",
          "Subdivision", "Beds", "Baths", "SqFt", "Year Built", "Remarks"]

MAP = [("Address", "Address"), ("List Date", "Original Listing Date"),
       ("Original List Price", "Original Listing Price"), ("Price Change Date", "Current Listing Date"),
       ("List Price", "Current Listing Price"), ("Contract Date", "Contract Date"),
       ("Off Market Date", "Listing Cancel Date"), ("Close Date", "Sale Date"), ("Close Price", "Selling Price"),
       ("City", "City"), ("State", "State"), ("Zip Code", "Zip")]

STREETS = ["Birchmere Ct", "Larkspur Ln", "Old Quarry Rd", "Fennel Way", "Hollowbrook Dr", "Tamarack Trl", "Renée Ct",
           "O'Dell Ave", "Windmere Blvd", "Copperleaf Cir", "Saddle Notch Rd", "Pinfeather Ln", "Marrow St",
           "Kestrel Ridge Dr", "Juniper Hollow", "Twin Oaks Pkwy", "Garnet St", "Wexcombe Pl"]
PLACES = [("Ashby Falls", "48901", "Quarry Hills"), ("Ashby Falls", "48901", "Old Town"),
          ("North Ashby", "48904", "Windmere"), ("Port Lenna", "48922", "Lenna Shores"), ("Millrace", "48937", "")]
REMARKS = ["", "", "", "Motivated seller", "Updated kitchen, newer roof, fenced yard",
           "Close to schools and shopping", "Sold as is, no repairs", "Lake view; dock shared with 2 neighbors",
           "Immediate occupancy"]


class Dice:
    def __init__(self, seed):
        self.state = seed

    def below(self, limit):
        self.state = (self.state * 6364136223846793005 + 1442695040888963407) % 2 ** 64
        return (self.state >> 33) % limit

    def between(self, low, high):
        return low + self.below(high - low + 1)

    def pick(self, choices):
        return choices[self.below(len(choices))]

    def chance(self, percent):
        return self.below(100) < percent


def date_text(day, form):
    if day is None:
        return ""
    month = day.strftime("%B") if form == "long" else ""
    return {"slashes": f"{day.month:02}/{day.day:02}/{day.year}", "short": f"{day.month}/{day.day}/{day.year % 100:02}",
            "iso": day.isoformat(), "long": f"{month}-{day.day}-{day.year}",
            "digits": f"{day.month:02}{day.day:02}{day.year}"}[form]


def price_text(price, form):
    if price is None:
        return ""
    return {"plain": str(price), "cents": f"{price}.00", "dollars": f"${price:,}", "full": f"${price:,}.00"}[form]


class Sample:
    def __init__(self):
        self.dice = Dice(20260630)
        self.rows = []
        self.used = set()

    def address(self):
        while True:
            text = f"{self.dice.between(3, 9899)} {self.dice.pick(STREETS)}"
            if self.dice.chance(14):
                text += self.dice.pick([", Unit ", " #", ", Apt "]) + str(self.dice.between(1, 60))
            if text.upper() not in self.used:
                self.used.add(text.upper())
                return text

    def house(self):
        """Living area, asking price per square foot with the market's slow rise, and the columns about the building."""
        sqft = self.dice.between(82, 390) * 10
        beds = 2 + sqft // 1100 + self.dice.below(2)
        baths = self.dice.pick(["1", "1.5", "2", "2.5"]) if sqft < 2200 else self.dice.pick(["2.5", "3", "3.5"])
        return sqft, [str(beds), baths, f"{sqft:,}" if self.dice.chance(50) else str(sqft),
                      str(self.dice.between(1921, 2024)), self.dice.pick(REMARKS)]

    def asking_price(self, sqft, listed):
        months = (listed.year - 2024) * 12 + listed.month
        price = sqft * (165 + months) * self.dice.between(88, 114) // 100
        if sqft > 3600:
            price *= 2
        return price // 100 * 100

    def add(self, status, listed, contract=None, closed=None, off_market=None):
        sqft, building = self.house()
        original = self.asking_price(sqft, listed)
        current, changed = original, None
        last_day = closed or contract or off_market or EFFECTIVE
        first_on_market = contract or off_market or EFFECTIVE
        if self.dice.chance(38) and (first_on_market - listed).days > 21:
            changed = listed + datetime.timedelta(self.dice.between(14, (first_on_market - listed).days - 3))
            current = original * self.dice.between(92, 99) // 100 // 100 * 100
        sold = current * self.dice.between(94, 103) // 100 // 500 * 500 if closed else None
        city, zip_code, subdivision = self.dice.pick(PLACES)
        price_form = self.dice.pick(["dollars", "dollars", "plain", "cents"])
        days = ((contract or off_market or min(last_day, EFFECTIVE)) - listed).days
        self.rows.append([
            f"A26{self.dice.between(10000, 99999)}", status, self.address(), city, "MI", zip_code,
            date_text(listed, "slashes"), price_text(original, price_form),
            date_text(changed, self.dice.pick(["slashes", "short"])), price_text(current, price_form),
            date_text(contract, "iso"), date_text(off_market, "slashes"),
            date_text(closed, self.dice.pick(["slashes", "short", "long"] if self.dice.chance(95) else ["digits"])),
            price_text(sold, self.dice.pick(["dollars", "full", "plain"])), str(max(days, 0)), subdivision] + building)

    def sale(self, days_before):
        closed = EFFECTIVE - datetime.timedelta(days_before)
        contract = closed - datetime.timedelta(self.dice.between(21, 58))
        listed = contract - datetime.timedelta(self.dice.between(2, 130))
        # Some agents leave the off-market date that the system sets with the contract, some clear it.
        self.add("Closed", listed, contract, closed, contract if self.dice.chance(60) else None)

    def listing(self, status):
        contract = off_market = None
        if status == "Active":
            listed = EFFECTIVE - datetime.timedelta(self.dice.between(1, 330))
        elif status == "Pending":
            contract = EFFECTIVE - datetime.timedelta(self.dice.between(1, 75))
            listed = contract - datetime.timedelta(self.dice.between(2, 120))
        else:
            off_market = EFFECTIVE - datetime.timedelta(self.dice.between(0, 320))
            listed = off_market - datetime.timedelta(self.dice.between(25, 180))
        self.add(status, listed, contract, None, off_market)

    def build(self):
        for days in range(0, 366, 2):
            self.sale(days)
        for _ in range(34):
            self.sale(self.dice.below(366))
        for status, count in (("Active", 96), ("Pending", 31), ("Withdrawn", 27), ("Expired", 15)):
            for _ in range(count):
                self.listing(status)
        for days in (380, 402, 455, 371):  # closed more than a year ago
            self.sale(days)
        for at in range(len(self.rows) - 1, 0, -1):
            other = self.dice.below(at + 1)
            self.rows[at], self.rows[other] = self.rows[other], self.rows[at]
        self.spoil()

    def spoil(self):
        """Rows as they come out of real offices."""
        column = {name: at for at, name in enumerate(HEADER)}
        closed = [row for row in self.rows if row[1] == "Closed"]
        active = [row for row in self.rows if row[1] == "Active"]
        again = list(closed[7])  # listed twice, once in capitals
        again[column["Address"]] = again[column["Address"]].upper()
        self.rows.insert(150, again)
        self.rows.insert(260, list(active[11]))
        closed[20][column["Close Price"]] = "N/A"
        active[30][column["List Date"]] = "see remarks"
        closed[33][column["Close Date"]] = "20260315"
        closed[41][column["Contract Date"]] = "13/32/2026"
        active[44][column["Address"]] = '88 Marrow St "Rear"'
        active[52][column["Address"]] = ""
        active[60][column["Remarks"]] = '9" ceilings'
        closed[60][column["Address"]] = "  " + closed[60][column["Address"]] + " "
        active[70][column["Original List Price"]] = ""


def csv_field(text):
    # As the listing service writes it: quotes only where a comma demands them, and none are ever doubled.
    return f'"{text}"' if "," in text else text


def main():
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else pathlib.Path(__file__).resolve().parent
    sample = Sample()
    sample.build()
    lines = [",".join(csv_field(text) for text in row) + "\r\n" for row in [HEADER] + sample.rows]
    (folder / "LISTINGS.CSV").write_bytes("".join(lines).encode("utf-8"))
    (folder / "LISTINGS.map").write_bytes("".join(f"{a} <-> {b}\r\n" for a, b in MAP).encode("utf-8"))


if __name__ == "__main__":
    main()
