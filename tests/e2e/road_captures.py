# SPDX-License-Identifier: MIT
"""The captures of the protocol reference: recorded anew, they are what is committed."""

import pathlib
import subprocess
import tempfile
import unittest

FOLDER = pathlib.Path(__file__).resolve().parent.parent.parent / "docs" / "captures"


class Captures_Test(unittest.TestCase):
    maxDiff = None

    def test_what_is_recorded_now_is_what_is_committed(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run([FOLDER / "record", folder], check=True, stdin=subprocess.DEVNULL)
            recorded = {path.name: path.read_text(encoding="utf-8") for path in pathlib.Path(folder).iterdir()}
        committed = {path.name: path.read_text(encoding="utf-8") for path in FOLDER.glob("*.txt")}
        self.assertEqual(sorted(recorded), sorted(committed))
        for name, text in recorded.items():
            with self.subTest(name):
                self.assertEqual(text, committed[name])


if __name__ == "__main__":
    unittest.main()
