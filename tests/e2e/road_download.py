# SPDX-License-Identifier: MIT
"""The maker's server as it should not be: what "Check" says of it, and what becomes of a host flashed from it."""

import road
from update_dialog import ADDRESS, HEX, NAME, SERVER, Update_Test, scene, sent_lines, served, speaker

NOT_FOUND = "Error: File could not be found!"
NO_HOST = "Error: Host not found!\nAre you in the WLAN of your VIRELO Air?"
ERROR_PAGE = b"<html><body><h1>Error</h1></body></html>\n"


class Check_Test(Update_Test):
    def check_fails(self, dialog, message):
        dialog.click("Check")
        dialog.await_box("Update", message)
        self.assertEqual(dialog.size(), "- Bytes")
        self.assertEqual(dialog.enabled_buttons(), ["<< Back", "Check"])

    def test_what_cannot_be_had_is_told_and_takes_the_last_good_check_back(self):
        with self.speakers(scene()) as speakers, self.program() as program:
            dialog = self.opened(program)
            program.mark()
            dialog.check(200000)
            speakers.do("download", "not-found")
            self.check_fails(dialog, NOT_FOUND)
            speakers.do("download", "none")
            dialog.check(200000)
            dialog.set_url("http://nobody.virelo.example/current/")
            self.assertIn("FLASH!", dialog.enabled_buttons())
            self.check_fails(dialog, NO_HOST)
            dialog.set_url("http://127.0.0.80:81/current/")
            self.check_fails(dialog, "ther Error: ")  # refused: one character is skipped for error 1
            dialog.set_url("http://127.0.0.80/current")
            self.check_fails(dialog, NOT_FOUND)  # the slash at the end is the user's to give
            self.assertEqual(speakers.events(SERVER)[-2], "<- HEAD /currentventaro.swu, for Mozilla/5.0")
            dialog.click("<< Back")

    def test_what_has_no_error_has_a_size(self):
        with self.speakers(scene()) as speakers, self.program() as program:
            dialog = self.opened(program)
            for fault, size in (("redirect", len(ERROR_PAGE)), ("no-length", 0), ("empty", 0), ("none", 200000)):
                with self.subTest(fault):
                    speakers.do("download", fault)
                    dialog.choose("WiFi")
                    self.assertNotIn("FLASH!", dialog.enabled_buttons())
                    dialog.check(size)
            self.assertFalse([text for text in speakers.events(SERVER) if "elsewhere" in text])
            dialog.click("<< Back")

    def test_each_type_asks_for_its_own_file(self):
        kinds = [(13, "vc3w"), (37, "vc3.3w"), (19, "vccw"), (18, "vs12w"), (42, "vs12.3w"), (44, "vc11.3w")]
        house = [speaker(code, f"127.0.0.{61 + i}", kind) for i, (kind, code) in enumerate(kinds)]
        with self.speakers(scene(*house, hex_lines=7)) as speakers, self.program() as program:
            program.await_rows([code for _, code in kinds])
            for _, code in kinds:
                with self.subTest(code):
                    dialog = self.opened(program, code)
                    dialog.choose("Host")
                    dialog.check(len(served(f"{code}_host.hex")))
                    speakers.await_event(SERVER, f"<- HEAD /current/{code}_host.hex, for Mozilla/5.0")
                    dialog.choose("WiFi")
                    self.assertEqual(dialog.enabled_buttons(), ["<< Back", "Check"])
                    dialog.click("<< Back")

    def test_a_speaker_of_unknown_type_asks_for_xxx_which_nobody_has(self):
        with self.speakers() as speakers, self.program() as program:
            dialog = self.opened(program, "Werkstatt")
            self.assertEqual(dialog.text("Speaker:"), "<b>Unknown Speaker :-(</b> (Werkstatt)")
            dialog.choose("Host")
            self.check_fails(dialog, NOT_FOUND)
            speakers.await_event(SERVER, "<- HEAD /current/xxx_host.hex, for Mozilla/5.0")
            dialog.click("<< Back")


class Broken_Test(Update_Test):
    """Once "Check" was good, nothing keeps what comes from the server from the host."""

    LINES = 40

    def test_what_the_server_gives_is_sent_whatever_it_is(self):
        cases = [("not-found", [ERROR_PAGE.strip() + b"\r\n"]),
                 ("empty", [b"\r\n"]),
                 ("reset", None),  # the first 500 bytes
                 ("slow", None)]
        with self.speakers(scene(hex_lines=self.LINES)) as speakers, road.Wire() as wire, self.program() as program:
            dialog = self.opened(program)
            file = served(HEX)
            for fault, expected in cases:
                with self.subTest(fault):
                    speakers.do("download", "none")
                    dialog.choose("WiFi")
                    dialog.choose("Host")
                    dialog.check(len(file))
                    speakers.do("download", fault)
                    before = speakers.output.count()
                    dialog.click("FLASH!")
                    dialog.await_completed()
                    if expected is None:
                        expected = sent_lines(file if fault == "slow" else file[:500])
                    wire.await_bytes(ADDRESS, 8990, b"RZ!FL\n" + b"".join(expected))
                    verdicts = [text for text in speakers.events(NAME, before) if text.startswith("-- flash ended")]
                    self.assertEqual(bool(verdicts), fault == "slow")
            dialog.click("<< Back")

    def test_a_server_that_never_answers_costs_nothing_but_the_update(self):
        with self.speakers(scene()) as speakers, self.program() as program:
            dialog = self.opened(program)
            dialog.choose("Host")
            dialog.check(len(served(HEX)))
            speakers.do("download", "silent")
            dialog.click("FLASH!")
            speakers.await_event(SERVER, f"<- GET /current/{HEX}, for Mozilla/5.0")
            self.assertEqual(dialog.enabled_buttons(), ["<< Back", "Check", "FLASH!"])
            before = speakers.output.count()
            dialog.click("Check")
            speakers.output.await_line(f"<- HEAD /current/{HEX}, for Mozilla/5.0$", before)
            self.assertNotIn("RZ!FL", speakers.received(NAME))
            dialog.click("<< Back")
            program.press_quit()  # with both requests open
            self.assertEqual(program.await_end(), 0)


road.main()
