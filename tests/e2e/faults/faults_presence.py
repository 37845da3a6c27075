# SPDX-License-Identifier: MIT
"""Speakers come and go: many at a time and again and again, under equal names, on two interfaces and at other addresses.

The path of the announcer comes first on the command line.
"""

import contextlib
import os
import pathlib
import subprocess
import sys

import fault_road
import road
from fault_road import DEAD_LINK_DESCRIPTORS, SERVICE_DESCRIPTORS, WORKER_DESCRIPTORS, WORKER_THREADS, speaker

sys.path.append(str(pathlib.Path(__file__).resolve().parent.parent / "discovery"))
import engine_road  # noqa: E402

MANY = 50
TIMES = 20
KINDS = [13, 14, 15, 16, 17, 18, 19, 37, 38, 99]


class Crowd_Test(fault_road.Fault_Test):
    def test_fifty_speakers_come_and_go_twenty_times(self):
        crowd = [speaker(number, kind=KINDS[number % len(KINDS)]) for number in range(MANY)]
        names = [each["name"] for each in crowd]
        with_worker = len([each for each in crowd if each["type"] != 99])
        with self.speakers({"speakers": crowd}) as house, self.watched() as program:
            program.await_rows(names)
            program.mark()
            for _ in range(TIMES):
                house.do_all([("leave", name) for name in names])
                program.await_rows([])
                house.do_all([("join", name) for name in names])
                program.await_rows(names)
                self.answers(program)
            # The workers of records that went go on.
            program.move_mark(more_threads=TIMES * with_worker * WORKER_THREADS,
                              more_descriptors=TIMES * with_worker * WORKER_DESCRIPTORS)


class Namesakes(fault_road.Fault_Test):
    NAME = "Küche"

    def await_models(self, program, *models):
        """Until there are these rows, in this order; all bear the name."""
        expected = [["", self.NAME, "in Home", model] for model in models]
        road.await_condition(lambda: [row["texts"] for row in program.rows()] == expected,
                             lambda: f"the rows are {expected}, not {[row['texts'] for row in program.rows()]}")

    def press_right(self, program, position, value):
        """In the tab of the row at that position, which shows a volume."""
        program.click_tab_at(0)
        program.click_at(program.tree(), program.rows()[position])
        slider = program.await_one("RZSlider", value=value)
        program.key(slider, "Right")


class Interface_Test(Namesakes):
    OUTER = "10.77.0.1"

    @contextlib.contextmanager
    def second_interface(self):
        """A pair of network devices in the lab, of which the daemon knows one."""
        for words in ("link add outer type veth peer name far", f"addr add {self.OUTER}/24 dev outer",
                      "link set outer up", "link set far up"):
            subprocess.run(["ip", *words.split()], check=True, stdin=subprocess.DEVNULL)
        config = pathlib.Path(os.environ["VIRELO_LAB_DIR"]) / "avahi.conf"
        before = config.read_text()
        config.write_text(before.replace("allow-interfaces=lo\n", "allow-interfaces=lo,outer\n"))
        self.avahi.renew()
        try:
            yield
        finally:
            config.write_text(before)
            subprocess.run(["ip", "link", "del", "outer"], check=True, stdin=subprocess.DEVNULL)
            self.avahi.renew()

    def test_a_speaker_on_two_interfaces_has_one_row(self):
        both = speaker(0, self.NAME, address=self.OUTER)
        one = speaker(1, "Bad", kind=37)
        with self.second_interface(), self.speakers({"speakers": [both, one]}) as house, self.watched() as program:
            program.await_rows([self.NAME, "Bad"])
            program.mark()  # by now it was found on both
            for _ in range(3):
                house.do("leave", self.NAME)
                program.await_rows(["Bad"])
                house.do("join", self.NAME)
                program.move_mark(WORKER_THREADS, WORKER_DESCRIPTORS)  # found on both again; the old worker goes on
                program.await_rows([self.NAME, "Bad"])

    def test_two_speakers_of_one_name_on_two_interfaces_have_a_row_each(self):
        inner = {"speakers": [speaker(0, self.NAME, values={"vo": "20"})]}
        outer = {"speakers": [speaker(0, self.NAME, 37, address=self.OUTER, interface="outer", values={"vo": "30"})]}
        with self.second_interface(), self.speakers(inner) as one, self.watched() as program:
            self.await_models(program, "Cadre 3.2 Air")
            program.mark()
            with self.speakers(outer) as other:
                self.await_models(program, "Cadre 3.2 Air", "Cadre 3.3 Air")
                self.press_right(program, 0, 20)
                one.await_event(self.NAME, "<- RZ!vo021")
                self.press_right(program, 1, 30)
                other.await_event(self.NAME, "<- RZ!vo031")
                self.assertEqual(program.tabs(), [road.OVERVIEW, self.NAME, self.NAME])
                # One daemon that announces both says no goodbye as long as the other is there.
                program.move_mark(WORKER_THREADS, WORKER_DESCRIPTORS + SERVICE_DESCRIPTORS)


class Move_Test(Namesakes):
    def test_a_speaker_that_was_gone_and_is_back_elsewhere_has_the_row_of_a_new_one(self):
        with self.speakers({"speakers": [speaker(0, self.NAME, values={"vo": "20"})]}) as house, \
                self.watched() as program:
            self.await_models(program, "Cadre 3.2 Air")
            self.press_right(program, 0, 20)
            house.await_event(self.NAME, "<- RZ!vo021")
            program.mark()
            house.do("leave", self.NAME)
            program.await_rows([])
            house.do("move", self.NAME, "127.0.9.1")
            house.do("join", self.NAME)
            self.await_models(program, "Cadre 3.2 Air")
            self.press_right(program, 0, 21)
            house.await_event(self.NAME, "<- RZ!vo022")
            self.assertEqual(program.tabs(), [road.OVERVIEW, self.NAME, self.NAME])
            program.move_mark(WORKER_THREADS, WORKER_DESCRIPTORS)  # the worker of the row that went goes on

    def test_an_address_that_changes_under_a_service_leaves_the_row_behind(self):
        old, new = speaker(0, "old", values={"vo": "20"}), speaker(1, "new", 37, values={"vo": "30"})
        with self.speakers({"speakers": [old, new]}, announced=False) as house, self.watched() as program, \
                contextlib.closing(engine_road.Announcer("_lodeset._tcp")) as announcer:
            at_old = announcer.address("umzug.local", old["address"])
            service = announcer.service(self.NAME, "umzug.local", 80)
            self.await_models(program, "Cadre 3.2 Air")
            announcer.address("umzug.local", new["address"])
            announcer.withdraw(at_old)
            program.mark()
            house.do("leave", "old")
            self.await_models(program, "Cadre 3.2 Air")
            # What leaves now is a service at the new address, which the row is not of.
            announcer.withdraw(service)
            program.await_mark(more_descriptors=-SERVICE_DESCRIPTORS)
            self.await_models(program, "Cadre 3.2 Air")
            service = announcer.service(self.NAME, "umzug.local", 80)
            self.await_models(program, "Cadre 3.2 Air", "Cadre 3.3 Air")
            self.press_right(program, 0, 20)  # to nobody
            self.press_right(program, 1, 30)
            house.await_event("new", "<- RZ!vo031")
            self.answers(program)
            announcer.withdraw(service)
            self.await_models(program, "Cadre 3.2 Air")
            program.move_mark(WORKER_THREADS, WORKER_DESCRIPTORS - SERVICE_DESCRIPTORS + DEAD_LINK_DESCRIPTORS)


engine_road.ANNOUNCER = sys.argv.pop(1)
road.main()
