# SPDX-License-Identifier: MIT
"""Speakers found by real discovery: their rows, their tabs, what a setting sends, and how they come and go."""

import road
from road import HOME, OVERVIEW

# Name, status, model and whether there is a picture, as the scene "home" has them.
ROWS = {
    "Wohnzimmer links": ("in Zuhause", "Cadre 3.2 Air", True),
    "Wohnzimmer rechts": ("in Zuhause", "Cadre 3.3 Air", True),
    "Küche": ("in Zuhause", "Center.2 Air", False),
    "Sub Wohnzimmer": ("in Zuhause", "Sub 12 Air", True),
    "Gästezimmer (neu)": ("Access-Point", "Cadre 8.2 Air", True),
    "Werkstatt": ("in Zuhause", "Unknown Speaker :-(", False),
}
# Name, status and model, as the scene "broken" has them: who fails on one of the two ways is known by the other.
BROKEN = {
    **dict.fromkeys(["Gesund", "Host antwortet spät", "Host tröpfelt", "Host legt auf", "Will in keine Gruppe",
                     "Upgrade scheitert"], ("in Zuhause", "Cadre 5.3 Air")),
    **dict.fromkeys(["Host weist ab", "AT weist ab", "Host ohne Raute"], ("in Zuhause", "Unknown Speaker :-(")),
    **dict.fromkeys(["HTTP weist ab", "HTTP Fehlerseite", "HTTP halbe Antwort", "HTTP leeres Objekt"],
                    ("in ", "Cadre 5.3 Air")),
}
LEFT = "Wohnzimmer links"
LEFT_ADDRESS = "127.0.0.11"

# A worker of a full-range speaker is a thread with an event descriptor and the two sockets of its link.
WORKER_DESCRIPTORS = 3
# What discovery keeps open for each service: one descriptor to resolve it, one for its address.
SERVICE_DESCRIPTORS = 2


class Rows_Test(road.Road_Test):
    def test_each_speaker_of_the_house_has_its_row(self):
        with self.speakers(), self.program() as program:
            program.await_rows(HOME)
            for row in program.rows():
                picture, name, status, model = row["texts"]
                self.assertEqual(picture, "")
                self.assertEqual((status, model, row["picture"]), ROWS[name])
                self.assertEqual(row["parent"], -1)
            program.await_one("QLabel", text="")  # the search is over
            program.mark()

    def test_a_house_of_sixty_speakers_has_all_its_rows_and_its_group(self):
        with self.speakers("big-house"), self.program() as program:
            road.await_condition(lambda: len(program.rows()) == 61,
                                 lambda: f"60 speakers and a group; on the screen:\n{program.screen()}")
            rows = program.rows()
            group = next(at for at, row in enumerate(rows) if row["texts"][1:3] == ["Feier", "Is your Group"])
            self.assertEqual(len([row for row in rows if row["parent"] == group]), 8)
            unknown = [row["texts"][1] for row in rows if row["texts"][3] == "Unknown Speaker :-("]
            self.assertEqual(sorted(unknown), ["Garage", "Keller (alt)"])

    def test_speakers_that_fail_each_in_its_way_have_their_rows_all_the_same(self):
        with self.speakers("broken"), self.program() as program:
            program.await_rows(BROKEN)
            for row in program.rows():
                self.assertEqual(tuple(row["texts"][2:]), BROKEN[row["texts"][1]])

    def test_speakers_are_found_as_well_when_they_come_later(self):
        with self.program() as program:
            program.one("QLabel", text="<b>Searching Speakers...</b>")
            with self.speakers():
                program.await_rows(HOME)
                program.mark()
                program.press_quit()
                program.check_end()

    def test_a_speaker_that_leaves_loses_its_row_and_gets_a_new_one_when_it_is_back(self):
        with self.speakers() as speakers, self.program() as program:
            program.await_rows(HOME)
            program.mark()
            speakers.do("leave", LEFT)
            program.await_rows(set(HOME) - {LEFT})
            speakers.do("join", LEFT)
            program.await_rows(HOME)
            self.assertEqual(program.rows()[-1]["texts"], ["", LEFT, "in Zuhause", "Cadre 3.2 Air"])
            # The worker of the record that left goes on, so there is one worker more.
            program.await_mark(more_threads=1, more_descriptors=WORKER_DESCRIPTORS)
            program.mark()

    def test_what_discovery_held_for_a_speaker_goes_with_it(self):
        with self.speakers() as speakers, self.program() as program:
            program.await_rows(HOME)
            program.mark()
            speakers.do("leave", "Werkstatt")  # of unknown type: it has no worker
            program.await_rows(set(HOME) - {"Werkstatt"})
            program.await_mark(more_descriptors=-SERVICE_DESCRIPTORS)
            speakers.do("join", "Werkstatt")
            program.await_rows(HOME)


class Tab_Test(road.Road_Test):
    def test_a_click_on_a_row_opens_the_speakers_tab_once(self):
        with self.speakers(), self.program() as program:
            program.await_rows(HOME)
            program.mark()
            for name in HOME:
                program.click_row(name)
                self.assertEqual(program.current_tab(), name)
                program.click_tab(OVERVIEW)
            program.click_row(LEFT)
            self.assertEqual(program.current_tab(), LEFT)
            self.assertEqual(program.tabs(), [OVERVIEW, *HOME])

    def test_the_tab_shows_what_the_speaker_holds(self):
        with self.speakers(), self.program() as program:
            program.await_rows(HOME)
            program.mark()
            program.click_row("Küche")
            tab = program.await_one("Client_Settings_Air")
            self.assertEqual(program.one("RZSlider")["value"], 15)
            self.assertEqual([w["text"] for w in sorted(program.widgets("QComboBox", parent=tab["widget"]),
                                                        key=lambda w: w["y"])],
                             ["Automatic", "Wall", "Bass +1", "Reverb"])
            for text in ("<b>Küche</b>", "(Center.2 Air)", "SPDIF Vol:15  / 100"):
                program.one("QLabel", text=text)

    def test_the_slider_sends_the_volume(self):
        with road.Wire() as wire, self.speakers() as speakers, self.program() as program:
            program.await_rows(HOME)
            program.mark()
            program.click_row(LEFT)
            slider = program.await_one("RZSlider", value=28)
            before = wire.bytes_to(LEFT_ADDRESS, 8990)
            start = speakers.output.count()

            program.key(slider, "Tab")  # the focus goes where a user would look for it
            program.click_at(slider, {"x": slider["x"] + slider["w"] - 20, "y": slider["y"], "w": 0,
                                      "h": slider["h"]})  # far along the groove: ten up and no more
            wire.await_bytes(LEFT_ADDRESS, 8990, b"RZ!vo038\n")
            program.one("QLabel", text="SPDIF Vol: 38 / 100")
            program.key(slider, "Right")
            wire.await_bytes(LEFT_ADDRESS, 8990, b"RZ!vo039\n")

            self.assertEqual(wire.bytes_to(LEFT_ADDRESS, 8990), before + b"RZ!vo038\nRZ!vo039\n")
            speakers.await_event(LEFT, "<- RZ!vo039", start)  # the line comes behind the bytes
            self.assertEqual(speakers.received(LEFT, start), ["RZ!vo038", "RZ!vo039"])
            self.assertEqual(program.one("RZSlider")["value"], 39)


road.main()
