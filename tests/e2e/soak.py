# SPDX-License-Identifier: MIT
"""The program under load for as long as is asked for: twenty speakers, a setting every 200 ms, arrivals and departures,
redraws, dialogs opened and closed. Threads, descriptors and memory must stay flat, but for what the program keeps on
purpose, which is counted and compared.

The one argument is the duration in seconds.
"""

import pathlib
import random
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent / "faults"))
import fault_road  # noqa: E402
import road  # noqa: E402
from fault_road import WORKER_DESCRIPTORS, WORKER_THREADS, memory, speaker  # noqa: E402
from road import OVERVIEW  # noqa: E402

SETTING_EVERY = 0.2  # seconds, each of these
COMING_OR_GOING_EVERY = 3
DIALOG_EVERY = 10
LOOK_EVERY = 60

STEADY, FLEETING = 10, 10  # speakers that stay, and those that come and go; every second of these is of unknown type
AIR, UNKNOWN = [13, 14, 15, 16, 17, 19, 37, 38, 39, 40], 99
VOLUME = 50
DIALOGS = {"Update >>": "Client_Update", "Group >>": "Client_Group", "WiFi >>": "Client_WLANs"}

# What the program keeps on purpose, in MB, as measured by sixteen and more of each in a row: a dialog that was closed, and
# a record that left, with its worker.
DIALOG_MB = 0.10
RECORD_MB = 0.02
WORKER_MB = 0.06
SLACK_MB = 10  # what an allocator gives or takes


class House:
    """The twenty, who of them is there, and what they left behind in the program."""

    def __init__(self):
        steady = [speaker(number, kind=kind, values={"vo": str(VOLUME)}, networks=[{"ssid": "Zuhause"}])
                  for number, kind in enumerate(AIR)]
        fleeting = [speaker(STEADY + number, kind=UNKNOWN if number % 2 else AIR[number]) for number in range(FLEETING)]
        self.scene = {"speakers": steady + fleeting}
        self.steady = [each["name"] for each in steady]
        self.fleeting = [each["name"] for each in fleeting]
        self.with_worker = {each["name"] for each in fleeting if each["type"] != UNKNOWN}
        self.away = set()
        self.records_left = self.workers_left = 0

    def names(self):
        return [name for name in self.steady + self.fleeting if name not in self.away]

    def turn(self, speakers, name):
        """Who is there leaves, who is away joins."""
        if name in self.away:
            self.away.remove(name)
            speakers.do("join", name)
            return
        self.away.add(name)
        self.records_left += 1
        self.workers_left += name in self.with_worker
        speakers.do("leave", name)


class Soak_Test(fault_road.Fault_Test):
    def setUp(self):
        super().setUp()
        self.random = random.Random(1)
        self.house = House()
        self.volumes = {name: VOLUME for name in self.house.steady}
        self.current = self.slider = None  # the name of the speaker in front, and its slider
        self.settings = self.dialogs = self.last_setting = 0

    def settle(self):
        """Until the rows are those of who is there, so that none moves under a click; settings go on meanwhile."""
        def settled():
            if self.current and time.monotonic() >= self.last_setting + SETTING_EVERY:
                self.change_a_setting()
            return sorted(row["texts"][1] for row in self.program.rows()) == sorted(self.house.names())

        road.await_condition(settled, lambda: f"the rows are {self.house.names()}: {self.program.screen()}")

    def open_tab(self, name):
        if self.program.current_tab() != OVERVIEW:
            self.program.click_tab(OVERVIEW)
        self.program.click_row(name)
        self.current = name
        self.slider = self.program.await_one("RZSlider", value=self.volumes[name])

    def change_a_setting(self):
        """Up once and down once, so that no end of the scale is reached."""
        up = self.volumes[self.current] == VOLUME
        self.program.key(self.slider, "Right" if up else "Left")
        self.volumes[self.current] += 1 if up else -1
        self.settings += 1
        self.last_setting = time.monotonic()

    def check_setting(self):
        """What was set last has arrived."""
        address = next(each["address"] for each in self.house.scene["speakers"] if each["name"] == self.current)
        road.Speaker(address).await_value("vo", str(self.volumes[self.current]))

    def come_or_go(self):
        self.house.turn(self.speakers_there, self.random.choice(self.house.fleeting))
        self.settle()  # who is back at once was never away for the others

    def use_a_dialog(self):
        """Of a speaker that stays, which is in front afterwards."""
        self.settle()
        self.check_setting()
        name = self.random.choice(self.house.steady)
        button, kind = self.random.choice(list(DIALOGS.items()))

        def opened():
            self.open_tab(name)
            self.program.click_tab(OVERVIEW)
            self.program.click_button(button)  # without effect if the rows were drawn anew, and none is selected
            return self.program.widgets(kind)

        dialog = road.await_condition(opened, f"{button} opens a {kind}")[0]
        if kind == "Client_WLANs":
            road.await_condition(lambda: self.program.one("QTreeWidget", window=dialog["widget"])["rows"], "the scan ends")
        self.program.close_by_frame(dialog)
        road.await_condition(lambda: not self.program.widgets(kind), "the dialog is gone")
        self.dialogs += 1
        self.open_tab(name)

    def look(self):
        """With all twenty there, and the program at rest."""
        for name in sorted(self.house.away):
            self.house.turn(self.speakers_there, name)
        self.settle()
        self.check_setting()
        self.answers(self.program)
        left = self.house.workers_left
        self.program.await_mark(more_threads=left * WORKER_THREADS, more_descriptors=left * WORKER_DESCRIPTORS)
        kept = self.dialogs * DIALOG_MB + self.house.records_left * RECORD_MB + left * WORKER_MB
        grown = memory(self.program) - self.memory
        threads, descriptors = self.program.counts()
        print(f"{time.monotonic() - self.began:6.0f} s: {self.settings} settings, {self.dialogs} dialogs, "
              f"{self.house.records_left} departures, {left} with a worker; {threads} threads, {descriptors} descriptors; "
              f"{grown:+.1f} MB, of which {kept:.1f} are kept on purpose", flush=True)
        self.assertLess(grown, kept + SLACK_MB)

    def work(self, deeds):
        """Each deed at its interval, until the time is over."""
        due = {deed: time.monotonic() + every for deed, every in deeds}
        while time.monotonic() < self.began + DURATION:
            deed, at = min(due.items(), key=lambda entry: entry[1])
            time.sleep(max(0, at - time.monotonic()))
            deed()
            due[deed] = max(at, time.monotonic() - 1) + dict(deeds)[deed]

    def test_nothing_grows_but_what_is_kept(self):
        with self.speakers(self.house.scene) as self.speakers_there, self.watched() as self.program:
            self.settle()
            for name in self.house.steady:
                self.open_tab(name)
            for _ in DIALOGS:
                self.use_a_dialog()  # what Qt keeps from a first time on is there now
            self.program.mark()
            self.dialogs = 0
            self.memory = memory(self.program)
            self.began = time.monotonic()
            self.work([(self.change_a_setting, SETTING_EVERY), (self.come_or_go, COMING_OR_GOING_EVERY),
                       (self.use_a_dialog, DIALOG_EVERY), (self.look, LOOK_EVERY)])
            self.look()
            self.assertGreater(self.settings, DURATION / SETTING_EVERY / 2)  # it was under load all the time
            # What is kept is accounted for; the end of the program is compared with this.
            left = self.house.workers_left
            self.program.move_mark(more_threads=left * WORKER_THREADS, more_descriptors=left * WORKER_DESCRIPTORS)


DURATION = float(sys.argv.pop())
road.main()
