# SPDX-License-Identifier: MIT
"""Firmware for the Wi-Fi module of a speaker, fetched by the module itself from the maker's server."""

import road
from update_dialog import ADDRESS, FOLDER, NAME, SERVER, Update_Test, scene, speaker

FIRST_STATUS = "Click Check Button!"
POLL = '<- POST /api/v14/otaupgrade.action {"action": "querystatus"} '


class Module_Test(Update_Test):
    def start(self, dialog, size):
        dialog.check(size)
        dialog.click("FLASH!")

    def await_stuck(self, dialog, status):
        dialog.await_status(status)
        self.assertEqual(dialog.enabled_buttons(), [])

    def polls(self, speakers, name=NAME, start=0):
        return speakers.events(name, start).count(POLL)


class Done_Test(Module_Test):
    SIZE = 400000  # at the pace of a slow server some seconds, so that the progress can be seen

    def test_the_module_fetches_its_firmware_and_upgrades_to_done(self):
        with self.speakers(scene(swu_size=self.SIZE)) as speakers, road.Wire() as wire, self.program() as program:
            dialog = self.opened(program)
            program.mark()
            self.assertEqual((dialog.text("Download URL:"), dialog.size(), dialog.status(), dialog.bar()),
                             (FOLDER, "- Bytes", FIRST_STATUS, 0))
            self.assertEqual(dialog.enabled_buttons(), ["<< Back", "Check"])
            self.assertEqual(dialog.text("Speaker:"), f"<b>Cadre 3.2 Air</b> ({NAME})")
            speakers.do("download", "slow")
            self.start(dialog, self.SIZE)

            shown = []

            def done():
                shown.append(dialog.snapshot())
                return shown[-1][0] == "Done!"

            road.await_condition(done, lambda: f"it is done: {shown[-1]}")
            self.assertEqual(shown[-1], ("Done!", 100, ["<< Back"]))
            self.assertEqual([buttons for _, _, buttons in shown[:-1]], [[]] * (len(shown) - 1))
            self.assertEqual(
                list(dict.fromkeys(status for status, _, _ in shown)),
                [FIRST_STATUS, "Downloading...", "Download finished!", "Updating...!", "Checksum verification!",
                 "Done!"])
            bars = [bar for _, bar, _ in shown]
            self.assertEqual(bars, sorted(bars))
            self.assertTrue([bar for bar in bars if 0 < bar < 100], bars)

            self.assertEqual([text for text in speakers.events(SERVER) if text.startswith("<-")],
                             ["<- HEAD /current/ventaro.swu, for Mozilla/5.0",
                              "<- GET /current/ventaro.swu, for VIRELO Air module"])
            speakers.await_event(NAME, f"-- module upgrade fetches {FOLDER}ventaro.swu")
            speakers.await_event(NAME, f"-- module upgrade got all {self.SIZE} bytes")
            sent = wire.bytes_to(ADDRESS, 80)
            asked = (f'{{"action": "seturl", "otaaddress": "{FOLDER}", "filesize": "{self.SIZE}" }}').encode()
            self.assertEqual(sent.count(asked), 1)
            self.assertEqual(sent.count(b'\r\n\r\n{"action": "querystatus"} '), self.polls(speakers))
            self.no_complaints(speakers)
            dialog.click("<< Back")

    def test_what_the_url_says_when_flash_is_pressed_is_what_the_module_gets(self):
        with self.speakers(scene()) as speakers, self.program() as program:
            dialog = self.opened(program)
            dialog.check(200000)
            dialog.set_url("http://127.0.0.80/current/")
            self.assertIn("FLASH!", dialog.enabled_buttons())
            dialog.click("FLASH!")
            speakers.await_event(NAME, "-- module upgrade fetches http://127.0.0.80/current/ventaro.swu")
            dialog.await_status("Done!")
            dialog.click("<< Back")

    def test_a_dialog_that_is_closed_polls_on(self):
        with self.speakers(scene()) as speakers, self.program() as program:
            dialog = self.opened(program)
            self.start(dialog, 200000)
            dialog.await_status("Downloading...")
            dialog.close_by_frame()
            closed_at = speakers.output.count()
            speakers.output.await_line(r'-> 200 .*"status":"6"', closed_at)
            dialog.await_status("Done!")
            self.assertFalse(dialog.visible())

    def test_quit_in_the_middle_ends_with_0(self):
        with self.speakers(scene(speaker(upgrade_polls=100))), self.program() as program:
            dialog = self.opened(program)
            self.start(dialog, 200000)
            dialog.await_status("Downloading...")
            program.press_quit()
            self.assertEqual(program.await_end(), 0)
            self.assertEqual(program.errors(), "")


class Error_Test(Module_Test):
    TEXTS = {"-1": "Error: Update not running",
             "0": "Other Error :-(",
             "1": "Error: File doesnt exist",
             "2": "Error: Download Error",
             "3": "Error: Checksum Error",
             "4": "Error: Flash Error",
             "5": "Error: Update error",
             "77": "Other Error :-("}

    def check_ends_stuck(self, program, speakers, status, spoil):
        """The upgrade ends with that status and can only be closed by its frame; spoil() comes behind a good check."""
        dialog = self.opened(program)
        dialog.check(200000)
        spoil()
        dialog.click("FLASH!")
        self.await_stuck(dialog, status)
        last = self.polls(speakers)
        dialog.close_by_frame()
        return last

    def test_every_errinfo_has_its_text_and_leaves_no_button(self):
        with self.speakers(scene()) as speakers, self.program() as program:
            counts = []
            for errinfo, text in self.TEXTS.items():
                with self.subTest(errinfo):
                    start = self.polls(speakers)
                    last = self.check_ends_stuck(program, speakers, text,
                                                 lambda: speakers.do("fault", NAME, "upgrade-errinfo", errinfo))
                    counts.append(last - start)
            # An error that belongs to a late step is told there, and each is told but once: no poll followed.
            self.assertEqual(counts, [1, 1, 1, 1, 5, 4, 1, 1])
            self.assertEqual(self.polls(speakers), sum(counts))

    def test_what_goes_wrong_with_the_modules_own_download_is_shown(self):
        with self.speakers(scene()) as speakers, self.program() as program:
            for fault, text in (("not-found", "Error: File doesnt exist"), ("reset", "Error: Download Error"),
                                ("error-page", "Error: Checksum Error")):
                with self.subTest(fault):
                    self.check_ends_stuck(program, speakers, text, lambda: speakers.do("download", fault))
                    speakers.do("download", "none")

    def test_a_server_that_tells_no_length_leads_to_a_size_of_0(self):
        with self.speakers(scene(fault="no-length")) as speakers, self.program() as program:
            dialog = self.opened(program)
            self.start(dialog, 0)
            self.await_stuck(dialog, "Error: Checksum Error")
            speakers.await_event(NAME, "-- module upgrade got 200000 bytes, expected 0")
            dialog.close_by_frame()


class Stuck_Test(Module_Test):
    SPOILT = ["error-page", "empty", "empty-object", "half", "reset", "silent"]  # replies that cannot be read
    HEALTHY = "Gesund"

    def house(self, **more):
        """A speaker for each such reply, and one whose upgrade lasts until the others would have gone on."""
        spoilt = [speaker(fault, f"127.0.0.{51 + i}", 13, host_name=fault, **more)
                  for i, fault in enumerate(self.SPOILT)]
        return scene(*spoilt, speaker(self.HEALTHY, "127.0.0.50", 13, host_name="gesund"))

    def test_a_start_that_is_refused_or_not_understood_leaves_no_button_and_no_poll(self):
        with self.speakers(self.house()) as speakers, self.program() as program:
            program.await_rows([*self.SPOILT, self.HEALTHY])
            dialogs = {}
            for name in self.SPOILT:
                speakers.do("fault", name, "http-only", "seturl")
                speakers.do("fault", name, "http", name)
                dialogs[name] = self.opened(program, name)
                self.start(dialogs[name], 200000)
            dialog = self.opened(program, self.HEALTHY)
            speakers.do("fault", self.HEALTHY, "http-only", "seturl")
            speakers.do("fault", self.HEALTHY, "http-returncode", "busy")
            self.start(dialog, 200000)
            speakers.await_event(self.HEALTHY, '-> 200 {"returncode":"busy"}')
            speakers.do("fault", self.HEALTHY, "http-returncode", "-")
            dialogs["busy"] = dialog
            dialog = self.opened(program, self.HEALTHY)
            before = speakers.output.count()
            self.start(dialog, 200000)
            dialog.await_status("Done!")  # by then all others have had their time to poll
            for name, other in dialogs.items():
                with self.subTest(name):
                    self.await_stuck(other, FIRST_STATUS)
                    if name != "busy":
                        self.assertEqual(self.polls(speakers, name), 0)
            self.assertEqual(self.polls(speakers, self.HEALTHY), self.polls(speakers, self.HEALTHY, before))
            for other in dialogs.values():
                other.close_by_frame()
            dialog.click("<< Back")

    def test_a_module_that_falls_silent_or_talks_nonsense_is_polled_no_more_and_the_status_stays(self):
        with self.speakers(self.house(upgrade_polls=100)) as speakers, self.program() as program:
            program.await_rows([*self.SPOILT, self.HEALTHY])
            dialogs, spoilt_at = {}, {}
            for name in self.SPOILT:
                dialogs[name] = self.opened(program, name)
                self.start(dialogs[name], 200000)
                dialogs[name].await_status("Downloading...")
                speakers.do("fault", name, "http-only", "querystatus")
                spoilt_at[name] = speakers.output.count()
                speakers.do("fault", name, "http", name)
            dialog = self.opened(program, self.HEALTHY)
            self.start(dialog, 200000)
            dialog.await_status("Done!")
            for name, other in dialogs.items():
                with self.subTest(name):
                    self.await_stuck(other, "Downloading...")
                    last = self.polls(speakers, name, spoilt_at[name])
                    # Qt itself asks anew, at once, where the connection broke before there was an answer.
                    self.assertIn(last, (1, 2, 3) if name == "reset" else (1,))
            for other in dialogs.values():
                other.close_by_frame()
            dialog.click("<< Back")

    def test_a_status_that_is_a_number_is_none_and_is_polled_on(self):
        with self.speakers(scene()) as speakers, self.program() as program:
            dialog = self.opened(program)
            speakers.do("fault", NAME, "http-only", "querystatus")
            speakers.do("fault", NAME, "http", "wrong-types")
            self.start(dialog, 200000)
            road.await_condition(lambda: self.polls(speakers) >= 4, lambda: f"{self.polls(speakers)} polls")
            self.await_stuck(dialog, FIRST_STATUS)
            speakers.do("fault", NAME, "http", "none")
            dialog.await_status("Done!")
            dialog.click("<< Back")


road.main()
