"""What the figures of a run say about their aims: one line for each figure, as a table and as JSON."""

import dataclasses
import math
from typing import Optional

NOISE = 1.2  # median to least, from which on a line is marked


@dataclasses.dataclass
class Line:
    """A figure, and the aim that it is held against."""

    figure: str
    measured: float
    unit: str
    limit: Optional[float] = None  # in the same unit; None: there is no aim, it is shown beside
    aim: str = ""
    reference: Optional[float] = None  # what was measured in the same run and the aim counts from
    noise: float = 1.0  # median to least of what it was made of

    @property
    def is_kept(self):
        return None if self.limit is None else self.measured <= self.limit

    @property
    def ratio(self):
        return self.measured / self.reference if self.reference else None

    def as_json(self):
        return {
            **dataclasses.asdict(self),
            "kept": self.is_kept,
            "ratio": self.ratio,
        }


def noise(*all_figures):
    return max((f.median / f.least if f.least > 0 else 1.0 for f in all_figures), default=1.0)


def times(figure, measured, reference, factor, unit, name):
    """The aim is so many times what was measured in the same run."""
    return Line(
        figure,
        measured.median,
        unit,
        reference.median * factor,
        f"{factor} × {name}",
        reference.median,
        noise(measured, reference),
    )


def beyond(figure, measured, reference, allowance, unit, name):
    """The aim is that plus an allowance."""
    return Line(
        figure,
        measured.median,
        unit,
        reference.median + allowance,
        f"{name} + {allowance} {unit}",
        reference.median,
        noise(measured, reference),
    )


def at_most(figure, measured, limit, unit):
    return Line(figure, measured, unit, limit, f"{number(limit)} {unit}".strip())


def number(value):
    """Three digits that count, and no zeros behind them."""
    if value == 0:
        return "0"
    digits = 0
    while digits < 4 and abs(value) * 10**digits < 100:
        digits += 1
    text = f"{value:.{digits}f}"
    return text.rstrip("0").rstrip(".") if "." in text else text


def table(lines):
    """As Markdown, which a terminal shows as well."""
    rows = [("Figure", "Measured", "Aim: at most", "Reference", "Ratio", "")]
    for line in lines:
        verdict = {None: "", True: "kept", False: "MISSED"}[line.is_kept]
        if line.noise > NOISE:
            verdict += f" (noise {line.noise:.1f})"
        aim = line.aim
        if line.limit is not None and line.reference is not None:
            aim += f" = {number(line.limit)}"
        rows.append(
            (
                line.figure,
                f"{number(line.measured)} {line.unit}".strip(),
                aim,
                "" if line.reference is None else number(line.reference),
                "" if line.ratio is None else f"{line.ratio:.2f}",
                verdict.strip(),
            )
        )
    widths = [max(len(row[i]) for row in rows) for i in range(len(rows[0]))]
    rows.insert(1, tuple("-" * width for width in widths))
    return "\n".join(
        "| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |"
        for row in rows
    )


def exponent(fewer, more, factor):
    """1 where the work is linear: by which power of so many times the notes it has grown."""
    return math.log(more / fewer) / math.log(factor)
