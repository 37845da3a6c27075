# SPDX-License-Identifier: MIT
"""A host answers too little, too much, too slowly or never. What waits for 5 s at a time is what is measured here."""

import fault_road
import road
from fault_road import (
    NETWORK_DESCRIPTORS, NETWORK_THREADS, SERVICE_DESCRIPTORS, WORKER_DESCRIPTORS, WORKER_THREADS, memory, speaker)

WELL = "Gesund"
VOLUME = 20
IDENTIFIED = 60  # seconds: a speaker without an answer costs 5 s a query, and five queries
MEGABYTE = 1_000_000


class Reply_Test(fault_road.Fault_Test):
    def models(self, program):
        return {row["texts"][1]: row["texts"][3] for row in program.rows()}

    def await_models(self, program, expected):
        road.await_condition(lambda: self.models(program) == expected,
                             lambda: f"the models are {expected}, not {self.models(program)}", IDENTIFIED)

    def press_right(self, program, times):
        slider = program.widgets("RZSlider")[0]
        for _ in range(times):
            program.key(slider, "Right")
        road.await_condition(lambda: program.widgets("RZSlider")[0]["value"] == slider["value"] + times,
                             "the slider moves")

    def test_speakers_that_never_answer_end_as_unknown(self):
        unanswering = [speaker(0, "reads nothing", faults={"host-deaf": "on"}),
                       speaker(1, "says nothing", 18, faults={"host-silent": "on"}),
                       speaker(2, "has no # in its answers", 37, faults={"host-no-hash": "on"}),
                       speaker(3, WELL)]
        for each in unanswering:
            each["present"] = False
        with self.speakers({"speakers": unanswering}) as house, self.watched() as program:
            program.mark()
            house.do_all([("join", each["name"]) for each in unanswering])
            program.await_one("QLabel", text="<b>Speakers Found: 4...</b>")
            self.assertEqual(program.rows(), [])
            self.await_models(program, {**{each["name"]: "Unknown Speaker :-(" for each in unanswering[:3]},
                                        WELL: "Cadre 3.2 Air"})
            program.move_mark(
                WORKER_THREADS + NETWORK_THREADS,
                WORKER_DESCRIPTORS + SERVICE_DESCRIPTORS * len(unanswering) + NETWORK_DESCRIPTORS)
            program.click_row("says nothing")
            self.answers(program)

    def test_a_speaker_that_answers_byte_by_byte_is_read_to_the_end(self):
        scene = {"speakers": [speaker(0, WELL, values={"vo": str(VOLUME)},
                                      faults={"host-bytewise": "on", "host-byte-gap": "30"})]}
        with self.speakers(scene) as house, self.watched() as program:
            self.await_models(program, {WELL: "Cadre 3.2 Air"})
            program.mark()
            program.click_row(WELL)
            self.assertEqual([w["value"] for w in program.widgets("RZSlider")], [VOLUME])
            self.press_right(program, 1)
            house.await_event(WELL, f"<- RZ!vo0{VOLUME + 1}")

    def test_a_megabyte_without_a_carriage_return_is_not_kept(self):
        scene = {"speakers": [speaker(number, kind=38, present=False,
                                      faults={"host-no-cr": "on", "host-size": str(MEGABYTE)}) for number in range(8)]}
        names = [each["name"] for each in scene["speakers"]]
        scene["speakers"].append(speaker(8, WELL))
        with self.speakers(scene) as house, self.watched() as program:
            self.await_models(program, {WELL: "Cadre 3.2 Air"})
            program.mark()
            before = memory(program, "VmHWM")
            house.do_all([("join", name) for name in names])
            road.await_condition(lambda: len([line for line in house.output.lines() if f"({MEGABYTE - 1} bytes)" in line])
                                 >= len(names), "all have answered")
            self.assertEqual(self.models(program), {WELL: "Cadre 3.2 Air"})  # the answers are not complete yet
            # A carriage return among so much more than is read at a time is dropped with it.
            for name in names * 5:
                house.do("send", name, "x" * MEGABYTE)
            program.await_rest()
            self.took_less(program, before + 24, "MB; 48 have come")
            self.answers(program)
            for name in names:
                house.do("fault", name, "host-no-cr", "off")
                house.do("fault", name, "host-size", "0")

            def completed():
                house.do_all([("send", name, "x") for name in names])
                return set(self.models(program)) == {WELL, *names}

            road.await_condition(completed, "all are identified, as whatever it may be")
            program.move_mark(WORKER_THREADS * len(names), (WORKER_DESCRIPTORS + SERVICE_DESCRIPTORS) * len(names))

    def test_a_host_that_reads_nothing_any_more_holds_nobody_up(self):
        with self.speakers({"speakers": [speaker(0, WELL, values={"vo": str(VOLUME)})]}) as house, \
                self.watched() as program:
            self.await_models(program, {WELL: "Cadre 3.2 Air"})
            program.click_row(WELL)
            program.mark()
            start = house.output.count()
            house.do("fault", WELL, "host-deaf", "on")
            self.press_right(program, 30)
            program.click_button("Beep!")
            self.answers(program)
            house.do("fault", WELL, "host-deaf", "off")
            house.await_event(WELL, f"<- RZ!vo0{VOLUME + 30}", start)
            volumes = [line for line in house.received(WELL, start) if line.startswith("RZ!vo")]
            self.assertEqual(volumes, sorted(set(volumes)))

    def test_a_host_that_falls_silent_still_does_what_it_is_told(self):
        with self.speakers({"speakers": [speaker(0, WELL, values={"vo": str(VOLUME)})]}) as house, \
                self.watched() as program:
            self.await_models(program, {WELL: "Cadre 3.2 Air"})
            program.click_row(WELL)
            program.mark()
            house.do("fault", WELL, "host-silent", "on")
            self.press_right(program, 3)
            house.await_event(WELL, f"<- RZ!vo0{VOLUME + 3}")
            self.answers(program)


road.main()
