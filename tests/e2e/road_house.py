# SPDX-License-Identifier: MIT
"""Many speakers at once: everybody appears, nobody is lost, and the end is not held up by them."""

import collections
import resource
import time

import road

COUNT = 250
TYPES = [13, 14, 15, 16, 17, 18, 37, 38, 39, 40, 41, 42, 43, 99]
SUB, UNKNOWN = 18, 99
NAMES = [f"Speaker {number:03}" for number in range(1, COUNT + 1)]
USUAL_DESCRIPTORS = 1024
END = 1  # seconds


def type_of(number):
    return TYPES[number % len(TYPES)]


def house():
    """Each answers everything after 20 ms, as a speaker on a WLAN does."""
    return {"speakers": [
        {"name": name, "address": f"127.3.0.{number + 1}", "type": type_of(number), "ssid": "Haus",
         "faults": {"host-slow": "20", "http-slow": "20"}} for number, name in enumerate(NAMES)]}


class House_Test(road.Road_Test):
    def setUp(self):
        super().setUp()
        # What a desktop gives a process that does not ask for more.
        hard = resource.getrlimit(resource.RLIMIT_NOFILE)[1]
        resource.setrlimit(resource.RLIMIT_NOFILE, (min(USUAL_DESCRIPTORS, hard), hard))

    def await_workers(self, program):
        kinds = [type_of(number) for number in range(COUNT)]
        wanted = {"Virelo_Sub": kinds.count(SUB), "Virelo_Air": COUNT - kinds.count(SUB) - kinds.count(UNKNOWN)}

        def workers():
            threads = collections.Counter(program.threads())
            return {kind: threads[kind] for kind in wanted}

        road.await_condition(lambda: workers() == wanted, lambda: f"the workers {workers()} are {wanted}")

    def test_everybody_appears_and_the_program_ends_at_once(self):
        with self.speakers(house()), self.program() as program:
            program.await_rows(NAMES)
            self.await_workers(program)
            for row in program.rows():
                self.assertEqual(row["texts"][2], "in Haus", row)  # no row ahead of its replies
            program.click_row(program.rows()[0]["texts"][1])
            self.assertEqual(len(program.tabs()), 2)
            program.click_tab(road.OVERVIEW)
            program.mark()
            sanitized = program.has_address_sanitizer()
            begin = time.monotonic()
            program.press_quit()
            program.await_end()
            taken = time.monotonic() - begin
            print(f"the end took {taken:.2f} s", flush=True)
            # With the sanitizer a search for leaks goes with the end.
            self.assertLess(taken, END * road.MOST_OVERLOAD if sanitized else END)

    def test_who_leaves_and_comes_back_loses_nobody_else(self):
        with self.speakers(house()) as speakers, self.program() as program:
            program.await_rows(NAMES)
            gone = NAMES[::25]
            for name in gone:
                speakers.do("leave", name)
            program.await_rows([name for name in NAMES if name not in gone])
            for name in gone:
                speakers.do("join", name)
            program.await_rows(NAMES)


road.main()
