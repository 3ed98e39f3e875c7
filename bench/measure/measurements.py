"""What is measured. Each measurement has rounds, in which the programs take turns, and says
afterwards what they have brought."""

import time

from failure import Failure
from figures import Figures
from programs import MAIN_TITLE, Floor, GraphicsFloor, Plim, Probe, run

MANY = 20  # stickies
AFTERWARDS = 1.0  # seconds that the main window is watched after the last sticky is there


class Restore:
    """Until all stickies of the last time can be typed into, and how much work that is: other
    programs change the time a good deal more than the work."""

    name = "restore"
    title = "Until every page can be typed into"
    unit = "s"
    digits = 2

    PROGRAMS = {
        "floor, 1 window": (Floor, 1),
        f"floor, {MANY} windows": (GraphicsFloor, MANY),
        f"floor, {MANY} windows, software renderer": (Floor, MANY),
        f"Plim with {MANY} stickies": (Plim, MANY),
    }

    def __init__(self):
        self.time = {name: Figures() for name in self.PROGRAMS}
        self.work = {name: Figures() for name in self.PROGRAMS}

    def check(self):
        for program in (Floor, GraphicsFloor, Plim):
            with program.started(MANY) as running:
                running.wait_until_ready()
                running.check_typing()

    def round(self):
        for name, (program, count) in self.PROGRAMS.items():
            with program.started(count) as running:
                self.time[name].add(running.wait_until_ready())
                self.work[name].add(running.process.processor_time())

    def report(self, table):
        for name, figures in self.time.items():
            table.row(name, figures)
        for name, figures in self.work.items():
            table.row(f"{name}: processor", figures)
        _, floor, software, plim = self.time.values()
        table.promise("Plim : floor", plim.median / floor.median, 1.5)
        table.value("Plim : floor, software renderer", plim.median / software.median, "")
        _, floor_work, software_work, plim_work = self.work.values()
        table.value("Plim : floor, processor", plim_work.median / floor_work.median, "")
        table.value("… software renderer", plim_work.median / software_work.median, "")
        table.noise(floor)


class Memory:
    """All processes of the program together, each page of memory counted once."""

    name = "memory"
    title = "Memory of all processes"
    unit = "MB"
    digits = 1

    def __init__(self):
        self.floor = {1: Figures(), MANY: Figures()}
        self.plim = {1: Figures(), MANY // 2: Figures(), MANY: Figures()}

    def check(self):
        pass

    def round(self):
        for program, all_figures in ((Floor, self.floor), (Plim, self.plim)):
            for count, figures in all_figures.items():
                with program.started(count) as running:
                    if program is Plim:
                        running.wait_for_main_window()
                    running.wait_until_ready()
                    figures.add(running.process.settled_memory())

    def report(self, table):
        for count, figures in self.floor.items():
            table.row(f"floor, {count} windows", figures)
        for count, figures in self.plim.items():
            table.row(f"Plim with {count} stickies", figures)
        table.value("floor, each further window", _slope(self.floor, 1, MANY))
        table.promise("each further sticky, of the first ten", _slope(self.plim, 1, MANY // 2), 8)
        table.promise("each further sticky, of the next ten", _slope(self.plim, MANY // 2, MANY), 8)


def _slope(figures, fewer, more):
    return (figures[more].median - figures[fewer].median) / (more - fewer)


class Opening:
    """From the click on a row's button to a caret on the screen."""

    name = "opening"
    title = "Opening a sticky, from the click"
    unit = "s"
    digits = 3

    ROWS = 6
    WINDOW = (700, 300, 1100, 700)  # x, y, width, height
    BUTTON_X, FIRST_ROW, ROW = 356, 120, 70  # points in the main window

    def __init__(self):
        self.window, self.shown, self.caret = Figures(), Figures(), Figures()

    def check(self):
        pass

    def round(self):
        with Plim.started(0) as plim:
            main = plim.wait_for_main_window()
            x, y, width, height = map(str, self.WINDOW)
            run("xdotool", "windowsize", main, width, height, "windowmove", main, x, y)
            plim.process.settled_memory()  # the web engine has started, and all is quiet
            for row in range(self.ROWS):
                self._open(plim, main, row)

    def _open(self, plim, main, row):
        y = self.FIRST_ROW + self.ROW * row
        for x in (self.BUTTON_X - 100, self.BUTTON_X):  # over the row, and then onto its button
            run("xdotool", "mousemove", "--window", main, str(x), str(y))
            time.sleep(0.4)  # a hand takes a moment, too: the button has come up
        run("xdotool", "mousedown", "1")
        with Probe.started("caret") as probe:
            probe.wait_for("watching")
            clicked = time.monotonic()
            run("xdotool", "mouseup", "1")
            try:
                seen = probe.finish()
            except Failure as failure:
                raise Failure(f"{failure}\n{plim.process.log()}") from None
            self.shown.add(plim.wait_for_shown(row + 1) - clicked)
        self.window.add(seen["window"] - clicked)
        self.caret.add(seen["caret"] - clicked)
        for window in plim.sticky_windows():
            run("wmctrl", "-i", "-c", window)
        run("xdotool", "windowactivate", main)

    def report(self, table):
        table.row("its window is there", self.window)
        table.row("its page says that it has its caret", self.shown)
        table.row("its caret can be seen", self.caret)
        table.promise("its caret can be seen, median", self.caret.median, 0.25)
        table.promise("its caret can be seen, slowest", self.caret.greatest, 0.25)


class Pause:
    """The longest time for which the main window did not attend to its events."""

    name = "pause"
    title = "Longest time that the main window does not answer"
    unit = "s"
    digits = 3

    def __init__(self):
        self.none, self.many = Figures(), Figures()

    def check(self):
        pass

    def round(self):
        for figures, count in ((self.none, 0), (self.many, MANY)):
            with Plim.started(count) as plim:
                with Probe.started("pause", str(plim.process.id), MAIN_TITLE) as probe:
                    probe.wait_for("window")
                    if count:
                        plim.wait_until_ready()
                    time.sleep(AFTERWARDS)
                    figures.add(probe.finish()["longest"])

    def report(self, table):
        table.row("start without stickies", self.none)
        table.row(f"start with {MANY} stickies", self.many)


ALL = (Restore, Memory, Opening, Pause)
