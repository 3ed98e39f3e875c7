"""A program that is measured: started, listened to, weighed and ended."""

import os
import re
import signal
import subprocess
import threading
import time

from failure import Failure

PATIENCE = 30  # seconds
LONG_PATIENCE = 240  # for a program that measures by itself
STEP = 0.02  # seconds between two looks at a condition
TELLING = r"plim|bench|page|qrc:|.*([Ee]rror|[Ww]arning)"
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

    def last_line(self):
        return self._lines[-1][1] if self._lines else ""

    def wait(self, patience=PATIENCE):
        try:
            self._process.wait(patience)
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
        """As though nobody else on the machine used the same libraries: of each part of a file what
        the process has in memory that has the most of it, of all else each process's share."""
        shares, files = 0, {}
        for process in self._family():
            try:
                with open(f"/proc/{process}/smaps_rollup", encoding="ascii") as file:
                    rollup = file.read()
                with open(f"/proc/{process}/smaps", encoding="utf-8", errors="replace") as file:
                    parts = file_parts(file)
            except (FileNotFoundError, ProcessLookupError):
                continue  # it has ended meanwhile
            shares += sum(map(int, re.findall(r"^Pss_(?:Anon|Shmem): +(\d+)", rollup, re.M)))
            for part, size in parts.items():
                files[part] = max(size, files.get(part, 0))
        return (shares + sum(files.values())) / 1024

    def idle(self, seconds):
        """What all processes do while nobody asks anything of them: seconds of the processors, bytes
        that go to the disk, and how often each thread of each went to sleep, by process and thread."""
        before = self.processor_time(), self._written(), self._sleeps()
        time.sleep(seconds)
        after = self.processor_time(), self._written(), self._sleeps()
        sleeps = {
            thread: (name, count - before[2].get(thread, (name, 0))[1])
            for thread, (name, count) in after[2].items()
        }
        return after[0] - before[0], after[1] - before[1], sleeps

    def wait_until_still(self, seconds=4, patience=30):
        """Until no thread has woken for so long: what a start puts off it does once, some seconds
        later. Whoever never comes to rest is not waited for any longer than patience."""
        end = time.monotonic() + patience
        while time.monotonic() < end:
            sleeps = self.idle(seconds)[2]
            if not any(count for _, count in sleeps.values()):
                return

    def _written(self):
        total = 0
        for process in self._family():
            with open(f"/proc/{process}/io", encoding="ascii") as file:
                total += int(re.search(r"^write_bytes: (\d+)", file.read(), re.M)[1])
        return total

    def _sleeps(self):
        """Each ends a wait for a timer or for news with one more."""
        threads = {}
        for process in self._family():
            for thread in map(int, os.listdir(f"/proc/{process}/task")):
                with open(f"/proc/{process}/task/{thread}/status", encoding="utf-8") as file:
                    status = file.read()
                name = re.search(r"^Name:\t(.*)", status)[1]
                count = int(re.search(r"^voluntary_\w+:\t(\d+)", status, re.M)[1])
                threads[process, thread] = (name, count)
        return threads

    def has_children(self):
        return len(self._family()) > 1

    def _family(self):
        processes = _all_processes()
        children = {}
        for process, fields in processes.items():
            children.setdefault(int(fields[PARENT]), []).append(process)
        family = [self.id]
        for process in family:
            family += children.get(process, [])
        return {process: processes[process] for process in family if process in processes}


def file_parts(smaps):
    """KB in memory of each part of a file, as a smaps has it, without what is the process's own."""
    parts, key = {}, None
    for line in smaps:
        fields = line.split(None, 5)
        if not fields[0].endswith(":"):
            _, _, offset, _, inode, *path = fields
            key = (path[0].strip(), offset) if inode != "0" and path else None
            if key and path[0].startswith(("/memfd:", "/dev/shm", "/SYSV")):
                key = None
        elif key and fields[0] == "Rss:":
            parts[key] = parts.get(key, 0) + int(fields[1])
        elif key and fields[0] == "Anonymous:":
            parts[key] -= int(fields[1])
    return parts


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
