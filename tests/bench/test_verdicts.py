"""What the figures of a run say about their aims."""

import json
import os
import sys
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, os.path.join(os.path.dirname(__file__), "../../bench/measure"))

# pylint: disable=wrong-import-position
from figures import Figures
from processes import file_parts
from verdicts import Line, at_most, beyond, exponent, noise, number, table, times


def figures(*values):
    found = Figures()
    for value in values:
        found.add(value)
    return found


class Verdicts(unittest.TestCase):
    def test_an_aim_is_reached_up_to_its_very_limit(self):
        for measured, is_kept in ((0.9, True), (1.0, True), (1.001, False)):
            self.assertIs(at_most("f", measured, 1, "s").is_kept, is_kept)

    def test_what_has_no_aim_is_neither_kept_nor_missed(self):
        self.assertIsNone(Line("f", 5, "s").is_kept)

    def test_so_many_times_what_the_same_run_measured(self):
        line = times("f", figures(3, 1, 2), figures(1.5, 1.6, 1.7), 1.3, "s", "floor")
        self.assertEqual(line.measured, 2)
        self.assertAlmostEqual(line.limit, 1.3 * 1.6)
        self.assertAlmostEqual(line.ratio, 2 / 1.6)
        self.assertTrue(line.is_kept)
        self.assertFalse(times("f", figures(2.1), figures(1.6), 1.3, "s", "floor").is_kept)

    def test_what_the_same_run_measured_and_an_allowance(self):
        self.assertTrue(beyond("f", figures(1.25), figures(1), 0.25, "s", "floor").is_kept)
        self.assertFalse(beyond("f", figures(1.26), figures(1), 0.25, "s", "floor").is_kept)

    def test_noise_is_that_of_the_noisier_side(self):
        self.assertEqual(noise(figures(1, 1, 1), figures(2, 3, 4)), 1.5)
        self.assertEqual(noise(figures(0, 0)), 1)

    def test_linear_work_has_the_exponent_one(self):
        self.assertAlmostEqual(exponent(2, 20, 10), 1)
        self.assertAlmostEqual(exponent(2, 200, 10), 2)

    def test_numbers_have_three_digits_that_count(self):
        for value, text in ((0, "0"), (331.2, "331"), (0.06431, "0.0643"), (1.5, "1.5"), (8.0, "8")):
            self.assertEqual(number(value), text)


class Shown(unittest.TestCase):
    def test_a_line_names_measurement_aim_and_verdict(self):
        shown = table([times("start", figures(2), figures(1), 1.3, "s", "floor")]).splitlines()
        cells = [cell.strip() for cell in shown[-1].strip("|").split("|")]
        self.assertEqual(cells, ["start", "2 s", "1.3 × floor = 1.3", "1", "2.00", "MISSED"])
        self.assertEqual(len({len(line) for line in shown}), 1)

    def test_a_noisy_line_says_so(self):
        self.assertIn("noise 1.5", table([times("f", figures(2, 3, 4), figures(9), 1, "s", "x")]))

    def test_a_line_becomes_json(self):
        line = json.loads(json.dumps(at_most("f", 2, 1, "s").as_json()))
        self.assertEqual((line["figure"], line["measured"], line["kept"]), ("f", 2, False))


class Memory(unittest.TestCase):
    SMAPS = """\
1000-3000 r-xp 00001000 fe:00 42                     /lib/a b.so
Rss:                   8 kB
Anonymous:             0 kB
3000-4000 rw-p 00003000 fe:00 42                     /lib/a b.so
Rss:                   4 kB
Anonymous:             3 kB
4000-5000 rw-p 00000000 00:00 0                      [heap]
Rss:                 100 kB
Anonymous:           100 kB
5000-6000 rw-s 00000000 00:01 77                     /memfd:shared (deleted)
Rss:                  50 kB
Anonymous:             0 kB
"""

    def test_of_a_file_counts_what_is_not_the_process_own(self):
        self.assertEqual(
            file_parts(self.SMAPS.splitlines(keepends=True)),
            {("/lib/a b.so", "00001000"): 8, ("/lib/a b.so", "00003000"): 1},
        )


if __name__ == "__main__":
    unittest.main()
