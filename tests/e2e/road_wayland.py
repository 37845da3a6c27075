# SPDX-License-Identifier: MIT
"""The program on Wayland, on a compositor that draws nowhere."""

import contextlib
import os
import pathlib
import subprocess

import road
from road import HOME

LEFT = "Wohnzimmer links"


@contextlib.contextmanager
def compositor(folder):
    """Yields what a program needs to find it."""
    runtime = pathlib.Path(folder) / "wayland"
    runtime.mkdir(mode=0o700)
    process = subprocess.Popen(
        ["weston", "--backend=headless-backend.so", "--socket=display", "--width=1600", "--height=1200", "--idle-time=0",
         "--no-config"],
        env={"PATH": os.environ["PATH"], "HOME": str(runtime), "XDG_RUNTIME_DIR": str(runtime)},
        stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        road.await_condition((runtime / "display").exists, "the compositor serves")
        yield {"QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": "display", "XDG_RUNTIME_DIR": str(runtime), "DISPLAY": None}
    finally:
        process.terminate()
        process.wait()


class Wayland_Test(road.Road_Test):
    def test_a_speaker_is_operated(self):
        with compositor(self.scratch) as environment, self.speakers(), self.program(environment=environment) as program:
            program.await_rows(HOME)
            self.assertNotIn("QXcbEventQueue", program.threads())
            program.click_row(LEFT)
            self.assertEqual(program.current_tab(), LEFT)
            slider = program.one("RZSlider")
            program.focus(slider)
            program.key(slider, "Right")
            road.Speaker("127.0.0.11").await_value("vo", "29")
            program.click_tab_at(0)
            program.click_button("Group >>")
            program.close_by_frame(program.await_one("Client_Group"))


road.main()
