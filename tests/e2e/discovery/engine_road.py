# SPDX-License-Identifier: MIT
"""What the road tests of discovery share: the probe, which is the engine without a window, and the announcer.

Both get their paths from the command line: PROBE ANNOUNCER [unittest arguments].
"""

import contextlib
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))
from road import PATIENCE, Avahi, Output, await_condition  # noqa: E402

PROBE = ANNOUNCER = None


class Process:
    """A program that obeys lines on its standard input."""

    def __init__(self, arguments, environment=None):
        self.errors_file = tempfile.TemporaryFile("w+")
        self.process = subprocess.Popen(arguments, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=self.errors_file,
                                        text=True, env={**os.environ, **(environment or {})})
        self.output = Output(self.process.stdout)

    def say(self, line):
        self.process.stdin.write(line + "\n")
        self.process.stdin.flush()

    def errors(self):
        self.errors_file.seek(0)
        return self.errors_file.read()

    def await_end(self):
        return self.process.wait(PATIENCE)

    def close(self):
        """Ends it the hard way, should it run still."""
        self.process.kill()
        self.process.wait()
        # What was never read on the other side cannot be flushed any more.
        with contextlib.suppress(BrokenPipeError):
            self.process.stdin.close()
        self.process.stdout.close()
        self.errors_file.close()


class Announcer(Process):
    """Announces things; see announcer.cpp. Each takes effect before the call returns."""

    def __init__(self, service_type):
        super().__init__([ANNOUNCER, service_type])
        self.last_id = 0

    def _do(self, word, *fields):
        self.last_id += 1
        self.say("\t".join([word, str(self.last_id), *map(str, fields)]))
        return str(self.last_id)

    def _await(self, identity, start=0):
        line = self.output.await_line(rf"^(done|failed) {identity}( |$)", start)
        if not line.startswith("done"):
            raise AssertionError(line)
        return identity

    def service(self, name, host="", port=8080, *txt):
        return self._await(self._do("service", name, host, port, *txt))

    def services(self, names, host=""):
        """All at once."""
        return [self._await(i) for i in [self._do("service", name, host, 8080) for name in names]]

    def address(self, host, *addresses):
        return self._await(self._do("address", host, *addresses))

    def pointer(self, name):
        return self._await(self._do("pointer", name))

    def withdraw(self, *identities):
        start = self.output.count()
        for identity in identities:
            self.say(f"withdraw\t{identity}")
        for identity in identities:
            self._await(identity, start)


class Engine(Process):
    """The engine under test; see discovery_probe.cpp."""

    def __init__(self, service_type, environment=None):
        # What the engine logs is not asked for here; whatever else reaches standard error is a defect.
        super().__init__([PROBE, service_type], {"QT_LOGGING_RULES": "default.debug=false", **(environment or {})})

    def events(self, *kinds, start=0):
        """What it reported from a line on, as dictionaries; of all kinds but answers if no kind is given."""
        answers = ("state", "started", "stopped")
        found = [json.loads(line) for line in self.output.lines(start)]
        return [e for e in found if (e["event"] in kinds if kinds else e["event"] not in answers)]

    def await_events(self, kind, count, start=0, patience=PATIENCE):
        return await_condition(lambda: (e := self.events(kind, start=start)) and len(e) >= count and e,
                               lambda: f"{count} times {kind} in:\n" + "\n".join(self.output.lines()), patience)

    def ask(self, word, answer, patience=PATIENCE):
        start = self.output.count()
        self.say(word)
        return json.loads(self.output.await_line(f'"event":"{answer}"', start, patience))

    def start(self):
        return self.ask("start", "started")

    def stop(self):
        self.ask("stop", "stopped")

    def state(self):
        return self.ask("state", "state")

    def await_state(self, what, **wanted):
        """Asks until the state has these values."""
        return await_condition(lambda: (s := self.state()) and all(s[k] == v for k, v in wanted.items()) and s,
                               lambda: f"{what}: {wanted} in {self.state()}")


class Engine_Test(unittest.TestCase):
    """Every test has a service type of its own, since the daemon remembers for a while what the test before announced.
    Every engine must end by its word with code 0 and nothing on standard error."""

    _tests = 0

    def setUp(self):
        Engine_Test._tests += 1
        self.service_type = f"_lodeset-{self._tests}._tcp"
        self.avahi = Avahi()
        if not os.path.exists(os.environ["VIRELO_LAB_AVAHI_PID"]):
            self.avahi.start()

    @contextlib.contextmanager
    def engine(self, environment=None):
        engine = Engine(self.service_type, environment)
        try:
            yield engine
            self.end(engine)
        finally:
            engine.close()

    def end(self, engine):
        engine.say("quit")
        code = engine.await_end()
        self.assertEqual(engine.errors(), "")
        self.assertEqual(code, 0)

    @contextlib.contextmanager
    def announcer(self):
        announcer = Announcer(self.service_type)
        try:
            yield announcer
        finally:
            announcer.close()

    def names(self, events):
        return sorted(e["name"] for e in events)

    def measured(self, what, value):
        """For the log: what a run saw, beside what it asserts."""
        print(f"{self.id().split('.')[-1]}: {what} {value}", flush=True)


def main():
    global PROBE, ANNOUNCER
    PROBE, ANNOUNCER = sys.argv[1:3]
    unittest.main(module="__main__", argv=sys.argv[:1] + sys.argv[3:], verbosity=2)
