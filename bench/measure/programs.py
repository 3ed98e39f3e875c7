"""The two programs that are compared, each in a home that is thrown away, and the probe."""

import contextlib
import functools
import json
import os
import re
import subprocess
import tempfile

from failure import Failure
from processes import LONG_PATIENCE, Process, wait_until

BUILD = "build/release"
SCREEN_HEIGHT = 1500  # of the display that scripts/measure opens
WIDTH, HEIGHT, STEP, COLUMNS = 300, 340, 8, 6  # of the windows, as the floor has them
MAIN_TITLE = "Plim"
SPEAKING = {
    "QT_FORCE_STDERR_LOGGING": "1",
    "QT_LOGGING_RULES": "plim.start.debug=true;plim.editor.debug=true;plim.sticky.debug=true",
}


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False).stdout


@contextlib.contextmanager
def _process(command, environment=None, home=None):
    with contextlib.ExitStack() as stack:
        if home is None:
            home = stack.enter_context(tempfile.TemporaryDirectory(prefix="plim-measure."))
        surroundings = {
            name: value
            for name, value in os.environ.items()
            if name not in ("XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME")
        }
        process = Process(command, {**surroundings, "HOME": home, **(environment or {})})
        stack.callback(process.end)
        yield process


def windows_of(process):
    """Number and title of the windows that the process shows."""
    found = []
    for line in run("wmctrl", "-lp").splitlines():
        fields = line.split(None, 4)
        if int(fields[2]) == process.id:
            found.append((fields[0], fields[4] if len(fields) > 4 else ""))
    return found


def type_into(window, key):
    run("xdotool", "windowactivate", window)
    wait_until(
        lambda: run("xdotool", "getactivewindow").strip() == str(int(window, 16)),
        f"the window {window} does not take the keyboard",
    )
    run("xdotool", "key", key)


class Bare:
    """One window with nothing in it, and without the web engine."""

    def __init__(self, process):
        self.process = process

    @classmethod
    @contextlib.contextmanager
    def started(cls):
        with _process([f"{BUILD}/bench/bare/plim_bare"], SPEAKING) as process:
            yield cls(process)

    def wait_until_usable(self):
        return wait_until_usable(self.process)


def wait_until_usable(process):
    """Seconds until the window is drawn, has the keyboard and is attended to."""
    return process.wait_for_lines(1, r"^plim\.start: usable", lambda _: "no window can be used")


class Floor:
    """Bare windows with an empty page each, drawn as Plim draws its own."""

    ENVIRONMENT = {}

    def __init__(self, process, count):
        self.process, self.count = process, count

    @classmethod
    @contextlib.contextmanager
    def started(cls, count):
        command = [f"{BUILD}/bench/floor/plim_floor", str(count)]
        with _process(command, cls.ENVIRONMENT) as process:
            yield cls(process, count)

    def wait_until_ready(self):
        """Seconds until all pages can be typed into."""
        return self.process.wait_for_lines(
            self.count,
            r"^page \d+ ready$",
            lambda found: f"the floor has {found} of {self.count} pages ready",
        )

    def check_typing(self):
        for window, _ in windows_of(self.process):
            type_into(window, "q")
        self.process.wait_for_lines(
            self.count,
            r"^page \d+ typed$",
            lambda found: f"only {found} of the floor's {self.count} pages took a key",
        )


class GraphicsFloor(Floor):
    """The same with Qt's usual renderer, whether there is a graphics card to help it or not."""

    ENVIRONMENT = {"QT_QUICK_BACKEND": "rhi"}


class Plim:
    """Plim on notes of its own, some of them stickies of a saved layout."""

    def __init__(self, process, home, stickies):
        self.process, self.home, self.stickies = process, home, stickies

    @classmethod
    @contextlib.contextmanager
    def started(cls, stickies, notes=20, size=0, arguments=()):
        """On so many notes, each of at least that many characters."""
        with tempfile.TemporaryDirectory(prefix="plim-measure.") as home:
            _write(cls.notes_file(home), _notes(notes, size))
            _write(f"{home}/.config/Plim/Plim.conf", _settings(stickies))
            os.makedirs(f"{home}/Documents")
            with _process([f"{BUILD}/plim", *arguments], SPEAKING, home) as process:
                yield cls(process, home, stickies)

    @staticmethod
    def notes_file(home):
        return f"{home}/.local/share/Plim/notes.json"

    def wait_for_main_window(self):
        """Number of the main window. Any window may have its title, but it is shown first."""
        return wait_until(
            lambda: next((w for w, title in windows_of(self.process) if title == MAIN_TITLE), None),
            lambda: f"Plim shows no main window\n{self.process.log()}",
        )

    def wait_until_usable(self):
        """Seconds until the list can be searched and clicked."""
        return wait_until_usable(self.process)

    def wait_until_ready(self):
        """Seconds until every sticky is on the screen and its page has its content and its caret."""
        seen = self.process.wait_for_lines(
            self.stickies,
            r"^plim\.sticky: visible",
            lambda found: f"{self.stickies} stickies were to come up, and {found} did",
        )
        return max(seen, self.wait_for_shown(self.stickies) - self.process.started)

    def wait_for_shown(self, count):
        """When so many notes had been shown, in seconds of the monotonic clock."""
        return self.process.started + self.process.wait_for_lines(
            count,
            r"^plim\.editor: shown",
            lambda found: f"{count} stickies were to come up with their page, and {found} did",
        )

    def sticky_windows(self):
        main = self.wait_for_main_window()
        return [window for window, _ in windows_of(self.process) if window != main]

    def check_typing(self):
        """That a key goes into each sticky's note, all the way to the disk."""
        windows = self.sticky_windows()
        if len(windows) != self.stickies:
            raise Failure(f"Plim shows {len(windows)} sticky windows instead of {self.stickies}")
        for window in windows:
            type_into(window, "q")

        def typed():
            with open(self.notes_file(self.home), encoding="utf-8") as file:
                return sum("q" in note["body"] for note in json.load(file))

        wait_until(
            lambda: typed() == self.stickies,
            lambda: f"only {typed()} of {self.stickies} stickies took a key",
        )


class Probe:
    """What looks at windows from outside; its words are a name and a number each."""

    def __init__(self, process):
        self.process = process

    @classmethod
    @contextlib.contextmanager
    def started(cls, *arguments):
        process = Process(
            [f"{BUILD}/bench/probe/plim_probe", *arguments], os.environ, subprocess.PIPE
        )
        try:
            yield cls(process)
        finally:
            process.end()

    def wait_for(self, word):
        self.process.wait_for_lines(
            1, f"^{word}", lambda _: f"the probe does not say {word}"
        )

    def finish(self):
        """All that it has to say."""
        self.process.end_of_input()
        if self.process.wait() != 0:
            raise Failure(self.process.log())
        words = self.process.words()
        return {name: float(value) for name, value in zip(words, words[1:]) if _is_number(value)}


class Inside:
    """What is measured within the program; it prints one line of JSON."""

    @staticmethod
    def run(*arguments):
        with _process([f"{BUILD}/bench/bench_figures", *map(str, arguments)]) as process:
            if process.wait(LONG_PATIENCE) != 0:
                raise Failure(process.log())
            return json.loads(process.last_line())


def _is_number(text):
    return re.fullmatch(r"[\d.]+", text) is not None


def _note_id(index):
    return f"5A3B1C00-2D4E-4F60-8A7B-{index:012X}"


# Without the letter that the check types.
def _note(index, size=0):
    items = "".join(f"<li>item {i} of the list</li>" for i in range(4))
    words = "<p>A few words, <b>some of them</b> bold.</p>"
    words *= max(1, size // len(words))
    return {
        "id": _note_id(index),
        "title": "",
        "body": f"<h1>Note {index + 1}</h1>{words}<ul>{items}</ul>",
        "color": ["yellow", "green", "blue", "pink"][index % 4],
        "textSize": "medium",
        "isArchived": False,
        "createdAt": 800000000.5 + index,
        "updatedAt": 800000000.5 + index,
    }


@functools.cache
def _notes(count, size):
    """As Plim writes them: read in another form they take longer, and only once."""
    notes = [_note(i, size) for i in range(count)]
    text = json.dumps(notes, sort_keys=True, separators=(",", ":"), ensure_ascii=False)
    return text.replace("/", "\\/")


def _settings(stickies):
    layout = []
    for index in range(stickies):
        row, column = divmod(index, COLUMNS)
        bottom = row * (HEIGHT + STEP) + HEIGHT
        layout.append(
            {
                "noteID": _note_id(index),
                "x": column * (WIDTH + STEP),
                "y": SCREEN_HEIGHT - bottom,
                "width": WIDTH,
                "height": HEIGHT,
            }
        )
    value = json.dumps(layout, separators=(",", ":")).replace('"', '\\"')
    return f'[General]\nplimLanguage=en\nstickyLayout.v1="@ByteArray({value})"\n'


def _write(path, text):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
