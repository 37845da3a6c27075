# SPDX-License-Identifier: MIT
"""A speaker's way from its own access point into the home WLAN."""

import road

GUEST = "Gästezimmer (neu)"


class Wlan_Test(road.Road_Test):
    def choose_network(self, program, name):
        """From the overview to the settings of the network of that name."""
        program.await_rows(["Wohnzimmer links", "Wohnzimmer rechts", "Küche", "Sub Wohnzimmer", GUEST, "Werkstatt"])
        program.click_row(GUEST)
        program.click_tab("Air Selection / Setup")
        program.click_button("WiFi >>")
        scan = program.await_one("Client_WLANs")
        tree = road.await_condition(lambda: [w for w in program.widgets("QTreeWidget", window=scan["window"])
                                             if w["rows"]], "the networks are listed")[0]
        self.assertEqual([row["texts"] for row in tree["rows"]],
                         [["Zuhause", "-48 dBi"], ["Nachbarn", "-71 dBi"], ["Café am Eck", "-83 dBi"]])
        program.click_at(tree, [row for row in tree["rows"] if row["texts"][0] == name][0])
        program.click_button("Next >>", window=scan["window"])
        self.assertEqual(program.widgets("Client_WLANs"), [])
        return program.await_one("Client_Conf")

    def type_password(self, program, dialog, text):
        """Into the second of the two edits, from top to bottom, in place of what stands there."""
        edit = sorted(program.widgets("QLineEdit", window=dialog["window"]), key=lambda edit: edit["y"])[1]
        program.click(edit)
        for _ in edit["text"]:
            program.key(edit, "Backspace")
        program.type(edit, text)

    def test_a_named_network_takes_the_speaker_away_and_ends_the_program(self):
        with self.speakers() as speakers, self.program() as program:
            dialog = self.choose_network(program, "Zuhause")

            self.type_password(program, dialog, "falsch")
            program.click_button("SAVE", window=dialog["window"])
            box = program.await_one("QMessageBox")
            program.one("QLabel", window=box["window"], name="qt_msgbox_label",
                        text="Result wrong password something went wrong...")
            program.click_button("OK", window=box["window"])

            self.type_password(program, dialog, "geheim123")
            program.click_button("SAVE", window=dialog["window"])
            box = program.await_one("QMessageBox", text="Info")
            speakers.await_event(GUEST, "has left")
            program.click_button("OK", window=box["window"])
            self.assertEqual(program.await_end(), 0)


road.main()
