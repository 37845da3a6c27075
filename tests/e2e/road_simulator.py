# SPDX-License-Identifier: MIT
"""The program virelo-sim in the lab: what it announces, as the daemon's own tool sees it, and how it ends."""

import http.client
import json
import os
import pty
import re
import signal
import socket
import subprocess

import road

HOME = {
    "Wohnzimmer links": ("wohnzimmer-l.local", "127.0.0.11", "80"),
    "Wohnzimmer rechts": ("wohnzimmer-r.local", "127.0.0.12", "80"),
    "Küche": ("kueche.local", "127.0.0.13", "80"),
    "Sub Wohnzimmer": ("sub-wohnzimmer.local", "127.0.0.14", "80"),
    "Gästezimmer (neu)": ("gaestezimmer.local", "127.0.0.15", "80"),
    "Werkstatt": ("werkstatt.local", "127.0.0.16", "80"),
}
NEW = "Gästezimmer (neu)"
NEW_ADDRESS = "127.0.0.15"


def browse(*options):
    return subprocess.run(["avahi-browse", *options, "_lodeset._tcp"], capture_output=True, check=True,
                          stdin=subprocess.DEVNULL).stdout.decode().splitlines()


def plain(escaped):
    """A name as avahi-browse prints it for parsing, with bytes as three decimal digits."""
    raw = re.sub(rb"\\(\d{3})", lambda found: bytes([int(found[1])]), escaped.encode())
    return raw.replace(b"\\", b"").decode()


def announced():
    """Name to host name, address and port of every speaker that resolves."""
    fields = (line.split(";") for line in browse("-rtp") if line.startswith("="))
    return {plain(found[3]): (found[6], found[7], found[8]) for found in fields}


def txt_of(name):
    for line in browse("-rtp"):
        found = line.split(";")
        if found[0] == "=" and plain(found[3]) == name:
            return found[9]
    return None


def post(address, path, body):
    connection = http.client.HTTPConnection(address, timeout=road.PATIENCE)
    connection.request("POST", path, body.encode(), {"Content-Type": "text/plain"})
    reply = json.loads(connection.getresponse().read())
    connection.close()
    return reply


def ask(address, query):
    with socket.create_connection((address, 8990), timeout=road.PATIENCE) as link:
        link.sendall(query)
        reply = b""
        while not reply.endswith(b"\r"):
            piece = link.recv(100)
            if not piece:
                break
            reply += piece
        return reply


def await_announced(expected):
    road.await_condition(lambda: announced() == expected, lambda: f"{announced()} is {expected}")


class Announcements_Test(road.Road_Test):
    def test_the_house_is_announced_with_names_and_hosts_of_its_own(self):
        with self.speakers():
            self.assertEqual(announced(), HOME)
            self.assertEqual(ask("127.0.0.13", b"RZ?STm\n"), b"RZ#0019\r")
            self.assertEqual(ask("127.0.0.16", b"RZ?STm\n"), b"RZ#0099\r")
        await_announced({})

    def test_who_leaves_is_withdrawn_and_who_joins_is_announced(self):
        with self.speakers() as speakers:
            speakers.do("leave", "Küche")
            await_announced({name: where for name, where in HOME.items() if name != "Küche"})
            with self.assertRaises(ConnectionRefusedError):
                ask("127.0.0.13", b"RZ?STm\n")
            speakers.do("join", "Küche")
            await_announced(HOME)

    def test_who_moves_is_announced_at_the_new_address(self):
        with self.speakers() as speakers:
            speakers.do("move", "Werkstatt", "127.0.0.66")
            await_announced({**HOME, "Werkstatt": ("werkstatt.local", "127.0.0.66", "80")})
            self.assertEqual(ask("127.0.0.66", b"RZ?STm\n"), b"RZ#0099\r")

    def test_a_new_name_is_announced_after_the_way_into_the_wlan(self):
        with self.speakers() as speakers:
            device, wifi = "/api/v19/device.action", "/api/v19/wifi.action"
            renamed = post(NEW_ADDRESS, device, '{"action": "setdevicename", "devicename": "Müller & Söhne" }')
            self.assertEqual(renamed, {"returncode": "success"})
            wrong = post(NEW_ADDRESS, wifi, '{"action": "addnetwork", "ssid": "Zuhause", "psk": "falsch" } ')
            self.assertNotEqual(wrong["returncode"], "success")
            self.assertEqual(announced(), HOME)  # a name is new only after the restart
            added = post(NEW_ADDRESS, wifi, '{"action": "addnetwork", "ssid": "Zuhause", "psk": "geheim123" } ')
            self.assertEqual(added["returncode"], "success")
            chosen = post(NEW_ADDRESS, wifi, f'{{"action": "selectnetwork", "id": {added["id"]} }}')
            self.assertEqual(chosen, {"returncode": "success"})
            others = {name: where for name, where in HOME.items() if name != NEW}
            await_announced(others)
            speakers.do("join", NEW)
            await_announced({**others, "Müller & Söhne": HOME[NEW]})
            network = post(NEW_ADDRESS, "/api/v19/network.action", '{"action": "info"}')["wlan"]
            self.assertEqual((network["mode"], network["ssid"]), ("STA", "Zuhause"))
            speakers.do("leave", NEW)
            await_announced(others)

    def test_a_daemon_that_comes_back_learns_everything_anew(self):
        with self.speakers():
            self.avahi.stop()
            self.avahi.start()
            await_announced(HOME)

    def test_a_daemon_that_was_killed_learns_of_those_who_are_there_then(self):
        with self.speakers() as speakers:
            self.avahi.kill()
            speakers.do("leave", "Küche")
            speakers.do("move", "Werkstatt", "127.0.0.66")
            self.avahi.start()
            there = {name: where for name, where in HOME.items() if name != "Küche"}
            await_announced({**there, "Werkstatt": ("werkstatt.local", "127.0.0.66", "80")})
            speakers.do("join", "Küche")
            await_announced({**HOME, "Werkstatt": ("werkstatt.local", "127.0.0.66", "80")})

    def test_the_txt_record_is_announced(self):
        scene = {"speakers": [{"name": "Mit Text", "address": "127.9.0.1", "txt": {"path": "/", "v": "2"}}]}
        with self.speakers(scene) as speakers:
            self.assertEqual(set(txt_of("Mit Text").split()), {'"path=/"', '"v=2"'})
            host, address, port = announced()["Mit Text"]
            self.assertEqual((host, address), ("virelo-127-9-0-1.local", "127.9.0.1"))
            self.assertEqual(post("127.9.0.1:" + port, "/api/v19/device.action", '{"action": "info"}')["firmware"],
                             "1.4.2")
            speakers.await_event("Mit Text", "is there")


class End_Test(road.Road_Test):
    def start(self, *options, **streams):
        return subprocess.Popen([os.environ["VIRELO_SIM"], *options], stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE, encoding="utf-8", **streams)

    def await_ready(self, process):
        for line in process.stdout:
            if line == "ready\n":
                return
        self.fail(f"not ready: {process.stderr.read()}")

    def assert_ended_well(self, process):
        _, errors = process.communicate(timeout=road.PATIENCE)
        self.assertEqual((process.returncode, errors), (0, ""))

    def test_a_signal_ends_it_well(self):
        for number in (signal.SIGTERM, signal.SIGINT):
            process = self.start(stdin=subprocess.DEVNULL)  # an input that is empty from the start is no end
            self.await_ready(process)
            process.send_signal(number)
            self.assert_ended_well(process)
            await_announced({})

    def test_quit_ends_it_well(self):
        process = self.start("--no-announce", stdin=subprocess.PIPE)
        self.await_ready(process)
        process.stdin.write("quit\n")
        process.stdin.flush()
        self.assert_ended_well(process)

    def test_the_end_of_piped_commands_ends_it_well(self):
        process = self.start("--no-announce", stdin=subprocess.PIPE)
        self.await_ready(process)
        process.stdin.write("list\n")
        process.stdin.close()
        process.stdin = None
        self.assert_ended_well(process)

    def test_on_a_terminal_lines_have_colours_and_in_a_file_none(self):
        log = os.path.join(os.environ["VIRELO_LAB_DIR"], "colours.log")
        for no_colour, expected in ("", True), ("1", False):
            ours, its = pty.openpty()
            process = subprocess.Popen([os.environ["VIRELO_SIM"], "--no-announce", "--log", log],
                                       stdin=subprocess.PIPE, stdout=its, env={**os.environ, "NO_COLOR": no_colour})
            os.close(its)
            process.communicate(b"nonsense\nquit\n", timeout=road.PATIENCE)
            shown = os.read(ours, 65536)
            os.close(ours)
            self.assertIn(b"? there is no command", shown)
            self.assertEqual(b"\033[31m? there is no command" in shown, expected)
            with open(log, "rb") as file:
                self.assertNotIn(b"\033", file.read())

    def test_an_address_that_is_taken_is_told(self):
        with self.speakers():
            result = subprocess.run([os.environ["VIRELO_SIM"], "--no-announce"], capture_output=True, text=True,
                                    stdin=subprocess.DEVNULL, check=False)
            self.assertEqual(result.returncode, 1)
            self.assertIn("127.0.0.11:8991", result.stderr)


class Slow_Test(road.Road_Test):
    def test_without_a_daemon_it_says_after_10_s_what_is_missing(self):
        self.avahi.stop()
        self.addCleanup(self.avahi.start)
        result = subprocess.run([os.environ["VIRELO_SIM"]], capture_output=True, text=True,
                                stdin=subprocess.DEVNULL, check=False)
        self.assertEqual(result.returncode, 1)
        self.assertIn("avahi-daemon", result.stderr)


road.main()
