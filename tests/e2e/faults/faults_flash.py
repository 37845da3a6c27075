# SPDX-License-Identifier: MIT
"""The link of a transfer of firmware is cut at the first, at the second, at a middle and at the last line: the program goes
on to the end of the file, as it does without a host, and the speaker keeps what it got."""

import fault_road
import road
from fault_road import WORKER_DESCRIPTORS, WORKER_THREADS, speaker
from update_dialog import Dialog, scene, sent_lines, served

LINES = 7
ANSWER_MS = 500  # time to switch the fault between two lines
# Model code, type, the line at which the link goes, counted from 0, whether its answer still comes, and how it goes.
CASES = [
    ("vc3w", 13, 0, "before", "fin"),
    ("vc5w", 14, 1, "after", "rst"),
    ("vc7w", 15, LINES // 2, "within", "rst"),
    ("vc8w", 16, LINES // 2, "after", "fin"),
    ("vc9w", 17, LINES - 1, "before", "fin"),
    ("vc3.3w", 37, LINES - 1, "within", "rst"),
]
LEFT_OPEN = 1  # of the flash link's two sockets, the one to the AT channel


class Flash_Test(fault_road.Fault_Test):
    def test_a_cut_at_any_line_changes_nothing_but_the_image(self):
        house = [speaker(number, name, kind, flash_answer_ms=ANSWER_MS)
                 for number, (name, kind, *_) in enumerate(CASES)]
        with self.speakers(scene(*house, hex_lines=LINES)) as speakers, self.watched() as program:
            program.await_rows([name for name, *_ in CASES])
            program.mark()
            for number, (name, _, at, when, how) in enumerate(CASES):
                with self.subTest(name, at=at, when=when, how=how):
                    self.flash(program, speakers, name, at, when, how)
                    # The worker does not come back, and the link of the flash stays.
                    flashed = number + 1
                    program.await_mark(more_threads=-flashed * WORKER_THREADS,
                                       more_descriptors=-flashed * (WORKER_DESCRIPTORS - LEFT_OPEN))
            program.mark()

    def flash(self, program, speakers, name, at, when, how):
        content = served(f"{name}_host.hex")
        lines = [line.decode().strip() for line in sent_lines(content)]
        self.assertEqual(len(lines), LINES)
        dialog = Dialog(program, name)
        start = speakers.output.count()
        with self.held_up(program):
            dialog.start_host(len(content))
            speakers.await_event(name, f"<- {lines[at - 1]}" if at else "<- RZ!FL", start)
            speakers.do("fault", name, "host-cut-how", how)
            speakers.do("fault", name, "host-cut", when)
            dialog.await_completed()
        self.assertEqual(dialog.bar(), 100)
        self.assertEqual([text[3:] for text in speakers.events(name, start) if text.startswith("<- :")], lines[:at + 1])
        dialog.click("<< Back")
        self.answers(program)


road.main()
