# SPDX-License-Identifier: MIT
"""Harness of the road tests: the built program, as it ships, in the lab, with real speakers' counterparts.

A test derives from Road_Test and runs inside scripts/lab, which ctest sees to:

    class Some_Test(Road_Test):
        def test_something_holds(self):
            with self.speakers("scene.json") as speakers, self.program() as program:
                program.await_rows(6)
                ...

Whatever else it is about, a program that a `with` block leaves must have ended by Quit with exit code 0 and no word on
standard output or standard error, and must have had as many threads and descriptors as at its last mark().
"""

import collections
import contextlib
import json
import os
import pathlib
import random
import re
import resource
import socket
import subprocess
import tempfile
import time
import unittest

# Tests take these from here, with the rest of the harness.
from surroundings import (  # noqa: F401
    PATIENCE, Avahi, Black_Hole, Bus, Output, Speaker, Speakers, Wire, await_condition)

SUPPRESSIONS = pathlib.Path(__file__).resolve().parent.parent / "lsan.supp"  # leaks that are meant
OVERVIEW = "Air Selection / Setup"  # the first tab, without a catalogue
HOME = ["Wohnzimmer links", "Wohnzimmer rechts", "Küche", "Sub Wohnzimmer", "Gästezimmer (neu)", "Werkstatt"]  # the scene


MOST_OVERLOAD = 2  # a limit that grew with any load would let everything pass on a busy machine


def overload():
    """How much longer something may take, since the machine has more work than processors."""
    return min(MOST_OVERLOAD, max(1, os.getloadavg()[0] / os.cpu_count()))


class Display:
    """One X server a screen size for all tests of a process. It is reached through the lab's own network alone, so that
    labs side by side do not meet; only its number is chosen at random, since servers compile their keymaps into files
    named by it."""

    _running = {}

    @classmethod
    def name(cls, size):
        if size not in cls._running:
            cls._running[size] = cls(size)
        return cls._running[size].display

    @classmethod
    def end(cls):
        while cls._running:
            _, display = cls._running.popitem()
            display.process.terminate()
            display.process.wait()

    def __init__(self, size):
        self.display = f":{random.SystemRandom().randrange(1000, 50000)}"
        ready, done = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", self.display, "-displayfd", str(done), "-nolock", "-nolisten", "unix", "-nolisten", "tcp",
             "-screen", "0", f"{size}x24"],
            pass_fds=[done], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(done)
        with os.fdopen(ready) as pipe:
            if not pipe.readline():
                raise AssertionError("Xvfb does not start")


class Probe:
    """The other end of the probe inside the program; see tests/e2e/probe/probe_server.h."""

    def __init__(self, path, process):
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.settimeout(PATIENCE)

        def connected():
            if process.poll() is not None:
                raise AssertionError(f"the program ended with {process.returncode} before its window answered")
            try:
                self._socket.connect(str(path))
                return True
            except OSError:
                return False

        await_condition(connected, "the program's window answers")
        self._file = self._socket.makefile("rw", encoding="utf-8")

    def ask(self, what, **arguments):
        try:
            self._file.write(json.dumps({"do": what, **arguments}) + "\n")
            self._file.flush()
            line = self._file.readline()
        except TimeoutError:
            raise AssertionError(f"the window has not answered for {PATIENCE} s") from None
        if not line:
            raise AssertionError("the program closed the probe")
        answer = json.loads(line)
        if not answer["ok"]:
            raise AssertionError(f"{what} {arguments}: {answer['error']}")
        return answer

    def close(self):
        self._file.close()
        self._socket.close()


class Program:
    """The running program. What a user could see is read, and what he could do is done, through the probe."""

    def __init__(self, scratch, locale="C.UTF-8", debug=False, home=None, screen="1280x1024", app=None, environment=None):
        """`home` is that of an earlier program, with what it stored; `debug` must then be as it was left there. `app` is
        the file to run where it is not the one that is tested. `environment` goes over what is set here; None takes a
        variable away."""
        self.scratch = pathlib.Path(tempfile.mkdtemp(dir=scratch))
        self.home = home or self.scratch / "home"
        self.home.mkdir(exist_ok=True)
        self.settings_file = self.home / ".config" / "VIRELO" / "VireloApp.conf"
        if debug and not home:
            self.settings_file.parent.mkdir(parents=True)
            self.settings_file.write_text("[General]\ndebug=true\n", encoding="utf-8")
        self.may_write_errors = debug
        probe_path = self.scratch / "probe"
        environment = {
            "PATH": os.environ["PATH"],
            "HOME": str(self.home),
            "LC_ALL": locale,
            "DISPLAY": Display.name(screen),
            "XDG_RUNTIME_DIR": os.environ["XDG_RUNTIME_DIR"],
            "TMPDIR": str(self.scratch),
            "DBUS_SYSTEM_BUS_ADDRESS": os.environ["DBUS_SYSTEM_BUS_ADDRESS"],
            "QT_PLUGIN_PATH": os.environ["VIRELO_PROBE_PLUGINS"],
            "QT_QPA_GENERIC_PLUGINS": "virelo_probe",
            "VIRELO_PROBE_SOCKET": str(probe_path),
            "ASAN_OPTIONS": os.environ.get("ASAN_OPTIONS", "intercept_tls_get_addr=0"),
            "LSAN_OPTIONS": f"suppressions='{SUPPRESSIONS}':print_suppressions=0",
            "UBSAN_OPTIONS": "print_stacktrace=1",
            "TSAN_OPTIONS": os.environ.get("TSAN_OPTIONS", ""),
            **(environment or {}),
        }
        environment = {name: value for name, value in environment.items() if value is not None}
        self._marked = None
        self.probe = None
        with open(self.scratch / "out", "wb") as out, open(self.scratch / "err", "wb") as err:
            self.process = subprocess.Popen([app or os.environ["VIRELO_APP"]], env=environment, stdin=subprocess.DEVNULL,
                                            stdout=out, stderr=err, preexec_fn=self._as_in_a_session)
        try:
            self.probe = Probe(probe_path, self.process)
        except BaseException:
            self.abandon()
            raise

    @staticmethod
    def _as_in_a_session():
        """No more descriptors than a desktop session gives a program."""
        _, most = resource.getrlimit(resource.RLIMIT_NOFILE)
        resource.setrlimit(resource.RLIMIT_NOFILE, (1024, most))

    # What can be seen

    def widgets(self, kind=None, visible=True, **wanted):
        """All widgets of that class (or derived from it) whose fields are as wanted; hidden ones only if asked for."""
        # The program chooses by class and sight: closed dialogs stay, and to tell of them all takes it ever longer.
        return [w for w in self.probe.ask("widgets", kind=kind or "QWidget", hidden=not visible)["widgets"]
                if all(w.get(field) == value for field, value in wanted.items())]

    def one(self, kind=None, **wanted):
        found = self.widgets(kind, **wanted)
        if len(found) != 1:
            raise AssertionError(f"{len(found)} widgets are {kind} {wanted}; on the screen:\n{self.screen()}")
        return found[0]

    def await_one(self, kind=None, **wanted):
        return await_condition(lambda: self.widgets(kind, **wanted),
                               lambda: f"there is a {kind} {wanted}; on the screen:\n{self.screen()}")[0]

    def screen(self):
        """All that is visible, as text, for messages."""
        return "\n".join(f"  {w['class']} {w.get('text', '')!r}" + "".join(f"\n    {r['texts']}" for r in w.get("rows", []))
                         for w in self.widgets())

    def main_window(self):
        return self.one("Client")

    def tree(self):
        overview = self.one("Client_Overview", visible=False)
        return self.one("QTreeWidget", visible=False, parent=overview["widget"])

    def rows(self):
        return self.tree()["rows"]

    def row(self, name):
        found = [row for row in self.rows() if row["texts"][1] == name]
        if len(found) != 1:
            raise AssertionError(f"{len(found)} rows are named {name!r}; on the screen:\n{self.screen()}")
        return found[0]

    def await_rows(self, names):
        """Until the tree has exactly rows of these names, in any order."""
        await_condition(lambda: sorted(row["texts"][1] for row in self.rows()) == sorted(names),
                        lambda: f"the rows are {sorted(names)}; on the screen:\n{self.screen()}")

    def tab_widget(self):
        return self.one("QTabWidget", parent=self.main_window()["widget"])

    def tabs(self):
        return [tab["title"] for tab in self.tab_widget()["tabs"]]

    def current_tab(self):
        widget = self.tab_widget()
        return widget["tabs"][widget["current"]]["title"]

    # What can be done

    def click(self, widget):
        self.probe.ask("click", widget=widget["widget"])

    def click_at(self, widget, part):
        """In the middle of a part of the widget: a row, a tab."""
        self.probe.ask("click", widget=widget["widget"], x=part["x"] + part["w"] // 2, y=part["y"] + part["h"] // 2)

    def click_button(self, text, **wanted):
        self.click(self.one("QPushButton", text=text, **wanted))

    def resize(self, width, height):
        self.probe.ask("resize", widget=self.main_window()["widget"], w=width, h=height)

    def picture(self, path):
        self.probe.ask("grab", widget=self.main_window()["widget"], file=str(path))

    def scroll_to_row(self, name):
        """By clicks beside the handle of the scroll bar, as long as the row's middle is out of sight."""
        for _ in range(50):
            tree, row = self.tree(), self.row(name)
            view = self.one("QWidget", parent=tree["widget"], name="qt_scrollarea_viewport")
            middle = row["y"] + row["h"] // 2
            if view["y"] <= middle < view["y"] + view["h"]:
                return
            bar = [bar for bar in self.widgets("QScrollBar", window=tree["window"])
                   if bar["h"] > bar["w"] and bar["x"] >= tree["x"]][0]
            edge = 2 * bar["w"]  # past the arrow
            y = bar["y"] + edge if middle < view["y"] else bar["y"] + bar["h"] - edge
            self.probe.ask("click", widget=bar["widget"], x=bar["x"] + bar["w"] // 2, y=y)
        raise AssertionError(f"the row {name!r} cannot be brought into sight")

    def click_row(self, name):
        self.scroll_to_row(name)
        self.click_at(self.tree(), self.row(name))

    def click_tab(self, title):
        titles = self.tabs()
        if titles.count(title) != 1:
            raise AssertionError(f"one tab of {titles} must be titled {title!r}")
        self.click_tab_at(titles.index(title))

    def click_tab_at(self, index):
        """With the arrows of the tab bar, where the tabs do not fit."""
        for _ in range(50):
            tab_widget = self.tab_widget()
            tab = tab_widget["tabs"][index]
            bar = self.one("QTabBar", parent=tab_widget["widget"])
            arrows = sorted(self.widgets("QToolButton", parent=bar["widget"]), key=lambda w: w["x"])
            middle = tab["x"] + tab["w"] // 2
            if middle < bar["x"]:
                self.click(arrows[0])
            elif arrows and middle >= arrows[0]["x"]:
                self.click(arrows[1])
            else:
                self.click_at(bar, tab)
                return
        raise AssertionError(f"tab {index} cannot be brought into sight")

    def key(self, widget, key):
        self.probe.ask("key", widget=widget["widget"], key=key)

    def type(self, widget, text):
        self.probe.ask("type", widget=widget["widget"], text=text)

    def close_by_frame(self, window):
        self.probe.ask("close", widget=window["widget"])

    def press(self, widget):
        """The mouse button goes down on it, and stays there until release()."""
        self.probe.ask("press", widget=widget["widget"])

    def release(self, widget):
        self.probe.ask("release", widget=widget["widget"])

    def focus(self, widget):
        """By the Tab key, which must lead there from wherever the focus is."""
        for _ in range(50):
            if [w for w in self.widgets() if w["widget"] == widget["widget"] and w["focus"]]:
                return
            self.key(widget, "Tab")
        raise AssertionError(f"the focus does not come to {widget}")

    # What it needs

    def _names(self, folder, name_of):
        base = pathlib.Path(f"/proc/{self.process.pid}/{folder}")
        names = []
        for entry in base.iterdir():
            with contextlib.suppress(OSError):  # gone since it was listed
                names.append(name_of(entry))
        return sorted(names)

    # Qt scales pictures in pooled threads, which go when they were idle for a while, each with an event descriptor of
    # its own. They come and go by the machine, so they are left out of what must come back.
    _pooled = "Thread (pooled)"

    def has_address_sanitizer(self):
        maps = pathlib.Path(f"/proc/{self.process.pid}/maps")
        return "libasan" in maps.read_text(encoding="utf-8")

    def threads(self):
        return self._names("task", lambda entry: (entry / "comm").read_text().strip())

    def descriptors(self):
        """Without the index of the icon theme, which Qt keeps open from the first box with standard buttons on."""
        names = self._names("fd", lambda entry: re.sub(r"\d+", "N", os.readlink(entry)))
        return [name for name in names if not name.endswith("/icon-theme.cache")]

    def counts(self):
        """Of threads and of descriptors, without those of the pool."""
        threads = self.threads()
        pooled = threads.count(self._pooled)
        return len(threads) - pooled, len(self.descriptors()) - pooled

    def wakeups(self, seconds):
        """How often each thread went to sleep within that time, by name; those that slept through are left out."""
        def counts():
            base = pathlib.Path(f"/proc/{self.process.pid}/task")
            return {(task.name, (task / "comm").read_text().strip()):
                    int(re.search(r"^voluntary_ctxt_switches:\s*(\d+)", (task / "status").read_text(), re.M)[1])
                    for task in base.iterdir()}
        before = counts()
        time.sleep(seconds)
        woken = collections.Counter()
        for (number, name), count in counts().items():
            woken[name] += count - before.get((number, name), 0)  # several threads may bear one name
        return +woken

    def await_rest(self):
        """Until threads and descriptors stay as many as they are; their count."""
        seen = []

        def at_rest():
            seen.append(self.counts())
            return len(seen) > 40 and len(set(seen[-40:])) == 1

        await_condition(at_rest, lambda: f"threads and descriptors come to rest: {seen[-40:]}")
        return seen[-1]

    def mark(self):
        """Keeps the count of threads and descriptors to which they must come back, once they have come to rest. What was
        before is not looked at any more: where something is to leave no trace, the mark belongs before it."""
        self._marked = (self.await_rest(), self.threads(), self.descriptors())

    def unmark(self):
        """The end is not to ask for the mark again, where the test has accounted for what is not as it was."""
        self._marked = None

    def await_mark(self, more_threads=0, more_descriptors=0):
        """Until threads and descriptors are as many as at the mark, and those more that the test accounts for."""
        (threads, descriptors), threads_then, descriptors_then = self._marked
        wanted = (threads + more_threads, descriptors + more_descriptors)

        def difference(then, now):
            then, now = collections.Counter(then), collections.Counter(now)
            return f"more {dict(now - then)}, less {dict(then - now)}"

        await_condition(
            lambda: self.counts() == wanted,
            lambda: f"threads and descriptors are {wanted}, not {self.counts()}; they were {(threads, descriptors)}\n"
                    f"threads: {difference(threads_then, self.threads())}\n"
                    f"descriptors: {difference(descriptors_then, self.descriptors())}")

    def move_mark(self, more_threads=0, more_descriptors=0):
        """Until threads and descriptors are that many more than at the mark. What makes the difference stays, so from here
        on the mark is there."""
        self.await_mark(more_threads, more_descriptors)
        (threads, descriptors), *names = self._marked
        self._marked = ((threads + more_threads, descriptors + more_descriptors), *names)

    # How it ends

    def errors(self):
        return (self.scratch / "err").read_text(encoding="utf-8", errors="replace")

    def press_quit(self):
        overview = self.one("Client_Overview", visible=False)
        button = self.one("RZPushButton", visible=False, parent=overview["widget"])
        if not button["visible"]:
            self.click_tab_at(0)
        self.click(button)

    def await_end(self):
        """The exit code; the process must end by itself."""
        try:
            return self.process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"the program does not end; threads: {self.threads()}") from None

    def check_end(self):
        """It ends now, if it has not yet: with 0, by no signal, and without a word."""
        code = self.await_end()
        output = (self.scratch / "out").read_bytes()
        errors = self.errors()
        if code != 0:
            raise AssertionError(f"exit code {code}; standard error:\n{errors}")
        if output:
            raise AssertionError(f"it wrote to standard output: {output!r}")
        if errors and not self.may_write_errors:
            raise AssertionError(f"it wrote to standard error:\n{errors}")
        self.probe.close()

    def abandon(self):
        """After a failure: only gone it shall be."""
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        if self.probe:
            self.probe.close()


class Road_Test(unittest.TestCase):
    """Base of the road tests."""

    _first = True

    def setUp(self):
        self.scratch = pathlib.Path(os.environ["VIRELO_LAB_DIR"])
        self.avahi = Avahi()
        if not Road_Test._first:
            self.avahi.renew()
        Road_Test._first = False

    def speakers(self, scene="home", **options):
        return Speakers(scene, **options)

    @contextlib.contextmanager
    def program(self, **options):
        program = Program(self.scratch, **options)
        try:
            yield program
            if program.process.poll() is None:
                if program._marked:
                    program.await_mark()
                program.press_quit()
            program.check_end()
        except BaseException:
            errors = program.errors()
            if errors:
                print("standard error of the program:\n" + errors[-4000:], flush=True)
            program.abandon()
            raise


def main():
    if not os.environ.get("VIRELO_LAB"):
        raise SystemExit("road tests run inside scripts/lab; ctest does that")
    try:
        unittest.main(verbosity=2)
    finally:
        Display.end()
