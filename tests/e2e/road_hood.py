# SPDX-License-Identifier: MIT
"""The service tab: opened by holding Quit, it sets a speaker's delay and turns debug mode on for the next start."""

import road
from road import OVERVIEW

LEFT = "Wohnzimmer links"


class Hood_Test(road.Road_Test):
    def hold_quit(self, program):
        """Until one more tab is there; the button then comes up, and nothing ends."""
        tabs = program.tabs()
        if program.current_tab() != OVERVIEW:
            program.click_tab(OVERVIEW)
        button = program.one("RZPushButton")
        program.press(button)
        road.await_condition(lambda: program.tabs() == [*tabs, "HOOD"], lambda: program.screen())
        program.release(program.main_window())
        self.assertEqual(program.current_tab(), "HOOD")

    def test_each_hold_opens_one_more_tab_and_ends_nothing(self):
        with self.program() as program:
            program.mark()
            self.hold_quit(program)
            self.hold_quit(program)
            self.assertEqual(program.tabs(), [OVERVIEW, "HOOD", "HOOD"])
            program.one("QLabel", text="no speaker selected")

    def test_the_delay_goes_to_the_selected_speaker(self):
        with self.speakers(), self.program() as program:
            road.await_condition(lambda: len(program.rows()) == 6, lambda: program.screen())
            program.mark()
            program.click_row(LEFT)
            self.hold_quit(program)
            program.one("QLabel", text=f"<b>{LEFT}</b> (Cadre 3.2 Air)")
            program.one("QLabel", text="0 / 185 msec (125msec)")
            slider = program.one("RZSlider", maximum=185)
            program.focus(slider)
            program.key(slider, "End")
            road.Speaker("127.0.0.11").await_value("td", "185")
            program.one("QLabel", text="185 / 185 msec")

    def test_debug_mode_survives_a_restart_and_can_be_turned_off_again(self):
        with self.program() as program:
            home = program.home
            self.hold_quit(program)
            program.click(program.one("QPushButton", text="DEBUG", checked=False))
            program.await_one("QLabel", text="Debug On")
            self.assertEqual(program.tabs(), [OVERVIEW, "HOOD"])  # not before the next start
        self.assertEqual(program.errors(), "")
        with self.program(debug=True, home=home) as program:
            self.assertEqual(program.tabs(), [OVERVIEW, "DEBUG", "HOOD"])
            self.assertEqual(program.current_tab(), "HOOD")
            program.click(program.one("QPushButton", text="DEBUG", checked=True))
            program.await_one("QLabel", text="Debug Off")
        self.assertNotEqual(program.errors(), "")
        with self.program(home=home) as program:
            self.assertEqual(program.tabs(), [OVERVIEW])


road.main()
