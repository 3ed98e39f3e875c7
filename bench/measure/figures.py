"""Figures of several runs, and the table that shows them."""

import statistics

NOISE = 1.2  # median to least, from which on the machine was too busy to judge


class Figures:
    def __init__(self):
        self._values = []

    def add(self, value):
        self._values.append(value)

    @property
    def median(self):
        return statistics.median(self._values)

    @property
    def least(self):
        return min(self._values)

    @property
    def greatest(self):
        return max(self._values)

    def __len__(self):
        return len(self._values)


class Table:
    """Prints what one measurement reports."""

    def __init__(self, title, unit, digits):
        self._unit, self._digits = unit, digits
        print(f"\n{title}")

    def _number(self, value):
        return f"{value:.{self._digits}f}"

    def _print(self, name, value, remark=""):
        print(f"  {name:<40}{value:>10} {remark}".rstrip())

    def row(self, name, figures):
        least, greatest = self._number(figures.least), self._number(figures.greatest)
        median = f"{self._number(figures.median)} {self._unit}"
        self._print(name, median, f"({least} – {greatest}, {len(figures)} runs)")

    def value(self, name, value, unit=None):
        self._print(name, f"{self._number(value)} {self._unit if unit is None else unit}".rstrip())

    def promise(self, name, value, limit):
        verdict = "kept" if value <= limit else "BROKEN"
        self._print(name, self._number(value), f"at most {limit}: {verdict}")

    def noise(self, figures):
        if figures.median > NOISE * figures.least:
            print("  (the runs differ too much to judge by them: is the machine busy?)")
