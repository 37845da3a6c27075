# SPDX-License-Identifier: MIT
"""The link to a host is cut: a command that goes out on a lost link goes out again on a fresh one, and what a speaker had
taken is not sent twice."""

import itertools

import fault_road
import road
from fault_road import DEAD_LINK_DESCRIPTORS, speaker
from road import OVERVIEW

HOW = ["fin", "rst"]
WHEN = ["before", "within", "after"]
WAYS = list(itertools.product(WHEN, HOW))
BEGIN = "RZ!"  # of a command within which the link was cut: all that the speaker has read of it
VOLUME = 20


class Link_Test(fault_road.Fault_Test):
    def opened(self, program, name):
        """The slider of the speaker's tab."""
        if program.current_tab() != OVERVIEW:
            program.click_tab(OVERVIEW)
        program.click_row(name)
        slider = [w for w in program.widgets("RZSlider")]
        self.assertEqual([w["value"] for w in slider], [VOLUME])
        return slider[0]

    def values(self, speakers, number, **expected):
        for letters, value in expected.items():
            road.Speaker(speakers[number]["address"]).await_value(letters, value)

    def links(self, house, name, start):
        return len([event for event in house.events(name, start) if event.startswith("-- host link") and
                    event.endswith("open")])


class Idle_Test(Link_Test):
    """The worker sleeps when its link goes."""

    def test_a_link_that_goes_while_nothing_is_sent_loses_nothing(self):
        speakers = [speaker(number, how, values={"vo": str(VOLUME)}) for number, how in enumerate(HOW)]
        with self.speakers({"speakers": speakers}) as house, self.watched() as program:
            program.await_rows(HOW)
            program.mark()
            for how in HOW:
                with self.subTest(how):
                    slider = self.opened(program, how)
                    start = house.output.count()
                    for volume in range(VOLUME + 1, VOLUME + 4):
                        house.do("cut", how, how)
                        program.key(slider, "Right")
                        house.await_event(how, f"<- RZ!vo0{volume}", start)
                    self.assertEqual(house.received(how, start), ["RZ!vo021", "RZ!vo022", "RZ!vo023"])
                    self.assertEqual(self.links(house, how, start), 3)

    def test_a_command_at_which_the_link_goes_is_the_only_one_that_may_be_lost(self):
        speakers = [speaker(number, f"{when} {how}", values={"vo": str(VOLUME)}, faults={"host-cut-how": how})
                    for number, (when, how) in enumerate(WAYS)]
        with self.speakers({"speakers": speakers}) as house, self.watched() as program:
            program.await_rows([each["name"] for each in speakers])
            program.mark()
            for number, (when, how) in enumerate(WAYS):
                name = f"{when} {how}"
                first = BEGIN if when == "within" else "RZ!vo021"
                with self.subTest(name):
                    slider = self.opened(program, name)
                    start = house.output.count()
                    house.do("fault", name, "host-cut-left", "1")
                    house.do("fault", name, "host-cut", when)
                    program.key(slider, "Right")
                    house.await_event(name, f"<- {first}", start)
                    road.await_condition(lambda: [event for event in house.events(name, start)
                                                  if event.endswith(" closed")], "the link is cut")
                    self.values(speakers, number, vo="21" if when == "after" else "20")
                    program.key(slider, "Right")
                    house.await_event(name, "<- RZ!vo022", start)
                    self.values(speakers, number, vo="22")
                    self.assertEqual([line for line in house.received(name, start) if line.startswith("RZ!")],
                                     [first, "RZ!vo022"])


class Busy_Test(Link_Test):
    """The worker has more to send when its link goes."""

    def busy(self, program, slider, house, name, start):
        """Many changes, between which the worker does not come to rest, and one of each kind in their midst."""
        buttons = {w["text"]: w for w in program.widgets("QPushButton") if w["window"] == slider["window"]}
        for text in [None, None, "Mute", None, None, "Lock", None, None]:
            for _ in range(3):
                program.key(slider, "Right")
            if text:
                program.click(buttons[text])
        volume = program.widgets("RZSlider")[0]["value"]
        house.await_event(name, f"<- RZ!vo0{volume}", start)
        return volume

    def check_cut(self, house, name, start):
        """The link went at the first command, and all others came on one new link."""
        events = [event for event in house.events(name, start) if event.startswith(("<- RZ", "-- host link"))]
        self.assertRegex(events[0], f"^<- {BEGIN}(vo|$)", events)
        self.assertRegex(events[1], "closed$", events)
        self.assertRegex(events[2], "open$", events)
        self.assertGreater(len(events), 3)
        self.assertEqual([event for event in events[3:] if event.startswith("--")], [])

    def check(self, house, name, number, speakers, start, volume):
        """All arrived in order, none twice, and the speaker holds what was sent last."""
        for command in ("RZ!MO", "RZ!LO"):
            house.await_event(name, f"<- {command}", start)  # the log comes behind the bytes
        self.check_cut(house, name, start)  # first, since the questions that follow have links of their own
        self.values(speakers, number, vo=str(volume), LO="1", MO="1")
        commands = [line for line in house.received(name, start) if line.startswith("RZ!")]
        volumes = [line for line in commands if line.startswith("RZ!vo")]
        self.assertEqual(volumes, sorted(set(volumes)))
        others = [line for line in commands if line != BEGIN and not line.startswith("RZ!vo")]
        self.assertEqual(others, ["RZ!MO", "RZ!LO"])

    def test_links_that_go_between_two_commands(self):
        speakers = [speaker(number, how, values={"vo": str(VOLUME)}) for number, how in enumerate(HOW)]
        with self.speakers({"speakers": speakers}) as house, self.watched() as program:
            program.await_rows(HOW)
            program.mark()
            for number, how in enumerate(HOW):
                with self.subTest(how):
                    slider = self.opened(program, how)
                    start = house.output.count()
                    program.key(slider, "Right")
                    house.await_event(how, "<- RZ!vo021", start)
                    house.do("cut", how, how)  # the worker still waits for its 150 ms to pass
                    volume = self.busy(program, slider, house, how, start)
                    self.check(house, how, number, speakers, start, volume)

    def test_links_that_go_at_a_command(self):
        speakers = [speaker(number, f"{when} {how}", values={"vo": str(VOLUME)}, faults={"host-cut-how": how})
                    for number, (when, how) in enumerate(WAYS)]
        with self.speakers({"speakers": speakers}) as house, self.watched() as program:
            program.await_rows([each["name"] for each in speakers])
            program.mark()
            for number, (when, how) in enumerate(WAYS):
                name = f"{when} {how}"
                with self.subTest(name):
                    slider = self.opened(program, name)
                    start = house.output.count()
                    house.do("fault", name, "host-cut-left", "1")
                    house.do("fault", name, "host-cut", when)
                    volume = self.busy(program, slider, house, name, start)
                    self.check(house, name, number, speakers, start, volume)


class Other_Test(Link_Test):
    def test_speakers_whose_first_answer_is_cut_are_identified_all_the_same(self):
        speakers = [speaker(number, f"{when} {how}", kind=37, values={"vo": str(VOLUME)},
                            faults={"host-cut": when, "host-cut-how": how, "host-cut-left": "1"})
                    for number, (when, how) in enumerate(WAYS)]
        with self.speakers({"speakers": speakers}) as house, self.watched() as program:
            names = [each["name"] for each in speakers]
            program.await_rows(names)
            program.mark()
            self.assertEqual({row["texts"][3] for row in program.rows()}, {"Cadre 3.3 Air"})
            for name, (when, _) in zip(names, WAYS):
                tries = [line for line in house.received(name) if line == "RZ?STm"]
                self.assertEqual(len(tries), 1 if when == "after" else 2, name)
                self.opened(program, name)

    def test_a_link_that_cannot_be_opened_again_stays_dead_and_nobody_is_told(self):
        name = "Speaker 00"
        with self.speakers({"speakers": [speaker(0, values={"vo": str(VOLUME)})]}) as house, self.watched() as program:
            program.await_rows([name])
            slider = self.opened(program, name)
            program.mark()
            start = house.output.count()
            house.do("fault", name, "host-refused", "on")
            house.do("cut", name, "rst")
            for _ in range(3):
                program.key(slider, "Right")
            road.await_condition(lambda: program.widgets("RZSlider")[0]["value"] == VOLUME + 3, "the slider moves")
            house.do("fault", name, "host-refused", "off")
            program.key(slider, "Right")
            program.click_button("Beep!")
            program.move_mark(more_descriptors=DEAD_LINK_DESCRIPTORS)
            self.assertEqual(road.Speaker("127.0.2.1").value("vo"), str(VOLUME))
            self.assertEqual([line for line in house.received(name, start) if line.startswith("RZ!")], [])


road.main()
