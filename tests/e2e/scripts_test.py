# SPDX-License-Identifier: MIT
"""The scripts where something is missing: one sentence says what, and what to do, before anything is built."""

import os
import pathlib
import subprocess
import tempfile
import unittest

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"
PLACES = ["/usr/local/sbin", "/usr/local/bin", "/usr/sbin", "/usr/bin", "/sbin", "/bin"]


class Missing_Test(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.path = pathlib.Path(folder.name)

    def path_without(self, *names):
        """A folder with all commands of this machine but those. Daemons are looked for beside it, so those of the names
        that are any must not be daemons."""
        for place in PLACES:
            for command in pathlib.Path(place).iterdir() if os.path.isdir(place) else []:
                if command.name not in names and not os.path.lexists(self.path / command.name):
                    (self.path / command.name).symlink_to(command)

    def failing(self, name, why):
        (self.path / name).write_text(f"#!/bin/sh\necho '{why}' >&2\nexit 1\n")
        (self.path / name).chmod(0o755)

    def run_script(self, name, *arguments):
        done = subprocess.run([SCRIPTS / name, *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, encoding="utf-8", check=False,
                              env={**os.environ, "PATH": str(self.path), "DISPLAY": ""})
        return done.returncode, done.stdout

    def test_without_a_virtual_display_its_package_is_named(self):
        self.path_without("Xvfb")
        sentence = "bootstrap: not found in the PATH: Xvfb (xvfb); install the packages named, or mend the PATH"
        for name in ("bootstrap", "demo"):
            self.assertEqual(self.run_script(name), (1, sentence + "\n"))
        code, printed = self.run_script("test", "--quick")
        self.assertEqual(code, 1)
        self.assertIn(sentence, printed)
        self.assertNotIn("build release", printed)

    def test_without_a_tool_of_the_lab_its_package_is_named(self):
        self.path_without("dbus-send")
        self.assertEqual(self.run_script("lab", "true"),
                         (70, "lab: dbus-send is missing (package dbus); scripts/bootstrap installs it\n"))

    def test_without_namespaces_the_way_to_them_is_told(self):
        self.path_without("unshare")
        self.failing("unshare", "unshare: Operation not permitted")
        sentence = r"lab: no namespaces can be made here \(unshare: Operation not permitted\); \S.*\n"
        for name, arguments in (("lab", ["true"]), ("lab", ["--check"]), ("demo", [])):
            code, printed = self.run_script(name, *arguments)
            self.assertEqual(code, 70)
            self.assertRegex(printed, rf"\A{sentence}\Z")
        code, printed = self.run_script("test")
        self.assertEqual(code, 70)
        self.assertRegex(printed, sentence + "test: the road tests need a lab; scripts/test --quick goes without\n")
        self.assertNotIn("build release", printed)

    def test_where_nothing_is_missing_nothing_is_said(self):
        self.path_without()
        self.assertEqual(self.run_script("lab", "--check"), (0, ""))
        self.assertEqual(self.run_script("bootstrap"), (0, ""))


if __name__ == "__main__":
    unittest.main()
