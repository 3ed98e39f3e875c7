"""What scripts/bench measures. As with scripts/measure a measurement has rounds, in which the
programs take turns, as many as its budget lets it; afterwards its lines hold the figures against their aims."""

import contextlib
import os

from failure import Failure
from figures import Figures
from measurements import MANY, Opening, _slope
from processes import wait_until
from programs import Bare, Floor, GraphicsFloor, Inside, Plim, Probe, run
from verdicts import Line, at_most, beyond, exponent, noise, times

FEW, LOTS = 100, 10_000  # notes
SIZE = 2000  # characters of each
NEW_NOTE = ("--new-note",)


def plim(notes, stickies=0, arguments=()):
    return Plim.started(stickies, notes, SIZE, arguments)


class Starts:
    """From just before a program is started."""

    rounds = 7
    budget = 170  # seconds, after which no further round is begun

    def __init__(self):
        self.time = {}

    def check(self):
        """That the list takes a click and a search as soon as it says so."""
        with plim(FEW) as running:
            running.wait_until_usable()
            main = running.wait_for_main_window()
            run("xdotool", "mousemove", "--window", main, "200", "250", "click", "1")
            running.wait_for_shown(1)
        with plim(LOTS) as running:
            running.wait_until_usable()
            if running.process.has_children():
                raise Failure("the list of many notes has waited for the web engine")
        with plim(FEW) as running:
            running.wait_until_usable()
            run("xdotool", "key", "ctrl+f")
            run("xdotool", "type", "--delay", "40", "Note 77")
            wait_until(
                lambda: run("xdotool", "key", "--delay", "100", "Down", "Return") == ""
                and running.process.times(f"(?i)^plim.editor: shown .*{76:012x}"),
                lambda: f"the search does not find its note\n{running.process.log()}",
            )

    def _add(self, name, seconds):
        self.time.setdefault(name, Figures()).add(seconds)

    def round(self):
        with Bare.started() as bare:
            self._add("bare", bare.wait_until_usable())
        with Floor.started(1) as floor:
            self._add("floor", floor.wait_until_ready())
        for notes in (FEW, LOTS):
            with plim(notes) as running:
                self._add(f"list {notes}", running.wait_until_usable())
            with plim(notes, arguments=NEW_NOTE) as running:
                self._add(f"caret {notes}", running.wait_for_shown(1) - running.process.started)
        with GraphicsFloor.started(MANY) as floor:
            self._add("floor twenty", floor.wait_until_ready())
        with Floor.started(MANY) as floor:
            self._add("software floor twenty", floor.wait_until_ready())
        with plim(FEW, MANY) as running:
            self._add("stickies", running.wait_until_ready())

    def lines(self):
        t = self.time
        bare, floor = "bare window", "floor"
        return [
            Line("bare window, start", t["bare"].median, "s", noise=noise(t["bare"])),
            Line("floor: with an empty web view, start", t["floor"].median, "s", noise=noise(t["floor"])),
            times("start to a usable list, 100 notes", t["list 100"], t["bare"], 1.3, "s", bare),
            times("start to a caret, 100 notes", t["caret 100"], t["floor"], 1.3, "s", floor),
            beyond("start to a caret, 10,000 notes", t["caret 10000"], t["floor"], 0.35, "s", floor),
            beyond("start to a usable list, 10,000 notes", t["list 10000"], t["bare"], 0.25, "s", bare),
            times("twenty stickies at start", t["stickies"], t["floor twenty"], 1.5, "s",
                  "floor of twenty"),
            Line("… beside a floor drawn as Plim draws", t["stickies"].median, "s",
                 reference=t["software floor twenty"].median,
                 noise=noise(t["stickies"], t["software floor twenty"])),
        ]


class Caret:
    """The same until the caret can be seen: the probe takes its time until it knows what blinks."""

    rounds = 5
    budget = 60

    def __init__(self):
        self.floor, self.plim = Figures(), Figures()
        self.floor_area, self.plim_area = (), ()

    def check(self):
        """Where they stand: who looks at whole windows every few milliseconds is in the way."""
        self.floor_area = _area(self._floor())
        self.plim_area = _area(self._plim())

    def round(self):
        self.floor.add(self._floor(*self.floor_area)["caret"])
        self.plim.add(self._plim(*self.plim_area)["caret"])

    @staticmethod
    def _floor(*area):
        with _caret(area) as caret, Floor.started(1) as floor:
            return caret(floor)

    @staticmethod
    def _plim(*area):
        with _caret(area) as caret, plim(FEW, arguments=NEW_NOTE) as running:
            return caret(running)

    def lines(self):
        return [
            Line("floor: to a caret on the screen", self.floor.median, "s", noise=noise(self.floor)),
            times("start to a caret on the screen, 100 notes", self.plim, self.floor, 1.3, "s",
                  "floor, seen"),
        ]


@contextlib.contextmanager
def _caret(area):
    """Asked about a program that is started now: when its caret can be seen in its window, and
    where."""
    with Probe.started("caret", *map(str, area)) as probe:
        probe.wait_for("watching")

        def ask(running):
            seen = probe.finish()
            return {**seen, "caret": seen["caret"] - running.process.started}

        yield ask


def _area(seen):
    """A caret's with what is around it: left, top, width, height."""
    margin = 8
    left, top = int(seen["left"]) - margin, int(seen["top"]) - margin
    return left, top, int(seen["width"]) + 2 * margin, int(seen["height"]) + 2 * margin


class Weights:
    """All processes together, once they rest."""

    rounds = 2
    budget = 100

    def __init__(self):
        self.memory = {}

    def check(self):
        pass

    def _add(self, name, running):
        self.memory.setdefault(name, Figures()).add(running.process.settled_memory())

    def round(self):
        with Bare.started() as bare:
            bare.wait_until_usable()
            self._add("bare", bare)
        with Floor.started(1) as floor:
            floor.wait_until_ready()
            self._add("floor", floor)
        for notes in (FEW, LOTS):
            with plim(notes) as running:
                running.wait_until_usable()
                self._add(f"list {notes}", running)
                main = running.wait_for_main_window()
                run("xdotool", "mousemove", "--window", main, "200", "250", "click", "1")
                running.wait_for_shown(1)
                self._add(f"note {notes}", running)
        for stickies in (1, MANY // 2):  # the first one brings the web engine along
            with plim(FEW, stickies) as running:
                running.wait_until_usable()
                running.wait_until_ready()
                self._add(stickies, running)

    def lines(self):
        m = self.memory
        each = _slope(m, 1, MANY // 2)
        return [
            at_most("a further sticky, memory", each, 8, "MB"),
            times("memory, list, 100 notes", m["list 100"], m["bare"], 1.3, "MB", "bare window"),
            times("memory, a note open, 100 notes", m["note 100"], m["floor"], 1.2, "MB", "floor"),
            beyond("memory, list, 10,000 notes", m["list 10000"], m["list 100"], 120, "MB",
                   "100 notes"),
            beyond("memory, a note open, 10,000 notes", m["note 10000"], m["note 100"], 120, "MB",
                   "100 notes"),
        ]


class Click(Opening):
    """A sticky, from the click to the caret on the screen."""

    rounds = 1
    budget = 0

    def lines(self):
        return [
            Line("open a sticky, to its caret", self.caret.median, "s", 0.25, "0.25 s",
                 noise=noise(self.caret))
        ]


class Idle:
    """Ten stickies, and nobody there."""

    rounds = 1
    budget = 0
    seconds = 60

    def check(self):
        pass

    def round(self):
        with plim(FEW, MANY // 2) as running:
            running.wait_until_ready()
            running.process.wait_until_still()
            files = _files(running.home)
            worked, written, sleeps = running.process.idle(self.seconds)
            self.engine = max(
                (count for (process, _), (_, count) in sleeps.items() if process != running.process.id),
                default=0,
            ) / self.seconds
            self.load = 100 * worked / self.seconds
            self.written = written
            self.files = len(set(_files(running.home).items()) ^ set(files.items()))
            own = {thread: count for (process, thread), (_, count) in sleeps.items()
                   if process == running.process.id}
            self.main = own.pop(running.process.id) / self.seconds
            others = own.values()
            self.others = max(others, default=0) / self.seconds

    def lines(self):
        return [
            at_most("idle, ten stickies: one core", self.load, 0.5, "%"),
            at_most("… main thread wakes", self.main, 1, "/s"),
            at_most("… busiest other thread of the program wakes", self.others, 1, "/s"),
            at_most("… busiest thread of the web engine's processes wakes", self.engine, 1, "/s"),
            at_most("… written to the disk", self.written, 0, "bytes"),
            at_most("… files that have changed", self.files, 0, ""),
        ]


def _files(folder):
    found = {}
    for where, _, names in os.walk(folder):
        for name in names:
            status = os.stat(os.path.join(where, name))
            found[os.path.join(where, name)] = (status.st_mtime_ns, status.st_size)
    return found


class Within:
    """What the main thread works, measured inside the program."""

    rounds = 3
    budget = 110

    def __init__(self):
        self.figures = {}

    def check(self):
        pass

    def _add(self, notes, found):
        for name, value in found.items():
            unit = 1 if name == "saveRatio" else 1000  # all others are times
            self.figures.setdefault((name, notes), Figures()).add(value * unit)

    def round(self):
        for notes in (10, LOTS):
            self._add(notes, Inside.run("edit", notes))
        self._add(LOTS, Inside.run("search", LOTS))
        self._add(LOTS, Inside.run("cold-search", LOTS))
        self._add(LOTS, Inside.run("save", LOTS))

    def lines(self):
        f = self.figures
        few, lots = f["edit", 10], f["edit", LOTS]
        whole, ratio = f["saveWhole", LOTS], f["saveRatio", LOTS]
        return [
            at_most("key to store and row, 10 notes", few.median, 2, "ms"),
            at_most("key to store and row, 10,000 notes", lots.median, 2, "ms"),
            Line("… 10,000 to 10 notes", lots.median / few.median, "", 1.1, "1.1",
                 noise=noise(few, lots)),
            Line("… the row's next frame with it, 10,000 notes", f["editToFrame", LOTS].median, "ms"),
            at_most("search key, 10,000 notes, warm", f["searchWarmSlowest", LOTS].median, 16, "ms"),
            at_most("search key, 10,000 notes, cold", f["searchCold", LOTS].median, 100, "ms"),
            at_most("… all hits there, by the clock", f["searchColdWhole", LOTS].median, 100, "ms"),
            at_most("save, 10,000 notes: main thread", f["saveMain", LOTS].median, 1, "ms"),
            Line("save, 10,000 notes: whole write", whole.median, "ms", noise=noise(whole)),
            Line("… to a QSaveFile of the same bytes", ratio.median, "", 1.5, "1.5",
                 noise=noise(ratio)),
            Line("… of it, making the JSON", f["saveEncoding", LOTS].median, "ms"),
        ]


class Growth:
    """From a thousand notes to a hundred thousand, each in a program of its own: what is loaded is
    loaded once, into fresh memory."""

    rounds = 3
    budget = 30
    COUNTS = (1_000, 10_000, 100_000)
    NAMES = {
        "load": "load",
        "growthSave": "save",
        "growthEncoding": "making its JSON",
        "growthSearch": "search",
    }
    LINEAR = 1.1  # exponent; what fits into the caches is faster for each note

    def __init__(self):
        self.found = {}

    def check(self):
        pass

    def round(self):
        for notes in self.COUNTS:
            for key, seconds in Inside.run("growth", notes).items():
                self.found.setdefault((key, notes), Figures()).add(seconds)

    def lines(self):
        lines = []
        for key, name in self.NAMES.items():
            found = [self.found[key, notes] for notes in self.COUNTS]
            fewest, fewer, more = (figures.median for figures in found)
            lines += [
                Line(f"{name}, 1,000 / 10,000 / 100,000 notes: the last", more * 1000, "ms"),
                Line(f"… {name}, for each note", more / self.COUNTS[2] * 1e6, "µs",
                     reference=fewer / self.COUNTS[1] * 1e6,
                     aim="(reference: of 10,000)"),
                Line(f"… {name}, exponent from 10,000", exponent(fewer, more, 10), "", self.LINEAR,
                     f"{self.LINEAR}, linear is 1", noise=noise(*found[1:])),
                Line(f"… {name}, exponent from 1,000", exponent(fewest, fewer, 10), ""),
            ]
        return lines


ALL = (Starts, Caret, Within, Weights, Click, Growth, Idle)
