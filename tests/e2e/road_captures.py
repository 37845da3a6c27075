# SPDX-License-Identifier: MIT
"""The captures of the protocol reference: recorded anew, they are what is committed."""

import pathlib
import re
import subprocess
import tempfile
import unittest

DOCS = pathlib.Path(__file__).resolve().parent.parent.parent / "docs"
FOLDER = DOCS / "captures"


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

    def test_what_the_reference_quotes_was_captured(self):
        captured = {line.rstrip() for path in FOLDER.glob("*.txt")
                    for line in path.read_text(encoding="utf-8").splitlines()}
        blocks = re.findall(r"(?s)```text\n(.*?)```", (DOCS / "protocols.md").read_text(encoding="utf-8"))
        quoted = [line for block in blocks for line in block.splitlines() if not line.startswith("RZ?STm  ")]
        self.assertGreater(len(quoted), 50)
        self.assertEqual([line for line in quoted if line not in captured], [])


if __name__ == "__main__":
    unittest.main()
