# SPDX-License-Identifier: MIT
"""Firmware for the Wi-Fi module of a speaker, fetched by the module itself from the download server."""

import road


class Update_Test(road.Road_Test):
    def test_the_module_upgrades_to_done(self):
        with self.speakers(), self.program() as program:
            road.await_condition(lambda: len(program.rows()) == 6, lambda: program.screen())
            program.click_row("Wohnzimmer links")
            program.click_tab("Air Selection / Setup")
            program.click_button("Update >>")
            dialog = program.await_one("Client_Update")
            program.one("QPushButton", text="FLASH!", enabled=False)
            program.click_button("Check", window=dialog["window"])
            program.await_one("QLineEdit", text="200000 Bytes")
            program.click_button("FLASH!", window=dialog["window"])
            program.await_one("QLabel", text="Done!")
            self.assertEqual(program.one("QProgressBar")["value"], 100)
            self.assertEqual([w["text"] for w in program.widgets("QPushButton", window=dialog["window"], enabled=True)],
                             ["<< Back"])
            program.click_button("<< Back", window=dialog["window"])


road.main()
