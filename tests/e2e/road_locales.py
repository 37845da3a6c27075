# SPDX-License-Identifier: MIT
"""The language of the started program follows the locale of who starts it, and nothing else.

The program reads the name of the locale from the environment, so a locale need not be generated on the machine, and
none is: a bare system knows only C.
"""

import road

ROW = "Wohnzimmer links"
GUEST = "Gästezimmer (neu)"

# What a language shows, by where it stands. The texts that the English catalogue shortens are why English is told from
# the source texts.
SOURCE = {
    "title": "VIRELOv2 App",
    "tab": "Air Selection / Setup",
    "header": ["", "Loudspeaker / Group", "Status", "Model"],
    "hint": "The Speakers and your device have to be in the same WLAN!",
    "buttons": {"Update >>", "Group >>", "WiFi >>", "Quit"},
    "air labels": {"Speaker:", "SPDIF Vol:", "Active Input:", "Speaker Position:", "Bass Level:", "Room Type:"},
    "air buttons": {"Beep!", "Mute", "Lock"},
    "rooms": ["Strong Reverb", "Reverb", "Normal Room", "Dampened", "Strongly Dampened"],
    "group": "VIRELO Air Group Configuration",
    "group buttons": {"Create Group", "Add to Group", "Remove from Group", "<< Back"},
    "update buttons": {"Check", "<< Back", "FLASH!"},
    "networks": "Select WLAN",
    "networks header": ["WiFi Name", "Signal"],
    "prompt": "Please select your private WLAN\n  ",
    "networks buttons": {"<< Back", "Next >>"},
    "settings": "Speaker WLAN Settings",
    "settings buttons": {"DHCP/Static", "<< Back", "SAVE"},
}
ENGLISH = {
    **SOURCE,
    "group buttons": {"Create Group", "Add to Group", "Remove from Group", "< Back"},
    "update buttons": {"Check", "< Back", "FLASH!"},
    "networks header": ["WLAN Name", "Signal"],
    "prompt": "Please select your private WLAN",
    "networks buttons": {"< Back", "Next >"},
    "settings buttons": {"DHCP/Static", "< Back", "SAVE"},
}
GERMAN = {
    "title": "VIRELOv2 App",
    "tab": "Air-Auswahl / Einrichtung",
    "header": ["", "Lautsprecher / Gruppe", "Status", "Modell"],
    "hint": "Die Lautsprecher und Ihr Gerät müssen im selben WLAN sein!",
    "buttons": {"Update >>", "Gruppe >>", "WLAN >>", "Beenden"},
    # The caption of the slider has no German text, and that is meant.
    "air labels": {"Lautsprecher:", "SPDIF Vol:", "Aktiver Eingang:", "Position:", "Basspegel:", "Raumtyp:"},
    "air buttons": {"Piep!", "Stumm", "Sperren"},
    "rooms": ["Sehr hallig", "Hallig", "Normaler Raum", "Bedämpft", "Stark bedämpft"],
    "group": "VIRELO Air – Gruppenkonfiguration",
    "group buttons": {"Gruppe erstellen", "Zur Gruppe hinzufügen", "Aus Gruppe entfernen", "<< Zurück"},
    "update buttons": {"Prüfen", "<< Zurück", "FLASHEN!"},
    "networks": "WLAN auswählen",
    "networks header": ["WLAN-Name", "Signal"],
    "prompt": "Bitte wählen Sie Ihr privates WLAN aus\n  ",
    "networks buttons": {"<< Zurück", "Weiter >>"},
    "settings": "WLAN-Einstellungen des Lautsprechers",
    "settings buttons": {"DHCP/Statisch", "<< Zurück", "OK"},
}


class Locales_Test(road.Road_Test):
    def buttons(self, program, window):
        return {button["text"] for button in program.widgets("QPushButton", window=window["window"])}

    def labels(self, program, window):
        return {label["text"] for label in program.widgets("QLabel", window=window["window"])}

    def overview(self, program, texts):
        window = program.main_window()
        self.assertEqual(window["text"], texts["title"])
        self.assertEqual(program.tabs(), [texts["tab"]])
        self.assertEqual(program.tree()["header"], texts["header"])
        self.assertIn(texts["hint"], self.labels(program, window))
        self.assertEqual(self.buttons(program, window), texts["buttons"])

    def air_tab(self, program, texts):
        program.click_row(ROW)
        window = program.main_window()
        self.assertLessEqual(texts["air labels"], self.labels(program, window))
        self.assertEqual(self.buttons(program, window), texts["air buttons"])
        self.assertIn(texts["rooms"], [combo["entries"] for combo in program.widgets("QComboBox")])
        program.click_tab(texts["tab"])

    def dialog(self, program, texts, button, kind):
        """Opened from the overview, where a row must be selected."""
        program.click_button([text for text in texts["buttons"] if text.startswith(button)][0])
        return program.await_one(kind)

    def close(self, program, dialog):
        program.click_button([text for text in self.buttons(program, dialog) if text.startswith("<")][0],
                             window=dialog["window"])
        self.assertEqual(program.widgets(dialog["class"]), [])

    def group_and_update(self, program, texts):
        dialog = self.dialog(program, texts, "Gr", "Client_Group")
        self.assertEqual(dialog["text"], texts["group"])
        self.assertEqual(self.buttons(program, dialog), texts["group buttons"])
        self.close(program, dialog)
        dialog = self.dialog(program, texts, "Update", "Client_Update")
        self.assertEqual(self.buttons(program, dialog), texts["update buttons"])
        self.close(program, dialog)

    def network(self, program, texts):
        dialog = self.dialog(program, texts, "W", "Client_WLANs")
        self.assertEqual(dialog["text"], texts["networks"])
        tree = program.one("QTreeWidget", parent=dialog["widget"])
        self.assertEqual(tree["header"], texts["networks header"])
        self.assertIn(texts["prompt"], self.labels(program, dialog))
        self.assertEqual(self.buttons(program, dialog), texts["networks buttons"])
        road.await_condition(lambda: program.one("QTreeWidget", parent=dialog["widget"])["rows"], "networks are listed")
        next_button = max(program.widgets("QPushButton", window=dialog["window"]), key=lambda button: button["x"])
        program.click(next_button)
        dialog = program.await_one("Client_Conf")
        self.assertEqual(dialog["text"], texts["settings"])
        self.assertEqual(self.buttons(program, dialog), texts["settings buttons"])
        self.close(program, dialog)

    def views_show(self, texts, locale=None, **environment):
        if locale is None:
            environment["LC_ALL"] = None
        with self.speakers(), self.program(locale=locale, environment=environment) as program:
            program.await_rows(road.HOME)
            program.mark()
            self.overview(program, texts)
            self.air_tab(program, texts)
            self.group_and_update(program, texts)
            program.click_row(GUEST)
            program.click_tab(texts["tab"])
            self.network(program, texts)

    def test_german_as_in_germany(self):
        self.views_show(GERMAN, "de_DE.UTF-8")

    def test_german_as_in_austria(self):
        self.views_show(GERMAN, "de_AT.UTF-8")

    def test_english_as_in_america(self):
        self.views_show(ENGLISH, "en_US.UTF-8")

    def test_english_as_in_britain(self):
        self.views_show(ENGLISH, "en_GB.UTF-8")

    def test_no_catalogue_for_french(self):
        self.views_show(SOURCE, "fr_FR.UTF-8")

    def test_no_catalogue_for_c(self):
        self.views_show(SOURCE, "C")

    def test_lang_counts_where_nothing_else_is_set(self):
        self.views_show(GERMAN, LANG="de_DE.UTF-8")


road.main()
