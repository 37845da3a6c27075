# SPDX-License-Identifier: MIT
"""The DNS-SD daemon fails in every way: the window goes on answering, and the program ends as it should."""

import time

import fault_road
import road
from fault_road import (
    NETWORK_DESCRIPTORS, NETWORK_THREADS, SERVICE_DESCRIPTORS, WORKER_DESCRIPTORS, WORKER_THREADS, speaker)
from road import HOME, OVERVIEW

KITCHEN = "Küche"
LATE = "Nachzügler"
# What goes with the daemon: what it keeps of each speaker, the descriptor of the browse, and the connection to the bus.
DAEMON_DESCRIPTORS = -(SERVICE_DESCRIPTORS * len(HOME) + 2)
QT_BUS_DESCRIPTORS = -1  # Qt's own connection to the bus, on which it looks for networks
WORKERS = len(HOME) - 1  # one is of a type without a worker
HANGS = 30  # seconds: longer than a call on a hung daemon would hold its caller


class Daemon_Test(fault_road.Fault_Test):
    def found(self, program):
        """The speakers are found, and one of them has a tab."""
        program.await_rows(HOME)
        program.click_row(KITCHEN)

    def works(self, program):
        """The window answers a user."""
        for tab in (OVERVIEW, KITCHEN):
            program.click_tab(tab)
            self.assertEqual(program.current_tab(), tab)
        self.answers(program)

    def test_a_daemon_that_dies_takes_the_rows_with_it_also_when_it_comes_back(self):
        with self.speakers() as speakers, self.watched() as program:
            self.found(program)
            program.mark()
            self.avahi.kill()
            program.await_rows([])
            program.await_mark(more_descriptors=DAEMON_DESCRIPTORS)
            self.works(program)
            start = speakers.output.count()
            self.avahi.start()
            speakers.output.await_line('announced "Werkstatt"', start)
            self.works(program)
            program.move_mark(more_descriptors=DAEMON_DESCRIPTORS)
            self.assertEqual(program.rows(), [])  # nothing browses anew

    def test_a_daemon_that_is_stopped_in_order_takes_the_rows_with_it(self):
        with self.speakers(), self.watched() as program:
            self.found(program)
            program.mark()
            self.avahi.stop()
            program.await_rows([])
            self.works(program)
            program.move_mark(more_descriptors=DAEMON_DESCRIPTORS)

    def test_a_bus_that_dies_takes_the_rows_with_it_also_when_it_comes_back(self):
        bus = road.Bus()
        with self.speakers(), self.watched() as program:
            self.found(program)
            program.mark()
            bus.kill()
            try:
                program.await_rows([])
                program.await_mark(more_descriptors=DAEMON_DESCRIPTORS + QT_BUS_DESCRIPTORS)
                self.works(program)
            finally:
                bus.start()
                self.avahi.renew()
            with self.speakers({"speakers": [speaker(100, LATE)]}) as late:
                late.output.await_line(f'announced "{LATE}"')
                self.works(program)
                program.move_mark(more_descriptors=DAEMON_DESCRIPTORS + QT_BUS_DESCRIPTORS)
                self.assertEqual(program.rows(), [])

    def test_a_daemon_that_hangs_for_half_a_minute(self):
        with self.speakers() as speakers, self.watched() as program:
            self.found(program)
            program.mark()
            self.avahi.pause()
            end = time.monotonic() + HANGS
            while time.monotonic() < end:
                self.works(program)
            self.avahi.resume()
            self.works(program)
            program.click_tab(OVERVIEW)
            program.await_rows(HOME)
            speakers.do("leave", KITCHEN)  # the rows were there all along; whether it still browses shows in a change
            program.await_rows([name for name in HOME if name != KITCHEN])
            speakers.do("join", KITCHEN)
            program.await_rows(HOME)
            program.move_mark(WORKER_THREADS, WORKER_DESCRIPTORS)  # the worker of the row that went goes on

    def test_a_start_while_the_daemon_hangs(self):
        with self.speakers():
            self.avahi.pause()
            with self.watched() as program:
                self.assertEqual(program.rows(), [])
                self.answers(program)
                program.mark()
                self.avahi.resume()
                program.await_rows(HOME)
                program.move_mark(
                    WORKER_THREADS * WORKERS + NETWORK_THREADS,
                    WORKER_DESCRIPTORS * WORKERS + SERVICE_DESCRIPTORS * len(HOME) + NETWORK_DESCRIPTORS)

    def test_quit_while_the_daemon_hangs(self):
        with self.speakers(), self.watched() as program:
            program.await_rows(HOME)
            program.mark()
            self.avahi.pause()
            program.await_mark()
            program.press_quit()
            program.check_end()

    def test_a_start_without_a_daemon(self):
        self.avahi.stop()
        with self.watched() as program:
            program.mark()
            program.one("QLabel", text="<b>Searching Speakers...</b>")


road.main()
