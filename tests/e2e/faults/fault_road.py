# SPDX-License-Identifier: MIT
"""What the fault tests share: a program that is watched while its surroundings fail.

Beside what every road test asserts of a program (see road.py), its window must answer all the while: a timer of 50 ms
of its GUI thread is never late by more than LATE_MS, whatever the speakers, the network and the daemon do. Where the
program means to hold its window up, a test says so with held_up().

The time for which the GUI thread waits for a processor is left out. On a machine with more work than processors the
program's other threads wait too, and the GUI thread now and then for one of them: there it may be late by as much more, up
to twice the time.
"""

import contextlib
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
import road  # noqa: E402

LATE_MS = 250  # what a user does not yet take for a window that hangs

# A worker is a thread with an event descriptor and the two sockets of its link.
WORKER_THREADS = 1
WORKER_DESCRIPTORS = 3
# A link that could not be opened again is dead, and its socket closed.
DEAD_LINK_DESCRIPTORS = -1
# What discovery keeps open for each service: one descriptor to resolve it, one for its address.
SERVICE_DESCRIPTORS = 2
# What Qt has from the first request on: a thread that looks for networks with an event descriptor, and its connection to
# the bus, on which it does so.
NETWORK_THREADS = 1
NETWORK_DESCRIPTORS = 2


def speaker(number, name=None, kind=13, **more):
    """One of a scene, with an address that its number gives."""
    address = f"127.0.{2 + number // 200}.{1 + number % 200}"
    return {"name": name or f"Speaker {number:02}", "address": address, "http_port": 80, "type": kind, **more}


def memory(program, what="VmRSS"):
    """Of the program, in MB: what it has ("VmRSS"), or the most that it ever had ("VmHWM")."""
    status = pathlib.Path(f"/proc/{program.process.pid}/status").read_text(encoding="ascii")
    return int(re.search(rf"^{what}:\s*(\d+) kB", status, re.M)[1]) / 1024


class Fault_Test(road.Road_Test):
    @contextlib.contextmanager
    def watched(self, **options):
        """A program whose window must answer from here to its end, or the end of the block."""
        with self.program(**options) as program:
            program.probe.ask("watch")
            yield program
            if program.process.poll() is None:
                self.answers(program)

    def took_less(self, program, most, why):
        """The program never had more than that, in MB. Of one with the address sanitizer that says nothing: it holds on to
        what was freed, so as to see whether that is used again."""
        if not program.has_address_sanitizer():
            self.assertLess(memory(program, "VmHWM"), most, why)

    def answers(self, program):
        """The window answers, and did all the time since the last look."""
        self.assertLess(program.probe.ask("lateness")["worst"], LATE_MS * road.overload())

    @contextlib.contextmanager
    def held_up(self, program):
        """Within, the program may hold its window up as it likes."""
        self.answers(program)
        yield
        program.probe.ask("lateness")
