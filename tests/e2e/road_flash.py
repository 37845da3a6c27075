# SPDX-License-Identifier: MIT
"""Firmware for the host of a speaker, which the program downloads and sends it line by line."""

import contextlib

import road
from update_dialog import ADDRESS, HEX, NAME, Update_Test, scene, seconds, sent_lines, served, speaker

HOST_PORT = 8990
ENTERS_FLASH_MODE = 5  # seconds that the host is given, while the window stands still


class Flash_Test(Update_Test):
    def flashed(self, wire, address=ADDRESS):
        """The bytes that reached the host behind the command that brings it into flash mode."""
        return wire.bytes_to(address, HOST_PORT).rpartition(b"RZ!FL\n")[2]

    def await_flashed(self, wire, content, address=ADDRESS):
        expected = b"".join(sent_lines(content))
        road.await_condition(lambda: self.flashed(wire, address) == expected,
                             lambda: f"the host got {expected[-200:]!r}, not {self.flashed(wire, address)[-200:]!r}")


class Whole_Test(Flash_Test):
    LINES = 2000

    def test_a_host_image_of_2000_lines_arrives_line_for_line(self):
        with self.speakers(scene(hex_lines=self.LINES)) as speakers, road.Wire() as wire, self.program() as program:
            dialog = self.opened(program)
            program.probe.ask("watch")
            program.mark()
            file = served(HEX)
            dialog.start_host(len(file))
            flash_mode = speakers.output.await_line(r"  <- RZ!FL$")
            first = speakers.output.await_line(r"  <- :")
            self.assertGreaterEqual(seconds(first) - seconds(flash_mode), ENTERS_FLASH_MODE)
            self.assertGreater(program.probe.ask("lateness")["worst"], ENTERS_FLASH_MODE * 900)

            lines = sent_lines(file)
            self.assertEqual(len(lines), self.LINES)
            seen = [dialog.bar()]
            for percent in range(10, 100, 10):
                line = lines[self.LINES * percent // 100].decode().strip()
                speakers.output.await_line(f"  <- {line}$")
                seen.append(dialog.bar())
                self.assertGreaterEqual(seen[-1], percent - 1)
                self.assertEqual(dialog.status(), "Downloading...")
                self.assertEqual(dialog.enabled_buttons(), ["<< Back", "Check", "FLASH!"])
                wire.bytes_to(ADDRESS, HOST_PORT)  # before its buffer overflows
            self.assertEqual(seen, sorted(seen))
            self.assertLess(seen[1], 20)

            dialog.await_completed()
            # Nothing but the short waits for the host held the window up.
            self.assertLess(program.probe.ask("lateness")["worst"], 2000)
            self.assertEqual(dialog.bar(), 100)
            self.assertEqual(dialog.status(), "Downloading...")
            self.await_flashed(wire, file)
            self.assertEqual((program.scratch / "host.hex").read_bytes(), file)
            speakers.await_event(
                NAME, f"-- flash ended: {self.LINES} lines, 0 bad, {16 * (self.LINES - 1)} bytes: the image is whole")
            self.no_complaints(speakers)
            dialog.click("<< Back")
            # The speaker's worker, with its thread and that one's event descriptor, does not come back.
            program.await_mark(more_threads=-1, more_descriptors=-1)
            program.unmark()


class Files_Test(Flash_Test):
    RECORDS = [b":0100000041BE", b":0100010042BC", b":0100020043BA", b":00000001FF"]
    # name, address, type and file of each speaker, and what its host says of the image
    CASES = [
        ("Zeilen", "127.0.0.41", 13, "vc3w", b"\n".join(RECORDS[:2] + [b""] + RECORDS[2:]),  # no end of the last line
         "-- flash ended: 5 lines, 1 bad, 3 bytes: the image is not whole"),
        ("Zeilenpaare", "127.0.0.42", 14, "vc5w", b"\r\n".join(RECORDS) + b"\r\n",
         "-- flash ended: 4 lines, 0 bad, 3 bytes: the image is whole"),
        ("Eine", "127.0.0.43", 15, "vc7w", RECORDS[-1] + b"\n",
         "-- flash ended: 1 lines, 0 bad, 0 bytes: the image is whole"),
        ("Leer", "127.0.0.44", 16, "vc8w", b"", None),
    ]

    def test_every_line_goes_out_with_the_same_end_whatever_it_had(self):
        speakers = [speaker(name, address, kind) for name, address, kind, *_ in self.CASES]
        files = {f"{code}_host.hex": content.decode() for _, _, _, code, content, _ in self.CASES}
        with self.speakers(scene(*speakers, files=files)) as house, road.Wire() as wire, self.program() as program:
            program.await_rows([name for name, *_ in self.CASES])
            for name, address, _, _, content, verdict in self.CASES:
                with self.subTest(name):
                    dialog = self.opened(program, name)
                    dialog.start_host(len(content))
                    dialog.await_completed()
                    self.assertEqual(dialog.bar(), 100)
                    self.await_flashed(wire, content, address)
                    if verdict:
                        house.await_event(name, verdict)
                    dialog.click("<< Back")


class Between_Lines_Test(Flash_Test):
    LINES = 45

    @contextlib.contextmanager
    def flashing(self, pace):
        """While lines go out, each after so many milliseconds, which leaves time to look on."""
        with self.speakers(scene(speaker(flash_answer_ms=pace), hex_lines=self.LINES)) as speakers, \
                self.program() as program:
            dialog = self.opened(program)
            dialog.start_host(len(served(HEX)))
            speakers.output.await_line(r"  <- :")
            yield program, speakers, dialog

    def sent(self, speakers):
        return len([text for text in speakers.events(NAME) if text.startswith("<- :")])

    def await_whole(self, speakers):
        speakers.await_event(
            NAME, f"-- flash ended: {self.LINES} lines, 0 bad, {16 * (self.LINES - 1)} bytes: the image is whole")
        self.no_complaints(speakers)

    def test_the_window_answers_between_two_lines(self):
        with self.flashing(200) as (program, speakers, dialog):
            program.probe.ask("watch")
            bars = []
            for wanted in range(1, 5):
                road.await_condition(lambda: bars.append(dialog.bar()) or len(set(bars)) > wanted, lambda: f"{bars}")
            self.assertEqual(bars, sorted(bars))
            program.click_row(NAME)
            program.await_one("Client_Settings_Air")
            program.click_tab(road.OVERVIEW)
            self.assertLess(self.sent(speakers), self.LINES, "that took place meanwhile")
            worst = program.probe.ask("lateness")["worst"]
            self.assertGreater(worst, 100)  # the waits for the host hold it up
            self.assertLess(worst, 2000)
            dialog.await_completed()
            self.await_whole(speakers)
            dialog.click("<< Back")

    def test_a_dialog_that_is_closed_flashes_on(self):
        with self.flashing(50) as (program, speakers, dialog):
            dialog.click("<< Back")
            road.await_condition(lambda: not dialog.visible(), "the dialog is gone")
            self.assertLess(self.sent(speakers), self.LINES)
            dialog.await_completed()
            self.await_whole(speakers)
            self.assertFalse(dialog.visible())

    def test_a_second_press_in_between_changes_nothing_and_one_behind_flashes_again(self):
        with self.flashing(50) as (program, speakers, dialog):
            dialog.click("FLASH!")
            dialog.await_completed()
            self.await_whole(speakers)
            self.assertEqual(speakers.received(NAME).count("RZ!FL"), 1)
            second = speakers.output.count()
            dialog.click("FLASH!")
            dialog.await_completed()
            self.assertEqual(speakers.received(NAME, second), ["RZ!FL"])
            speakers.output.await_line("-- flash ended: .*: the image is whole", second)
            dialog.click("<< Back")


class Ends_Test(Flash_Test):
    LINES = 60
    END_MISSING = "the image is not whole, its end is missing"

    def test_a_link_that_is_cut_in_the_middle_changes_nothing_but_the_image(self):
        cases = [("In Ordnung", "127.0.0.41", 13, HEX, "fin"), ("Hart", "127.0.0.42", 14, "vc5w_host.hex", "rst")]
        speakers = [speaker(name, address, kind, flash_answer_ms=50) for name, address, kind, *_ in cases]
        with self.speakers(scene(*speakers, hex_lines=self.LINES)) as house, self.program() as program:
            program.await_rows([name for name, *_ in cases])
            for name, _, _, file, how in cases:
                with self.subTest(name):
                    dialog = self.opened(program, name)
                    lines = sent_lines(served(file))
                    dialog.start_host(len(served(file)))
                    house.output.await_line(f"  <- {lines[10].decode().strip()}$")
                    house.do("cut", name, how)
                    house.output.await_line(f"-- flash still open: [0-9]+ lines, 0 bad, .*: {self.END_MISSING}$")
                    dialog.await_completed()  # with the other lines sent to nobody
                    self.assertEqual(dialog.bar(), 100)
                    arrived = [text for text in house.events(name) if text.startswith("<- :")]
                    self.assertEqual(arrived, ["<- " + line.decode().strip() for line in lines[:len(arrived)]])
                    self.assertLess(len(arrived), self.LINES)
                    dialog.click("<< Back")

    def test_a_speaker_that_goes_in_the_middle_does_not_hold_the_program_up(self):
        with self.speakers(scene(speaker(flash_answer_ms=20), hex_lines=self.LINES)) as house, \
                self.program() as program:
            dialog = self.opened(program)
            dialog.start_host(len(served(HEX)))
            house.output.await_line(r"  <- :")
            house.do("leave", NAME)
            dialog.await_completed()
            dialog.click("<< Back")
            program.await_rows([])

    def test_quit_in_the_middle_ends_with_0(self):
        with self.speakers(scene(speaker(flash_answer_ms=100), hex_lines=self.LINES)) as house, \
                self.program() as program:
            dialog = self.opened(program)
            dialog.start_host(len(served(HEX)))
            house.output.await_line(r"  <- :")
            program.press_quit()
            self.assertEqual(program.await_end(), 0)
            self.assertEqual(program.errors(), "")
            house.output.await_line(f"-- flash still open: .*: {self.END_MISSING}$")

    def test_quit_while_the_host_enters_flash_mode_ends_with_0(self):
        with self.speakers(scene(hex_lines=self.LINES)) as house, self.program() as program:
            dialog = self.opened(program)
            quit_button = program.one("RZPushButton")
            dialog.start_host(len(served(HEX)))
            house.output.await_line(r"  <- RZ!FL$")
            program.click(quit_button)  # the window takes it once it answers again
            self.assertEqual(program.await_end(), 0)
            self.assertEqual(program.errors(), "")
            self.assertNotIn("-- flash ended", "".join(house.events(NAME)))


class Silent_Host_Test(Flash_Test):
    LINES = 3

    def test_a_silent_host_gets_every_line_at_5_seconds_a_line(self):
        with self.speakers(scene(speaker(flash_answer_ms=-1), hex_lines=self.LINES)) as house, road.Wire() as wire, \
                self.program() as program:
            dialog = self.opened(program)
            file = served(HEX)
            dialog.start_host(len(file))
            dialog.await_completed(patience=2 * road.PATIENCE)
            self.await_flashed(wire, file)
            times = [seconds(line) for line in house.output.lines() if "  <- :" in line]
            self.assertEqual(len(times), self.LINES)
            for before, behind in zip(times, times[1:]):
                self.assertGreaterEqual(behind - before, 5)
            house.output.await_line("-- flash ended: 3 lines, 0 bad, 32 bytes: the image is whole$")
            dialog.click("<< Back")


road.main()
