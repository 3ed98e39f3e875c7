"""scripts/bench calls this, from the top of the tree and on a display of its own."""

import argparse
import datetime
import json
import os
import sys
import time

import benchmarks
from failure import Failure
from machine import description
from verdicts import table

RESULT = "build/bench.json"
LONGEST = 600  # seconds that a whole run may take


def measure(kind, is_quick):
    measurement = kind()
    started = time.monotonic()
    if not is_quick:
        measurement.check()  # and so everything has been read from the disk once
    for number in range(1 if is_quick else kind.rounds):
        spent = time.monotonic() - started
        if number > 0 and spent * (number + 1) / number > kind.budget:
            break
        print(f"  {kind.__name__}: round {number + 1} …", file=sys.stderr)
        measurement.round()
    print(f"  {kind.__name__}: {time.monotonic() - started:.0f} s", file=sys.stderr)
    return measurement.lines()


def main():
    every = {kind.__name__.lower(): kind for kind in benchmarks.ALL}
    parser = argparse.ArgumentParser(prog="scripts/bench")
    parser.add_argument("--quick", action="store_true", help="one round of each, to try it")
    parser.add_argument("what", nargs="*", help=f"{', '.join(every)}; all when none is named")
    arguments = parser.parse_args()
    if unknown := [name for name in arguments.what if name not in every]:
        parser.error(f"nothing is called {', '.join(unknown)}; there are: {', '.join(every)}")
    if arguments.quick:
        benchmarks.Idle.seconds = 10
        benchmarks.Growth.COUNTS = tuple(count // 10 for count in benchmarks.Growth.COUNTS)

    machine, began = description(), datetime.datetime.now().astimezone()
    lines, failed = [], []
    for name in arguments.what or every:
        try:
            lines += measure(every[name], arguments.quick)
        except Failure as failure:
            failed.append(name)
            print(f"scripts/bench: {name} could not be measured: {failure}", file=sys.stderr)
    took = (datetime.datetime.now().astimezone() - began).total_seconds()
    print(f"\n{began:%Y-%m-%d %H:%M}, {machine}; {took:.0f} s.\n\n{table(lines)}")
    os.makedirs(os.path.dirname(RESULT), exist_ok=True)
    with open(RESULT, "w", encoding="utf-8") as file:
        json.dump(
            {
                "date": began.isoformat(timespec="seconds"),
                "machine": machine,
                "seconds": round(took),
                "isQuick": arguments.quick,
                "notMeasured": failed,
                "figures": [line.as_json() for line in lines],
            },
            file,
            indent=2,
            ensure_ascii=False,
        )
    if took > LONGEST:
        print(f"scripts/bench: it has taken more than {LONGEST} s", file=sys.stderr)
        return 1
    return 1 if failed else 0


sys.exit(main())
