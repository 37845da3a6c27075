# SPDX-License-Identifier: MIT
"""Fifty starts, each quit at a random moment, whatever the speakers do: every one ends with 0 and without a word.

The one argument is the seed, so that two runs side by side try different moments and any can be had again.
"""

import random
import sys
import time

import road
from road import HOME, OVERVIEW

STARTS = 50
BLACK_HOLE = "127.0.1.3"

# Every speaker is stuck in another way.
STUCK = {"speakers": [
    {"name": "refuses", "address": "127.0.1.1", "type": 13, "faults": {"host-refused": "on"}},
    {"name": "refuses the second port", "address": "127.0.1.2", "type": 14, "faults": {"at-refused": "on"}},
    {"name": "black hole", "address": BLACK_HOLE, "type": 15, "faults": {"host-refused": "on"}},
    {"name": "says nothing", "address": "127.0.1.4", "type": 16, "faults": {"host-silent": "on"}},
    {"name": "is slow", "address": "127.0.1.5", "type": 17, "faults": {"host-slow": "300"}},
    {"name": "speaks byte by byte", "address": "127.0.1.6", "type": 18,
     "faults": {"host-bytewise": "on", "host-byte-gap": "20"}},
    {"name": "cuts within", "address": "127.0.1.7", "type": 37, "faults": {"host-cut": "within", "host-cut-how": "rst"}},
    {"name": "no answer over HTTP", "address": "127.0.1.8", "type": 38, "faults": {"http": "silent"}},
    {"name": "half an answer over HTTP", "address": "127.0.1.9", "type": 39, "faults": {"http": "half"}},
    {"name": "resets HTTP", "address": "127.0.1.10", "type": 40, "faults": {"http": "reset"}},
    {"name": "is well", "address": "127.0.1.11", "type": 41},
]}


class Starts_Test(road.Road_Test):
    def setUp(self):
        super().setUp()
        self.random = random.Random(SEED)
        self.slowest = 0

    def tearDown(self):
        print(f"seed {SEED}: the slowest was gone {self.slowest * 1000:.0f} ms after Quit", flush=True)
        super().tearDown()

    def quit(self, program):
        program.press_quit()
        start = time.monotonic()
        program.check_end()
        self.slowest = max(self.slowest, time.monotonic() - start)

    def test_quit_among_stuck_speakers(self):
        with self.speakers(STUCK), road.Black_Hole(BLACK_HOLE, 8990):
            for number in range(STARTS // 2):
                with self.subTest(start=number), self.program() as program:
                    time.sleep(self.random.choice([0, self.random.uniform(0, 0.4), self.random.uniform(0, 2)]))
                    self.quit(program)

    def test_quit_among_speakers_at_work(self):
        with self.speakers("home"):
            for number in range(STARTS - STARTS // 2):
                with self.subTest(start=number), self.program() as program:
                    program.await_rows(HOME)
                    for name in self.random.sample(HOME, self.random.randrange(3)):
                        program.click_tab(OVERVIEW)
                        program.click_row(name)
                        for slider in program.widgets("RZSlider"):
                            program.click(slider)
                            program.key(slider, "Right")
                    time.sleep(self.random.choice([0, self.random.uniform(0, 0.4)]))
                    self.quit(program)


SEED = int(sys.argv.pop())
road.main()
