"""scripts/measure calls this, from the top of the tree and on a display of its own."""

import argparse
import sys

import measurements
from failure import Failure
from figures import Table
from machine import description


def measure(measurement, rounds):
    measurement.check()  # and so everything has been read from the disk once
    for number in range(rounds):
        print(f"  {measurement.name}: round {number + 1} of {rounds} …", file=sys.stderr)
        measurement.round()
    measurement.report(Table(measurement.title, measurement.unit, measurement.digits))


def main():
    every = {kind.name: kind for kind in measurements.ALL}
    parser = argparse.ArgumentParser(prog="scripts/measure")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("what", nargs="*", help=f"{', '.join(every)}; all when none is named")
    arguments = parser.parse_args()
    if unknown := [name for name in arguments.what if name not in every]:
        parser.error(f"nothing is called {', '.join(unknown)}; there are: {', '.join(every)}")
    if arguments.rounds < 1:
        parser.error("at least one round")

    print(f"{description()}. Medians (least – greatest).")
    failed = False
    for name in arguments.what or every:
        try:
            measure(every[name](), arguments.rounds)
        except Failure as failure:
            failed = True
            print(f"scripts/measure: {name} could not be measured: {failure}", file=sys.stderr)
    return 1 if failed else 0


sys.exit(main())
