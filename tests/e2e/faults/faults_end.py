# SPDX-License-Identifier: MIT
"""The window is closed a hundred times, by Quit and by its frame, at random moments, whatever eight speakers do just then:
every time the program ends with 0 and without a word.

The one argument is the seed: two runs side by side make the hundred, and any moment can be had again.
"""

import contextlib
import random
import sys
import time

import fault_road
import road
from fault_road import speaker
from road import HOME, OVERVIEW
from update_dialog import HEX, NAME, Dialog, scene, served

KINDS = [13, 14, 15, 16, 17, 18, 19, 37]
# Closes of each kind; twice as many make the hundred.
REFUSED = SWALLOWED = MID_REPLY = AT_WORK = 9
STUCK = 8
FLASHING = 6


def eight(**faults):
    """Each is another model, with faults that are lists of the eight's values."""
    return {"speakers": [speaker(number, kind=kind, faults={key.replace("_", "-"): values[number] for key, values in
                                                            faults.items()}) for number, kind in enumerate(KINDS)]}


# Every speaker is stuck in another way.
EVERY_WAY = [
    {"host-refused": "on"},
    {"at-refused": "on"},
    {"host-silent": "on"},
    {"host-slow": "300"},
    {"host-cut": "within", "host-cut-how": "rst"},
    {"http": "silent"},
    {"http": "half"},
    {"http": "reset"},
]


class End_Test(fault_road.Fault_Test):
    def setUp(self):
        super().setUp()
        self.random = random.Random(SEED)
        self.slowest = 0

    def tearDown(self):
        print(f"seed {SEED}: the slowest was gone {self.slowest * 1000:.0f} ms after it was told to", flush=True)
        super().tearDown()

    def close(self, program, number):
        if number % 2:
            program.press_quit()
        else:
            program.close_by_frame(program.main_window())
        start = time.monotonic()
        program.check_end()
        self.slowest = max(self.slowest, time.monotonic() - start)

    def close_often(self, times, longest):
        for number in range(times):
            with self.subTest(number=number), self.watched() as program:
                time.sleep(self.random.choice([0, self.random.uniform(0, 0.4), self.random.uniform(0, longest)]))
                self.answers(program)
                self.close(program, number)

    def test_while_the_ports_of_eight_speakers_refuse(self):
        halves = ["on"] * 4 + ["off"] * 4
        with self.speakers(eight(host_refused=halves, at_refused=halves[::-1])):
            self.close_often(REFUSED, 2)

    def test_while_eight_speakers_take_no_connection_and_refuse_none(self):
        halves = ["on"] * 4 + ["off"] * 4
        holes = eight(host_refused=halves, at_refused=halves[::-1])
        with self.speakers(holes), contextlib.ExitStack() as stack:
            for number, hole in enumerate(holes["speakers"]):
                stack.enter_context(road.Black_Hole(hole["address"], 8990 if number < 4 else 8991))
            self.close_often(SWALLOWED, 2)

    def test_while_eight_speakers_are_in_the_middle_of_a_reply(self):
        with self.speakers(eight(host_bytewise=["on"] * 8, host_byte_gap=["60"] * 8)) as speakers:
            for number in range(MID_REPLY):
                start = speakers.output.count()
                with self.subTest(number=number), self.watched() as program:
                    for each in range(len(KINDS)):
                        road.await_condition(lambda: [event for event in speakers.events(f"Speaker {each:02}", start)
                                                      if event.startswith("-> RZ#")],
                                             f"speaker {each} begins a reply")
                    time.sleep(self.random.uniform(0, 2))
                    self.answers(program)
                    self.close(program, number)

    def test_while_eight_speakers_are_stuck_each_in_another_way(self):
        stuck = [speaker(number, kind=kind, faults=EVERY_WAY[number]) for number, kind in enumerate(KINDS)]
        with self.speakers({"speakers": stuck}):
            self.close_often(STUCK, 2)

    def test_while_speakers_are_at_work(self):
        with self.speakers("home"):
            for number in range(AT_WORK):
                with self.subTest(number=number), self.watched() as program:
                    program.await_rows(HOME)
                    for name in self.random.sample(HOME, self.random.randrange(3)):
                        program.click_tab(OVERVIEW)
                        program.click_row(name)
                        for slider in program.widgets("RZSlider"):
                            program.click(slider)
                            program.key(slider, "Right")
                    time.sleep(self.random.choice([0, self.random.uniform(0, 0.4)]))
                    self.answers(program)
                    self.close(program, number)

    def test_while_one_of_eight_speakers_is_flashed(self):
        lines = 100
        flashed = speaker(0, NAME, flash_answer_ms=20)
        house = scene(flashed, *(speaker(number, kind=KINDS[number]) for number in range(1, 8)), hex_lines=lines)
        with self.speakers(house) as speakers:
            size = len(served(HEX))
            for number in range(FLASHING):
                with self.subTest(number=number), self.watched() as program:
                    road.await_condition(lambda: len(program.rows()) == len(KINDS), lambda: program.screen())
                    program.mark()  # no redraw takes the selection away any more
                    self.answers(program)
                    start = speakers.output.count()
                    Dialog(program).start_host(size)
                    speakers.await_event(NAME, "<- RZ!FL", start)
                    time.sleep(self.random.uniform(0, 5 + lines * 0.03))
                    self.close(program, number)
                start = speakers.output.count()
                speakers.do("leave", NAME)  # else it would go on waiting for lines
                speakers.do("join", NAME)
                speakers.output.await_line(f'announced "{NAME}"', start)


SEED = int(sys.argv.pop())
road.main()
