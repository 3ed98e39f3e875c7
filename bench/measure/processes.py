"""A program that is measured: started, listened to, weighed and ended."""

import os
import re
import signal
import subprocess
import threading
import time

from failure import Failure

PATIENCE = 30  # seconds
STEP = 0.02  # seconds between two looks at a condition
TELLING = r"plim|page|qrc:|.*([Ee]rror|[Ww]arning)"
PARENT, USER_TIME, SYSTEM_TIME = 1, 11, 12  # places in /proc/<id>/stat after the name
SETTLED = 0.5  # MB that memory may differ between looks a second apart


def wait_until(condition, complaint, patience=PATIENCE):
    """The condition's value as soon as it is true of one."""
    end = time.monotonic() + patience
    while not (value := condition()):
        if time.monotonic() > end:
            raise Failure(complaint() if callable(complaint) else complaint)
        time.sleep(STEP)
    return value


class Process:
    """Every line that it says is kept with the time it came, counted from just before the start."""

    def __init__(self, command, environment=None, stdin=subprocess.DEVNULL):
        self.name = os.path.basename(command[0])
        self._lines = []  # (seconds, text)
        self._news = threading.Condition()
        self.started = time.monotonic()
        self._process = subprocess.Popen(
            command,
            env=environment,
            stdin=stdin,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
        )
        self.id = self._process.pid
        self._has_ended = False
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self._process.stdout:
            seconds = time.monotonic() - self.started
            with self._news:
                self._lines.append((seconds, line.decode(errors="replace").rstrip()))
                self._news.notify_all()
        with self._news:
            self._has_ended = True
            self._news.notify_all()

    def times(self, pattern):
        """When the lines came that hold the pattern."""
        return [seconds for seconds, text in list(self._lines) if re.search(pattern, text)]

    def words(self):
        return " ".join(text for _, text in self._lines).split()

    def wait_for_lines(self, count, pattern, complaint):
        """When the last of the first so many lines came that hold the pattern."""
        with self._news:
            self._news.wait_for(
                lambda: len(self.times(pattern)) >= count or self._has_ended, PATIENCE
            )
        times = self.times(pattern)
        if len(times) < count:
            raise Failure(f"{complaint(len(times))}\n{self.log()}")
        return times[count - 1]

    def log(self):
        """Its last words, without what the web engine says of itself."""
        telling = [text for _, text in self._lines if re.match(TELLING, text)]
        return "\n".join(f"  {self.name}: {text}" for text in telling[-20:])

    def end_of_input(self):
        self._process.stdin.close()

    def wait(self):
        try:
            self._process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            raise Failure(f"{self.name} does not end") from None
        self._reader.join()
        return self._process.returncode

    def end(self):
        if self._process.poll() is None:
            self._process.send_signal(signal.SIGTERM)
            try:
                self._process.wait(PATIENCE)
            except subprocess.TimeoutExpired:
                self._process.kill()
                self._process.wait()

    def settled_memory(self):
        """MB of the program and all that it has started, once that rests."""
        readings = [self._memory()]

        def rests():
            time.sleep(1)
            readings.append(self._memory())
            return abs(readings[-1] - readings[-2]) < SETTLED

        wait_until(rests, f"the memory of {self.name} does not come to rest")
        return readings[-1]

    def processor_time(self):
        """Seconds that the processors have worked for the program and all that it has started."""
        ticks = sum(
            int(fields[USER_TIME]) + int(fields[SYSTEM_TIME])
            for fields in self._family().values()
        )
        return ticks / os.sysconf("SC_CLK_TCK")

    def _memory(self):
        total = 0
        for process in self._family():
            try:
                with open(f"/proc/{process}/smaps_rollup", encoding="ascii") as file:
                    total += sum(int(line.split()[1]) for line in file if line.startswith("Pss:"))
            except (FileNotFoundError, ProcessLookupError):
                pass  # it has ended meanwhile
        return total / 1024

    def _family(self):
        processes = _all_processes()
        children = {}
        for process, fields in processes.items():
            children.setdefault(int(fields[PARENT]), []).append(process)
        family = [self.id]
        for process in family:
            family += children.get(process, [])
        return {process: processes[process] for process in family if process in processes}


def _all_processes():
    """Of each process what the system tells of it after its name, which may hold anything."""
    processes = {}
    for entry in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{entry}/stat", encoding="utf-8", errors="replace") as file:
                processes[int(entry)] = file.read().rpartition(")")[2].split()
        except (FileNotFoundError, ProcessLookupError):
            pass  # it has ended meanwhile
    return processes
