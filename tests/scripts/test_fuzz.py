"""What scripts/fuzz makes of a fuzzer that finds something, of one that finds nothing, and of one that
has not looked. The fuzzer is played; the script is the real one."""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

SOURCES = pathlib.Path(__file__).resolve().parents[2]

LOOKED = """
echo "Done 12 runs in 3 second(s)"
echo "stat::number_of_executed_units: 12"
"""


class Fuzz(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.write("scripts/fuzz", (SOURCES / "scripts/fuzz").read_text(encoding="utf-8"))
        self.write("scripts/setup", 'need_packages() { :; }\nfail() { echo "$*" >&2; exit 1; }\n')
        self.write("bin/ninja", "#!/bin/sh\n")
        self.write("CMakePresets.json", "{}")
        self.write("build/fuzz/build.ninja", "")
        for target in ("some", "other"):
            self.write(f"tests/fuzz/fuzz_{target}.cpp", "")
            self.write(f"tests/fuzz/corpus/{target}/empty", "")
            self.play(LOOKED, target)
        self.write("tests/fuzz/dictionaries/html", '"<b>"')

    def write(self, name, text):
        path = self.root / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        path.chmod(0o755)

    def play(self, words, target="some"):
        self.write(f"build/fuzz/tests/fuzz/fuzz_{target}", "#!/bin/bash\n" + words)

    def run_script(self, *arguments):
        path = f"{self.root}/bin:{os.environ['PATH']}"
        answer = subprocess.run([self.root / "scripts/fuzz", *arguments], env={**os.environ, "PATH": path},
                                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        return answer.returncode, answer.stdout

    def corpus(self):
        return sorted(path.name.split("_")[0] for path in (self.root / "tests/fuzz/corpus/some").iterdir())

    def check_failed(self, words, said, *arguments):
        self.play(words)
        code, text = self.run_script(*(arguments or ("3",)))
        self.assertEqual(code, 1, text)
        self.assertIn(said, text)
        self.assertEqual(self.corpus(), ["empty"])

    def test_who_has_looked_and_found_nothing_is_passed(self):
        code, text = self.run_script("3")
        self.assertEqual(code, 0, text)
        for target in ("some", "other"):
            self.assertIn(f"{target}: 12 inputs", text)

    def test_what_is_found_goes_into_the_corpus(self):
        self.play('for word; do case $word in -artifact_prefix=*) echo x >"${word#*=}crash-1" ;; esac; done\n'
                  "echo 'does not hold: that'; exit 77")
        code, text = self.run_script("3")
        self.assertEqual(code, 1)
        self.assertIn("does not hold: that", text)
        self.assertIn("other: 12 inputs", text)  # the others have their turn
        self.assertEqual(self.corpus(), ["empty", "found"])

    def test_who_does_not_start_has_not_looked(self):
        self.check_failed("exit 127", "some: ended with 127")
        (self.root / "build/fuzz/tests/fuzz/fuzz_some").unlink()
        self.assertEqual(self.run_script("3")[0], 1)

    def test_who_fails_in_the_end_is_not_believed(self):
        self.check_failed(LOOKED + "exit 1", "some: ended with 1")

    def test_who_says_nothing_has_not_looked(self):
        self.check_failed("exit 0", "some: was given nothing")

    def test_who_was_given_nothing_has_not_looked(self):
        self.check_failed(LOOKED.replace("12", "0"), "some: was given nothing")

    def test_who_ends_early_has_not_looked(self):
        self.check_failed(LOOKED, "some: ended after 3 of 4 seconds", "4")
        self.check_failed("echo 'stat::number_of_executed_units: 12'", "some: ended after 0 of 3 seconds")

    def learn(self, text):
        self.write("build/fuzz/learnt/some/x", text)
        # -merge=1 takes from the second folder into the first.
        self.play('[[ " $* " = *" -merge=1 "* ]] && cp "${@: -1}"/* "${@: -2:1}"')

    def test_what_was_learnt_is_kept_when_asked_for(self):
        self.learn("<b>")
        code, text = self.run_script("keep", "some")
        self.assertEqual(code, 0, text)
        self.assertIn("some: 1 more inputs", text)
        self.assertEqual(self.corpus(), ["empty", "learnt"])
        code, text = self.run_script("keep", "other")
        self.assertEqual(code, 0, text)
        self.assertIn("other: nothing was learnt yet", text)

    def test_a_corpus_stays_small(self):
        self.learn("<b>" * 100_000)
        code, text = self.run_script("keep")
        self.assertEqual(code, 1)
        self.assertIn("not kept", text)
        self.assertEqual(self.corpus(), ["empty"])

    def test_what_cannot_be_merged_is_no_success(self):
        self.learn("<b>")
        self.check_failed("exit 1", "some: could not be merged", "keep")


if __name__ == "__main__":
    sys.dont_write_bytecode = True
    unittest.main()
