# SPDX-License-Identifier: MIT
"""The machine sleeps, and the program with it, while the world goes on."""

import os
import signal
import time

import fault_road
import road
from fault_road import (
    DEAD_LINK_DESCRIPTORS, NETWORK_DESCRIPTORS, NETWORK_THREADS, SERVICE_DESCRIPTORS, WORKER_DESCRIPTORS, WORKER_THREADS,
    speaker)

SLEEP = 20  # seconds
VOLUME = 20


class Suspend_Test(fault_road.Fault_Test):
    def sleep(self, program, meanwhile):
        self.answers(program)
        with self.held_up(program):
            program.process.send_signal(signal.SIGSTOP)
            road.await_condition(lambda: os.waitid(os.P_PID, program.process.pid, os.WSTOPPED | os.WNOWAIT | os.WNOHANG),
                                 "the program stands still")
            end = time.monotonic() + SLEEP
            meanwhile()
            time.sleep(max(0, end - time.monotonic()))
            program.process.send_signal(signal.SIGCONT)

    def test_what_came_and_went_meanwhile_is_seen_on_return(self):
        names = ["stays", "leaves", "is cut", "moves", "comes"]
        house = [speaker(number, name, values={"vo": str(VOLUME)}, present=name != "comes")
                 for number, name in enumerate(names)]
        with self.speakers({"speakers": house}) as speakers, self.watched() as program:
            program.await_rows(names[:4])
            for name in names[:4]:
                program.click_tab(road.OVERVIEW)
                program.click_row(name)
            program.mark()

            def meanwhile():
                speakers.do("leave", "leaves")
                speakers.do("cut", "is cut", "rst")
                speakers.do("leave", "moves")
                speakers.do("join", "comes")
                speakers.do("set", "stays", "vo", "77")  # the program shows what it read, and asks no more

            self.sleep(program, meanwhile)
            program.await_rows(["stays", "is cut", "comes"])
            for name in ("stays", "is cut"):
                start = speakers.output.count()
                program.click_tab(name)
                slider = program.await_one("RZSlider", value=VOLUME)
                program.key(slider, "Right")
                speakers.await_event(name, f"<- RZ!vo0{VOLUME + 1}", start)
            program.click_tab("leaves")  # its tab stays
            program.key(program.await_one("RZSlider", value=VOLUME), "Right")
            program.click_tab(road.OVERVIEW)
            program.click_row("comes")
            self.assertEqual(program.await_one("RZSlider")["value"], VOLUME)
            # One came with its worker. Two services went; their workers go on, one of which tried to reach its speaker.
            program.move_mark(WORKER_THREADS, WORKER_DESCRIPTORS - SERVICE_DESCRIPTORS + DEAD_LINK_DESCRIPTORS)

    def test_asleep_while_it_looks_for_speakers(self):
        slow = [speaker(number, kind=kind, present=False, faults={"host-bytewise": "on", "host-byte-gap": "20"})
                for number, kind in enumerate([13, 18, 37])]
        names = [each["name"] for each in slow]
        with self.speakers({"speakers": slow}) as speakers, self.watched() as program:
            program.mark()
            speakers.do_all([("join", name) for name in names])
            program.await_one("QLabel", text="<b>Speakers Found: 3...</b>")
            self.sleep(program, lambda: None)
            program.await_rows(names)
            self.assertEqual({row["texts"][3] for row in program.rows()}, {"Cadre 3.2 Air", "Sub 12 Air", "Cadre 3.3 Air"})
            program.move_mark(
                WORKER_THREADS * len(slow) + NETWORK_THREADS,
                (WORKER_DESCRIPTORS + SERVICE_DESCRIPTORS) * len(slow) + NETWORK_DESCRIPTORS)


road.main()
