# SPDX-License-Identifier: MIT
"""What surrounds the program in the lab: speakers, the wire, addresses that swallow everything, the DNS-SD daemon.

Everything here waits for conditions and gives up, with an AssertionError that tells what it saw, after PATIENCE.
"""

import contextlib
import json
import os
import pathlib
import re
import signal
import socket
import subprocess
import tempfile
import threading
import time
import urllib.request

PATIENCE = 30  # seconds that a condition may take on a busy machine before the test gives up


def await_condition(condition, what, patience=PATIENCE):
    """Returns the condition's first true result. It looks again and again: nothing here waits for a time to pass."""
    end = time.monotonic() + patience
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise AssertionError(f"after {patience} s still not so: {what() if callable(what) else what}")
        time.sleep(0.02)


class Output:
    """The lines that a process writes, read as they come."""

    def __init__(self, stream):
        self._lines = []
        self._changed = threading.Condition()
        self._ended = False
        self._reader = threading.Thread(target=self._read, args=[stream], daemon=True)
        self._reader.start()

    def _read(self, stream):
        for line in stream:
            with self._changed:
                self._lines.append(line.rstrip("\n"))
                self._changed.notify_all()
        stream.close()
        with self._changed:
            self._ended = True
            self._changed.notify_all()

    def join(self):
        """Until the process has closed its end."""
        self._reader.join(PATIENCE)

    def lines(self, start=0):
        with self._changed:
            return self._lines[start:]

    def count(self):
        with self._changed:
            return len(self._lines)

    def await_line(self, pattern, start=0, patience=PATIENCE):
        """The first line from `start` on in which the pattern is found."""
        end = time.monotonic() + patience
        position = start
        with self._changed:
            while True:
                for line in self._lines[position:]:
                    if re.search(pattern, line):
                        return line
                position = len(self._lines)
                if self._ended or not self._changed.wait_for(
                        lambda: self._ended or len(self._lines) > position, end - time.monotonic()):
                    raise AssertionError(f"no line with {pattern!r} among:\n" + "\n".join(self._lines[start:]))


class Speakers:
    """The virtual speakers of a scene: one that comes along by its name, or one given as a dictionary.

    All they do stands in `output`, a line an event; see virelo-sim --help. Where they are not announced, a test has
    to see to that.
    """

    def __init__(self, scene, announced=True):
        self.options = [] if announced else ["--no-announce"]
        if isinstance(scene, str):
            self.scene = scene
        else:
            file, self.scene = tempfile.mkstemp(suffix=".json", dir=os.environ["VIRELO_LAB_DIR"])
            with os.fdopen(file, "w", encoding="utf-8") as stream:
                json.dump(scene, stream)

    def __enter__(self):
        self.process = subprocess.Popen([os.environ["VIRELO_SIM"], "--scene", self.scene, *self.options],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, encoding="utf-8", bufsize=1)
        self.output = Output(self.process.stdout)
        self.output.await_line(r"^ready$")
        return self

    def __exit__(self, kind, value, trace):
        self.process.terminate()
        code = self.process.wait(PATIENCE)
        self.process.stdin.close()
        self.output.join()
        if kind is None and code != 0:
            raise AssertionError(f"virelo-sim ended with {code}")

    def do(self, *words):
        """One command; returns once it has taken effect."""
        self.do_all([words])

    def do_all(self, commands):
        """One after the other; returns once all have taken effect."""
        start = self.output.count()
        for words in commands:
            self.process.stdin.write(" ".join(f'"{word}"' if " " in word else word for word in words) + "\n")
        answers = re.compile(r"ok|\? .*")

        def answered():
            return [line for line in self.output.lines(start) if answers.fullmatch(line)]

        await_condition(lambda: len(answered()) >= len(commands), lambda: f"{commands} are answered: {answered()}")
        if set(answered()) != {"ok"}:
            raise AssertionError(f"{commands}: {answered()}")

    def events(self, name, start=0):
        """The texts of what happened to the speaker of that name, from line `start` on."""
        found = []
        for line in self.output.lines(start):
            match = re.fullmatch(r" *\d+\.\d{3} (.{20,})", line)
            if match and match[1].startswith(name.ljust(20) + "  "):
                found.append(match[1][max(len(name), 20) + 2:])
        return found

    def await_event(self, name, text, start=0):
        await_condition(lambda: text in self.events(name, start),
                        lambda: f"{text!r} is among the events of {name!r}: {self.events(name, start)}")

    def received(self, name, start=0):
        """The host lines that reached the speaker, without their line feed."""
        return [text[3:] for text in self.events(name, start) if text.startswith("<- RZ")]


class Speaker:
    """Asks a virtual speaker on the lines that the program uses, for what it holds."""

    def __init__(self, address):
        self.address = address

    def value(self, letters):
        with socket.create_connection((self.address, 8990), PATIENCE) as link:
            link.sendall(f"RZ?{letters}\n".encode())
            answer = b""
            while not answer.endswith(b"\r"):
                part = link.recv(1000)
                if not part:
                    raise AssertionError(f"{self.address} does not tell {letters}: {answer!r}")
                answer += part
        return answer.decode().removeprefix("RZ#00").removesuffix("\r")

    def await_value(self, letters, wanted):
        await_condition(lambda: self.value(letters) == wanted,
                        lambda: f"{self.address} has {letters} {wanted!r}, not {self.value(letters)!r}")

    def _ask(self, path, action):
        request = urllib.request.Request(f"http://{self.address}/api/v19/songcast/{path}.action",
                                         json.dumps({"action": action}).encode())
        with urllib.request.urlopen(request, timeout=PATIENCE) as reply:
            return json.load(reply)

    def sender(self):
        return self._ask("sender", "status")

    def receiver(self):
        return self._ask("receiver", "state")


class Wire:
    """Listens to the lab's one network device, for tests that compare bytes with bytes."""

    _ipv4 = 0x0800  # bound to one protocol, a packet socket shows each packet once: as it comes in

    def __init__(self):
        self._socket = socket.socket(socket.AF_PACKET, socket.SOCK_RAW, socket.htons(self._ipv4))
        self._socket.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 8 << 20)
        self._socket.bind(("lo", self._ipv4))
        self._socket.setblocking(False)
        self._streams = {}  # (address, port) of the receiver -> {(sender, sequence number): bytes}

    def __enter__(self):
        return self

    def __exit__(self, kind, value, trace):
        self._socket.close()

    def _take(self):
        with contextlib.suppress(BlockingIOError):
            while True:
                packet = self._socket.recv(70000)[14:]
                if packet[9] != socket.IPPROTO_TCP:
                    continue
                header = (packet[0] & 15) * 4
                segment = packet[header:int.from_bytes(packet[2:4], "big")]
                payload = segment[(segment[12] >> 4) * 4:]
                if payload:
                    receiver = (socket.inet_ntoa(packet[16:20]), int.from_bytes(segment[2:4], "big"))
                    sender = (packet[12:16], segment[0:2], segment[4:8])
                    self._streams.setdefault(receiver, {})[sender] = payload

    def bytes_to(self, address, port):
        """All bytes that were sent there since the wire is listened to, each once, in order."""
        self._take()
        return b"".join(self._streams.get((address, port), {}).values())

    def await_bytes(self, address, port, ending):
        await_condition(lambda: self.bytes_to(address, port).endswith(ending),
                        lambda: f"{ending!r} was sent last to {address}:{port}: {self.bytes_to(address, port)[-200:]!r}")


class Black_Hole:
    """An address and port where a connection is neither taken nor refused: its queue is full, and nobody empties it."""

    def __init__(self, address, port):
        self._listener = socket.socket()
        self._listener.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self._listener.bind((address, port))
        self._listener.listen(0)
        self._fillers = []
        for _ in range(4):
            filler = socket.socket()
            filler.setblocking(False)
            filler.connect_ex((address, port))
            self._fillers.append(filler)

    def __enter__(self):
        return self

    def __exit__(self, kind, value, trace):
        for each in [self._listener, *self._fillers]:
            each.close()


class Avahi:
    """The lab's DNS-SD daemon."""

    @staticmethod
    def _do(word):
        subprocess.run([os.environ["VIRELO_LAB_DIR"] + "/avahi", word], check=True, stdin=subprocess.DEVNULL)

    def start(self):
        self._do("start")

    def stop(self):
        self._do("stop")

    def kill(self):
        self._do("kill")

    def pause(self):
        self._do("pause")

    def resume(self):
        self._do("continue")

    def renew(self):
        """Another daemon in place of this one, however a test left it; it knows of no speaker of earlier tests."""
        if pathlib.Path(os.environ["VIRELO_LAB_AVAHI_PID"]).exists():
            self.kill()
        self.start()


class Bus:
    """The lab's message bus, by which everybody talks to the DNS-SD daemon. It takes that one with it."""

    _folder = pathlib.Path(os.environ.get("VIRELO_LAB_DIR", "/"))
    _pid_file = _folder / "dbus.pid"

    def kill(self):
        pid = int(self._pid_file.read_text())
        self._pid_file.unlink()
        os.kill(pid, signal.SIGKILL)
        await_condition(lambda: not self._serves(), "the bus is gone")

    def start(self):
        with open(self._folder / "dbus.log", "ab") as log:
            process = subprocess.Popen(
                ["dbus-daemon", f"--config-file={self._folder}/bus.conf", "--nofork", "--nopidfile"],
                stdin=subprocess.DEVNULL, stdout=log, stderr=log)
        process.returncode = 0  # it ends with the lab, which nobody here waits for
        self._pid_file.write_text(str(process.pid))
        await_condition(self._serves, "the bus serves")

    def _serves(self):
        with socket.socket(socket.AF_UNIX) as link:
            return link.connect_ex(str(self._folder / "bus")) == 0
