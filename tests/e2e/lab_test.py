# SPDX-License-Identifier: MIT
"""Tests of scripts/lab itself; they run outside of it."""

import os
import pathlib
import signal
import subprocess
import time
import unittest
import uuid

LAB = str(pathlib.Path(__file__).resolve().parents[2] / "scripts" / "lab")


def lab(*arguments, **options):
    return subprocess.run([LAB, *arguments], capture_output=True, text=True, check=False,
                          **{"stdin": subprocess.DEVNULL, **options})


def processes_with(word):
    """Those whose command line has the word."""
    found = []
    for folder in pathlib.Path("/proc").iterdir():
        if folder.name.isdigit():
            try:
                if word.encode() in (folder / "cmdline").read_bytes():
                    found.append(int(folder.name))
            except OSError:
                pass  # gone meanwhile
    return found


class Exit_Test(unittest.TestCase):
    def test_the_exit_code_is_the_commands(self):
        self.assertEqual(lab("--", "true").returncode, 0)
        self.assertEqual(lab("--", "bash", "-c", "exit 7").returncode, 7)

    def test_a_signal_shows_as_the_shell_shows_it(self):
        self.assertEqual(lab("--", "bash", "-c", "kill -KILL $$").returncode, 128 + signal.SIGKILL)

    def test_standard_input_and_output_are_the_commands(self):
        result = lab("--", "cat", stdin=None, input="through and through\n")
        self.assertEqual((result.stdout, result.stderr), ("through and through\n", ""))

    def test_wrong_use_is_said_in_one_sentence(self):
        for arguments in ([], ["--nonsense", "--", "true"], ["--host", "name", "--", "true"]):
            result = lab(*arguments)
            self.assertEqual(result.returncode, 70)
            self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)

    def test_a_missing_tool_is_said_in_one_sentence(self):
        # A path on which only the shell itself and what the script asks for first are found.
        result = subprocess.run(["/bin/bash", LAB, "--", "true"], capture_output=True, text=True, check=False,
                                stdin=subprocess.DEVNULL, env={"PATH": "/nowhere"}, executable="/bin/bash")
        self.assertNotEqual(result.returncode, 0)
        self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)

    def check_nothing_left(self, number):
        marker = f"marker-{uuid.uuid4()}"
        process = subprocess.Popen([LAB, "--", "bash", "-c", "echo up; sleep 1000; :", marker],
                                   stdin=subprocess.DEVNULL, stdout=subprocess.PIPE)
        self.assertEqual(process.stdout.readline(), b"up\n")
        inside = len(processes_with(marker))
        self.assertGreater(inside, 1)
        process.send_signal(number)
        process.wait()
        end = time.monotonic() + 20
        while processes_with(marker) and time.monotonic() < end:
            time.sleep(0.02)
        self.assertEqual(processes_with(marker), [])
        # The pipe has no writer left only when every process of the lab is gone, the daemons' among them.
        self.assertEqual(process.stdout.read(), b"")
        process.stdout.close()

    def test_ending_the_script_ends_everything_inside(self):
        self.check_nothing_left(signal.SIGTERM)

    def test_killing_the_script_ends_everything_inside(self):
        self.check_nothing_left(signal.SIGKILL)

    def test_what_the_command_leaves_behind_ends_with_it(self):
        marker = f"marker-{uuid.uuid4()}"
        self.assertEqual(lab("--", "bash", "-c", f"bash -c 'sleep 1000; :' {marker} & exit 3").returncode, 3)
        self.assertEqual(processes_with(marker), [])


class Inside_Test(unittest.TestCase):
    def test_there_is_no_way_out(self):
        self.assertEqual(lab("--", "ip", "-brief", "address").stdout.split(), ["lo", "UNKNOWN", "127.0.0.1/8"])
        self.assertEqual(lab("--", "ip", "route").stdout, "")

    def test_the_download_server_leads_to_the_lab(self):
        result = lab("--host", "other.example=127.0.0.81", "--", "bash", "-c",
                     'getent hosts update.virelo.example other.example; echo "$VIRELO_LAB_DOWNLOAD"')
        self.assertEqual(result.stdout.split(),
                         ["127.0.0.80", "update.virelo.example", "127.0.0.81", "other.example", "127.0.0.80"])

    def test_the_download_server_may_have_another_name(self):
        result = lab("--", "getent", "hosts", "firmware.example",
                     env={**os.environ, "VIRELO_DOWNLOAD_SERVER": "firmware.example"})
        self.assertEqual(result.stdout.split(), ["127.0.0.80", "firmware.example"])

    def test_the_machine_is_as_it_was(self):
        files = [pathlib.Path(name) for name in ("/etc/passwd", "/etc/group", "/etc/hosts")]
        before = [file.read_bytes() if file.exists() else None for file in files]
        trace = f"trace-{uuid.uuid4()}"
        result = lab("--", "bash", "-c", f"cat /etc/passwd; touch /run/{trace} && ls /run")
        self.assertIn("\navahi:x:0:0:", result.stdout)
        self.assertIn(trace, result.stdout)
        self.assertEqual([file.read_bytes() if file.exists() else None for file in files], before)
        self.assertNotIn(trace, os.listdir("/run"))

    def test_the_daemon_can_be_stopped_and_started(self):
        script = """
            set -eu
            state() { sed 's/.*) //' "/proc/$(cat "$VIRELO_LAB_AVAHI_PID")/stat" | cut -c1; }
            for word in pause continue stop start kill start; do
                "$VIRELO_LAB_DIR/avahi" "$word"
                if [ "$word" = pause ]; then [ "$(state)" = T ]; fi
                if [ "$word" = continue ]; then [ "$(state)" != T ]; fi
                if [ "$word" = stop ] || [ "$word" = kill ]; then [ ! -e "$VIRELO_LAB_AVAHI_PID" ]; fi
                if [ "$word" = start ]; then state >/dev/null; fi
                echo "$word"
            done"""
        result = lab("--", "bash", "-c", script)
        self.assertEqual((result.returncode, result.stdout.split(), result.stderr),
                         (0, ["pause", "continue", "stop", "start", "kill", "start"], ""))


unittest.main(verbosity=2)
