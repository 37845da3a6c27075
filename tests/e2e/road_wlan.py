# SPDX-License-Identifier: MIT
"""A speaker's way from its own access point into the home WLAN."""

import road
from road import OVERVIEW

GUEST = "Gästezimmer (neu)"
NEW = "Neuer Lautsprecher"  # the only speaker of the scene "access-point"
NEW_NETWORKS = [["Zuhause", "-48 dBi"], ["Zuhause 5 GHz", "-55 dBi"], ["Nachbarn", "-71 dBi"],
                ["Café am Eck", "-83 dBi"]]
WIFI = "<- POST /api/v19/wifi.action "
FAREWELL = ("Successfully added Device to WiFi Network.\n\n Please get back to your WiFi Network and start "
            "VIRELOv2 App again!")


def silent_speaker(number):
    """One that comes later, takes every connection and never answers."""
    return {"name": f"Stumm {number}", "address": f"127.0.0.{40 + number}", "http_port": 80, "present": False,
            "faults": {"host-silent": "on", "at-silent": "on", "http": "silent"}}


def access_point(networks):
    return {"name": NEW, "address": "127.0.0.31", "http_port": 80, "type": 40, "wlan_mode": "AP",
            "ssid": "VIRELO-0031", "networks": networks}


class Wlan_Test(road.Road_Test):
    def open_list(self, program, speaker):
        """From the overview to the list of the networks that the speaker of that name sees."""
        program.click_row(speaker)
        program.click_tab(OVERVIEW)
        program.click_button("WiFi >>")
        return program.await_one("Client_WLANs")

    def choose_network(self, program, speaker, name, networks):
        """On to the settings of the network of that name."""
        scan = self.open_list(program, speaker)
        tree = road.await_condition(lambda: [w for w in program.widgets("QTreeWidget", window=scan["window"])
                                             if w["rows"]], "the networks are listed")[0]
        self.assertEqual([row["texts"] for row in tree["rows"]], networks)
        program.click_at(tree, [row for row in tree["rows"] if row["texts"][0] == name][0])
        program.click_button("Next >>", window=scan["window"])
        self.assertEqual(program.widgets("Client_WLANs"), [])
        return program.await_one("Client_Conf")

    def choose_home(self, program):
        """With the scene "access-point", to the settings of the network "Zuhause"."""
        program.await_rows([NEW])
        return self.choose_network(program, NEW, "Zuhause", NEW_NETWORKS)

    def edits(self, program, dialog):
        """From top to bottom."""
        return sorted(program.widgets("QLineEdit", window=dialog["window"]), key=lambda edit: edit["y"])

    def type_over(self, program, dialog, index, text):
        """Into one of the edits, in place of what stands there."""
        edit = self.edits(program, dialog)[index]
        program.click(edit)
        program.key(edit, "End")
        for _ in edit["text"]:
            program.key(edit, "Backspace")
        program.type(edit, text)

    def type_name(self, program, dialog, text):
        self.type_over(program, dialog, 0, text)

    def type_password(self, program, dialog, text):
        self.type_over(program, dialog, 1, text)

    def save(self, program, dialog):
        program.click_button("SAVE", window=dialog["window"])

    def answer_box(self, program, title, text):
        box = program.await_one("QMessageBox", text=title)
        program.one("QLabel", window=box["window"], name="qt_msgbox_label", text=text)
        program.click_button("OK", window=box["window"])

    def go_home(self, program, speakers, speaker=NEW):
        """Confirms that the speaker has been taken into the network, which ends the program."""
        box = program.await_one("QMessageBox", text="Info")
        speakers.await_event(speaker, "has left")
        self.assertEqual(program.widgets("Client_Conf"), [])
        program.one("QLabel", window=box["window"], name="qt_msgbox_label", text=FAREWELL)
        program.click_button("OK", window=box["window"])
        self.assertEqual(program.await_end(), 0)

    def test_a_named_network_takes_the_speaker_away_and_ends_the_program(self):
        with self.speakers() as speakers, self.program() as program:
            program.await_rows(road.HOME)
            dialog = self.choose_network(program, GUEST, "Zuhause",
                                         [["Zuhause", "-48 dBi"], ["Nachbarn", "-71 dBi"],
                                          ["Café am Eck", "-83 dBi"]])
            self.type_password(program, dialog, "falsch")
            self.save(program, dialog)
            self.answer_box(program, "Add/Static/Network", "Result wrong password something went wrong...")
            self.type_password(program, dialog, "geheim123")
            self.save(program, dialog)
            self.go_home(program, speakers, GUEST)
            self.assertIn('joins "Zuhause" by DHCP', speakers.events(GUEST))

    def test_a_static_address_goes_with_the_network(self):
        with self.speakers("access-point") as speakers, self.program() as program:
            dialog = self.choose_home(program)
            program.one("QLabel", window=dialog["window"], text="127.0.0.31")
            program.click_button("DHCP/Static", window=dialog["window"])
            address = program.await_one("Client_Conf_StatIP")
            edits = self.edits(program, address)
            self.assertEqual([edit["text"] for edit in edits], ["192.168.1.1", "", "", "", "", ""])
            self.assertEqual([edit["enabled"] for edit in edits], [False] * 6)
            program.click(program.one("QRadioButton", window=address["window"], text="Static"))
            edits = self.edits(program, address)
            self.assertEqual([edit["text"] for edit in edits],
                             ["127.0.0.31", "255.255.255.0", "127.0.0.31", "virelo.example", "8.8.8.8", "8.8.4.4"])
            self.type_over(program, address, 0, "keine Adresse")  # which nobody checks here
            self.save(program, address)
            program.one("QLabel", window=dialog["window"], text="keine Adresse (static)")

            self.type_password(program, dialog, "geheim123")
            self.save(program, dialog)
            self.answer_box(program, "Add/Static/Network", "Result error something went wrong...")

            program.click_button("DHCP/Static", window=dialog["window"])
            address = program.await_one("Client_Conf_StatIP")
            self.type_over(program, address, 0, "192.168.1.20")
            self.type_over(program, address, 2, "192.168.1.1")
            self.save(program, address)
            program.one("QLabel", window=dialog["window"], text="192.168.1.20 (static)")
            self.save(program, dialog)
            self.go_home(program, speakers)
            self.assertIn(WIFI + '{"action": "addstaticnetwork", "ssid": "Zuhause", "psk": "geheim123", '
                          '"inet": {"address": "192.168.1.20", "netmask": "255.255.255.0", '
                          '"broadcast": "192.168.1.255", "gateway": "192.168.1.1" } , '
                          '"dns": { "domains": [ "virelo.example" ], "nameservers": [ "8.8.8.8", "8.8.4.4" ] } } ',
                          speakers.events(NEW))
            self.assertIn('joins "Zuhause" at 192.168.1.20, netmask 255.255.255.0, broadcast 192.168.1.255, '
                          'gateway "192.168.1.1", domains virelo.example, name servers 8.8.8.8 8.8.4.4',
                          speakers.events(NEW))

    def test_a_new_name_goes_before_the_network_and_is_found_there(self):
        with self.speakers("access-point") as speakers:
            with self.program() as program:
                dialog = self.choose_home(program)
                self.type_name(program, dialog, "Küche")
                self.type_password(program, dialog, "geheim123")
                self.save(program, dialog)
                self.go_home(program, speakers)
            asked = [event for event in speakers.events(NEW)
                     if event.startswith("<- POST") and "info" not in event and "status" not in event]
            self.assertEqual(asked[-3:], [
                '<- POST /api/v19/device.action {"action": "setdevicename", "devicename": "Küche" }',
                WIFI + '{"action": "addnetwork", "ssid": "Zuhause", "psk": "geheim123" } ',
                WIFI + '{"action": "selectnetwork", "id": 1 }'])
            self.assertEqual([line for line in speakers.output.lines() if "  !! " in line], [])
            speakers.do("join", NEW)
            with self.program() as program:
                program.await_rows(["Küche"])
                self.assertEqual(program.row("Küche")["texts"][2], "in Zuhause")

    def test_a_quote_in_the_password_makes_the_speaker_refuse_the_body(self):
        with self.speakers("access-point") as speakers, self.program() as program:
            dialog = self.choose_home(program)
            self.type_password(program, dialog, 'geheim"123')
            self.save(program, dialog)
            self.answer_box(program, "Add/Static/Network", "Result error something went wrong...")
            self.assertTrue([event for event in speakers.events(NEW)
                             if event.startswith("!! the body is not JSON: ")])
            self.type_password(program, dialog, "geheim123")
            self.save(program, dialog)
            self.go_home(program, speakers)

    def test_a_selection_that_is_never_answered_leaves_everything_usable(self):
        with self.speakers("access-point") as speakers, self.program() as program:
            speakers.do("fault", NEW, "http-only", "selectnetwork")
            speakers.do("fault", NEW, "http", "silent")
            dialog = self.choose_home(program)
            self.type_password(program, dialog, "geheim123")
            self.save(program, dialog)
            speakers.await_event(NEW, WIFI + '{"action": "selectnetwork", "id": 1 }')

            self.assertEqual(program.widgets("QMessageBox"), [])
            self.type_name(program, dialog, "Bad")
            self.assertEqual(self.edits(program, dialog)[0]["text"], "Bad")
            self.save(program, dialog)  # a second chain beside the first
            speakers.await_event(NEW, WIFI + '{"action": "selectnetwork", "id": 2 }')
            self.assertEqual(self.open_list(program, NEW)["visible"], True)
            program.one("Client_Conf")
            program.press_quit()
            self.assertEqual(program.await_end(), 0)

    def test_records_that_are_still_identified_do_not_hold_the_end_up(self):
        silent = [silent_speaker(number) for number in range(1, 5)]
        scene = {"speakers": [access_point([{"ssid": "Zuhause"}]), *silent]}
        with self.speakers(scene) as speakers, self.program() as program:
            program.await_rows([NEW])
            dialog = self.choose_network(program, NEW, "Zuhause", [["Zuhause", "-60 dBi"]])
            for speaker in silent:
                speakers.do("join", speaker["name"])
                speakers.await_event(speaker["name"], "<- RZ?STm")
            program.one("QLabel", text="<b>Speakers Found: 5...</b>")
            self.save(program, dialog)
            self.go_home(program, speakers)

    def test_a_speaker_that_sees_no_network_is_told(self):
        with self.speakers({"speakers": [access_point([])]}), self.program() as program:
            program.await_rows([NEW])
            scan = self.open_list(program, NEW)
            self.answer_box(program, "Info", "No Speakers found")
            program.one("QPushButton", window=scan["window"], text="Next >>", enabled=False)
            program.click_button("<< Back", window=scan["window"])
            self.assertEqual(program.widgets("Client_WLANs"), [])


road.main()
