# SPDX-License-Identifier: MIT
"""Writes a picture of the window with the six speakers of the scene "home"; for scripts/demo without a display."""

import os
import sys

import road

ROWS = 6
HEADER = 30


def main():
    target = os.path.abspath(sys.argv[1])
    with road.Speakers("home") as speakers:
        program = road.Program(os.environ["VIRELO_LAB_DIR"])
        try:
            road.await_condition(lambda: len(program.rows()) == ROWS,
                                 lambda: f"{ROWS} speakers are found; on the screen:\n{program.screen()}")
            window, tree = program.main_window(), program.tree()
            all_rows = sum(row["h"] for row in tree["rows"]) + HEADER
            program.resize(window["w"], window["h"] - tree["h"] + all_rows)
            road.await_condition(lambda: program.tree()["h"] >= all_rows, "the tree shows all rows")
            program.picture(target)
            program.press_quit()
            program.check_end()
        except BaseException:
            print("\n".join(speakers.output.lines()))
            program.abandon()
            raise


main()
