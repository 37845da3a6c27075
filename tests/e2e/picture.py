# SPDX-License-Identifier: MIT
"""Writes a picture of the window with the six speakers of the scene "home"; for scripts/demo without a display."""

import os
import sys

import road

ROWS = 6


def main():
    target = os.path.abspath(sys.argv[1])
    with road.Speakers("home") as speakers:
        program = road.Program(os.environ["VIRELO_LAB_DIR"])
        try:
            road.await_condition(lambda: len(program.rows()) == ROWS,
                                 lambda: f"{ROWS} speakers are found; on the screen:\n{program.screen()}")
            program.picture(target)
            program.press_quit()
            program.check_end()
        except BaseException:
            print("\n".join(speakers.output.lines()))
            program.abandon()
            raise


main()
