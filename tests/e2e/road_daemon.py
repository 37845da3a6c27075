# SPDX-License-Identifier: MIT
"""The DNS-SD daemon fails in every way: the window goes on answering, and the program ends as it should."""

import time

import road
from road import HOME, OVERVIEW

KITCHEN = "Küche"
# What goes with the daemon: two descriptors a speaker, that of the browse, and the connection to the bus.
DAEMON_DESCRIPTORS = -(2 * len(HOME) + 2)
# A call on a hung daemon would hold its caller for 25 s; a busy machine alone holds a timer for far less than this.
LATE_MS = 3000


class Daemon_Test(road.Road_Test):
    def found(self, program):
        """The speakers are found, one of them has a tab, and from now on the window is watched."""
        program.await_rows(HOME)
        program.click_row(KITCHEN)
        program.probe.ask("watch")

    def answers(self, program):
        """The window answers, and did all the time since the last look."""
        for tab in (OVERVIEW, KITCHEN):
            program.click_tab(tab)
            self.assertEqual(program.current_tab(), tab)
        self.assertLess(program.probe.ask("lateness")["worst"], LATE_MS)

    def test_a_daemon_that_dies_takes_the_rows_with_it_also_when_it_comes_back(self):
        with self.speakers() as speakers, self.program() as program:
            self.found(program)
            program.mark()
            self.avahi.kill()
            program.await_rows([])
            program.await_mark(more_descriptors=DAEMON_DESCRIPTORS)
            self.answers(program)
            start = speakers.output.count()
            self.avahi.start()
            speakers.output.await_line('announced "Werkstatt"', start)
            self.answers(program)
            self.assertEqual(program.rows(), [])  # nothing browses anew
            program.mark()

    def test_a_daemon_that_is_stopped_in_order_takes_the_rows_with_it(self):
        with self.speakers(), self.program() as program:
            self.found(program)
            self.avahi.stop()
            program.await_rows([])
            self.answers(program)
            program.mark()

    def test_a_daemon_that_hangs_for_ten_seconds(self):
        with self.speakers(), self.program() as program:
            self.found(program)
            program.mark()
            self.avahi.pause()
            end = time.monotonic() + 10
            while time.monotonic() < end:
                self.answers(program)
            self.avahi.resume()
            self.answers(program)
            program.click_tab(OVERVIEW)
            program.await_rows(HOME)

    def test_a_start_while_the_daemon_hangs(self):
        with self.speakers():
            self.avahi.pause()
            with self.program() as program:
                program.probe.ask("watch")
                self.assertEqual(program.rows(), [])
                self.assertLess(program.probe.ask("lateness")["worst"], LATE_MS)
                self.avahi.resume()
                program.await_rows(HOME)

    def test_quit_while_the_daemon_hangs(self):
        with self.speakers(), self.program() as program:
            program.await_rows(HOME)
            self.avahi.pause()
            program.press_quit()
            program.check_end()

    def test_a_start_without_a_daemon(self):
        self.avahi.stop()
        with self.program() as program:
            program.mark()
            program.one("QLabel", text="<b>Searching Speakers...</b>")


road.main()
