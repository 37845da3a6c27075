# SPDX-License-Identifier: MIT
"""With no user and no packet the program sleeps. The time itself is what is measured here."""

import road
from road import HOME

QUIET = 15  # seconds at a stretch
PATIENCE = 4 * QUIET  # pooled threads go when they were idle for half a minute
WINDOW = 3  # seconds
QT_OWN = "Qt bearer threa"  # Qt looks for network interfaces every ten seconds, once a request was made


class Idle_Test(road.Road_Test):
    def test_with_all_speakers_found_nothing_wakes(self):
        with self.speakers(), self.program() as program:
            program.await_rows(HOME)
            program.mark()
            seen = []

            def slept_through():
                seen.append(program.wakeups(QUIET))
                return not set(seen[-1]) - {QT_OWN}

            road.await_condition(slept_through, lambda: f"all threads sleep through {QUIET} s: {seen}", PATIENCE)

    def test_while_it_searches_only_the_movie_wakes_it(self):
        with self.program() as program:
            program.mark()
            woken = program.wakeups(WINDOW)
            # This also shows that what the other test counts would be seen.
            self.assertGreater(woken["VireloApp"], WINDOW)
            self.assertLessEqual(set(woken), {"VireloApp", "QXcbEventQueue", "Thread (pooled)"})


road.main()
