# SPDX-License-Identifier: MIT
"""The window without a single speaker: how it starts, in which language, what debug mode shows, how it ends."""

import re

import road

SOURCE_TEXTS = {
    "tab": "Air Selection / Setup",
    "header": ["", "Loudspeaker / Group", "Status", "Model"],
    "buttons": ["Group >>", "Quit", "Update >>", "WiFi >>"],
    "labels": ["<b>Searching Speakers...</b>", "The Speakers and your device have to be in the same WLAN!"],
}
GERMAN_TEXTS = {
    "tab": "Air-Auswahl / Einrichtung",
    "header": ["", "Lautsprecher / Gruppe", "Status", "Modell"],
    "buttons": ["Beenden", "Gruppe >>", "Update >>", "WLAN >>"],
    "labels": ["<b>Suche Lautsprecher...</b>", "Die Lautsprecher und Ihr Gerät müssen im selben WLAN sein!"],
}


class Window_Test(road.Road_Test):
    def test_quit_ends_with_0_and_prints_nothing(self):
        with self.program() as program:
            program.mark()
            program.press_quit()
            self.assertEqual(program.await_end(), 0)
            self.assertEqual(program.errors(), "")

    def test_without_speakers_it_searches_on_and_only_quit_can_be_pressed(self):
        with self.program() as program:
            self.assertEqual(program.main_window()["text"], "VIRELOv2 App")
            self.assertEqual(program.tabs(), ["Air Selection / Setup"])
            self.assertEqual(program.rows(), [])
            self.assertEqual([w["text"] for w in program.widgets("QPushButton", enabled=True)], ["Quit"])
            program.one("QLabel", text="<b>Searching Speakers...</b>")


class Language_Test(road.Road_Test):
    def check(self, locale, texts):
        with self.program(locale=locale) as program:
            self.assertEqual(program.tabs(), [texts["tab"]])
            self.assertEqual(program.tree()["header"], texts["header"])
            self.assertEqual(sorted(w["text"] for w in program.widgets("QPushButton")), texts["buttons"])
            self.assertEqual(sorted(w["text"] for w in program.widgets("QLabel") if w["text"]), texts["labels"])

    def test_german_texts_in_germany(self):
        self.check("de_DE.UTF-8", GERMAN_TEXTS)

    def test_german_texts_in_austria(self):
        self.check("de_AT.UTF-8", GERMAN_TEXTS)

    def test_source_texts_where_there_is_no_catalogue(self):
        self.check("fr_FR.UTF-8", SOURCE_TEXTS)

    def test_source_texts_without_a_language(self):
        self.check("C", SOURCE_TEXTS)


class Debug_Test(road.Road_Test):
    # What the message handler writes: type, message, then file, line and function, which a release build leaves out.
    LINE = re.compile(r"Debug: .* \([^()]*:\d+, .*\)")

    def test_debug_mode_shows_its_tabs(self):
        with self.program(debug=True) as program:
            self.assertEqual(program.tabs(), ["Air Selection / Setup", "DEBUG", "HOOD"])
            self.assertEqual(program.current_tab(), "HOOD")

    def test_what_goes_to_standard_error_stands_in_the_console_too(self):
        with self.program(debug=True) as program:
            program.click_tab("DEBUG")
            console = program.await_one("QTextEdit")["text"]
            self.assertTrue(console.splitlines()[0].strip(), "the console is not empty")
            self.assertIn("DEBUG CONSOLE WINDOW", console)
            for message in ("VIRELO Configurator running...", "This is the first qDebug() output..."):
                self.assertIn(message, console)
                self.assertRegex(program.errors(), rf"(?m)^Debug: {re.escape(message)} \(.*:\d+, .*\)$")

    def test_the_message_handler_speaks_until_quit(self):
        with self.program(debug=True) as program:
            program.press_quit()
            program.await_end()
            lines = program.errors().splitlines()
            end = [i for i, line in enumerate(lines) if line.startswith("Debug: quitReleased ")]
            self.assertEqual(len(end), 1)
            self.assertEqual(lines[0], "Debug: true")  # said before the handler is there
            for line in lines[1:end[0] + 1]:
                self.assertRegex(line, self.LINE)
            for line in lines[end[0] + 1:]:
                self.assertNotRegex(line, self.LINE)

    def test_without_debug_mode_there_is_no_such_tab(self):
        with self.program() as program:
            self.assertEqual(program.tabs(), ["Air Selection / Setup"])
            self.assertEqual(program.errors(), "")


road.main()
