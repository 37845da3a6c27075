# SPDX-License-Identifier: MIT
"""The window at the scale factors that people have: nothing is lost, and all of it works as without."""

import struct

import road
from road import HOME

LEFT, SUB = "Wohnzimmer links", "Sub Wohnzimmer"


def picture_size(path):
    return struct.unpack(">II", path.read_bytes()[16:24])


class Scales_Test(road.Road_Test):
    def check_all_inside(self, program):
        """Every control in sight lies within the window; a bar of tabs and a list may have more than they show."""
        window = program.main_window()
        controls = [w for kind in ("QAbstractButton", "QAbstractSlider", "QComboBox", "QTreeWidget", "QLabel")
                    for w in program.widgets(kind, window=window["window"])]
        self.assertGreater(len(controls), 5)
        for w in controls:
            inside = (window["x"] <= w["x"] and w["x"] + w["w"] <= window["x"] + window["w"] and
                      window["y"] <= w["y"] and w["y"] + w["h"] <= window["y"] + window["h"])
            self.assertTrue(inside, f"{w} is not within {window}")

    def check(self, scale):
        with self.program(screen="1600x1400", environment={"QT_SCALE_FACTOR": str(scale)}) as program:
            program.await_rows(HOME)
            program.mark()
            window = program.main_window()
            self.assertEqual((window["w"], window["h"]), (726, 660))
            picture = program.scratch / "picture.png"
            program.picture(picture)
            self.assertEqual(picture_size(picture), (726 * scale, 660 * scale))

            for name in (LEFT, SUB):
                program.click_tab_at(0)
                self.check_all_inside(program)
                program.click_row(name)
                self.assertEqual(program.current_tab(), name)
                self.check_all_inside(program)

    def test_at_every_scale_factor(self):
        with self.speakers():
            for scale in (1, 1.5, 2):
                with self.subTest(scale=scale):
                    self.check(scale)


road.main()
