# SPDX-License-Identifier: MIT
"""A subwoofer's settings, from the keyboard to the value that the speaker holds."""

import road

NAME = "Sub Wohnzimmer"
SUB = road.Speaker("127.0.0.14")


class Sub_Test(road.Road_Test):
    def slider(self, program, minimum, maximum):
        return program.one("RZSlider", minimum=minimum, maximum=maximum)

    def combo(self, program, first_entry):
        return [combo for combo in program.widgets("QComboBox") if combo["entries"][0] == first_entry][0]

    def turn(self, program, widget, key, letters, value):
        """The key on the widget makes the speaker hold the value, which it did not hold before."""
        self.assertNotEqual(SUB.value(letters), value)
        program.focus(widget)
        program.key(widget, key)
        SUB.await_value(letters, value)

    def test_each_of_the_twelve_settings_changes_what_the_speaker_holds(self):
        with self.speakers() as speakers, self.program() as program:
            road.await_condition(lambda: len(program.rows()) == 6, lambda: program.screen())
            program.mark()
            program.click_row(NAME)
            program.await_one("Client_Settings_Sub")
            start = speakers.output.count()
            self.turn(program, self.combo(program, "WiFi/LAN"), "End", "ai", "L")
            self.turn(program, self.slider(program, 0, 100), "Right", "vo", "41")
            self.turn(program, self.slider(program, 30, 180), "Home", "fg", "30")
            self.turn(program, self.combo(program, "Filter Off"), "Home", "fs", "0")
            enabled = program.one("QCheckBox", text="Enabled", checked=True)
            self.turn(program, enabled, "Space", "fh", "0")
            self.turn(program, self.slider(program, 20, 40), "Right", "fh", "26")  # and on again by that
            program.one("QCheckBox", text="Enabled", checked=True)
            self.turn(program, self.slider(program, 0, 180), "End", "ph", "180")
            self.turn(program, self.combo(program, "Normal"), "End", "po", "1")
            for text in ("41 %", "30 Hz", "26 Hz", "180\u00b0"):
                program.one("QLabel", text=text)

            program.click_button("EQ")
            program.await_one("Client_Settings_Sub_EQ")
            self.assertEqual(program.current_tab(), "EQ")
            self.turn(program, self.slider(program, 20, 200), "Right", "ef", "46")
            self.turn(program, self.slider(program, -24, 6), "Home", "eg", "-24")
            self.turn(program, self.slider(program, 1, 10), "End", "eQ", "10")
            self.turn(program, program.one("QCheckBox", text="EQ active", checked=True), "Space", "eq", "0")
            for text in ("46 Hz", "-24 dB", "10"):
                program.one("QLabel", text=text)

            sent = [line for line in speakers.received(NAME, start) if line.startswith("RZ!")]
            self.assertEqual(sent, ["RZ!INL", "RZ!vo041", "RZ!fg030", "RZ!fs00", "RZ!fh00", "RZ!fh26", "RZ!fh26",
                                    "RZ!ph180", "RZ!po1", "RZ!ef046", "RZ!eg-24", "RZ!eQ10", "RZ!eq0"])
            self.assertEqual([text for text in speakers.events(NAME, start) if text.startswith("!!")], [])

    def test_the_tab_shows_what_the_speaker_holds(self):
        with self.speakers(), self.program() as program:
            road.await_condition(lambda: len(program.rows()) == 6, lambda: program.screen())
            program.mark()
            program.click_row(NAME)
            program.await_one("Client_Settings_Sub")
            for text in (f"<b>{NAME}</b> (Sub 12 Air)", "40 %", "80 Hz", "25 Hz", "90\u00b0"):
                program.one("QLabel", text=text)
            self.assertEqual([combo["text"] for combo in sorted(program.widgets("QComboBox"), key=lambda w: w["y"])],
                             ["WiFi/LAN", "24 dB/oct", "Normal"])


road.main()
