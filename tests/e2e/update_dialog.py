# SPDX-License-Identifier: MIT
"""The update dialog as a user sees it, the speaker that it upgrades, and what the maker's server has for it."""

import re
import urllib.request

import road

NAME = "Prüfling"
ADDRESS = "127.0.0.41"
HEX = "vc3w_host.hex"  # what the maker has for a speaker of this type
SERVER = "download server"  # its name in the log
FOLDER = "http://update.virelo.example/current/"


def speaker(name=NAME, address=ADDRESS, kind=13, **more):
    return {"name": name, "address": address, "http_port": 80, "type": kind, "host_name": f"s-{kind}", **more}


def scene(*speakers, **download):
    """One speaker, if none are given, and the maker's server where the lab's names lead to it."""
    return {"speakers": list(speakers) or [speaker()], "download": {"address": "127.0.0.80", "port": 80, **download}}


def served(file):
    """Its bytes, as anybody gets them."""
    with urllib.request.urlopen(f"http://127.0.0.80/current/{file}", timeout=road.PATIENCE) as reply:
        return reply.read()


def sent_lines(content):
    """What must reach a host of a file: each line for itself, and each with this line end, whatever it had."""
    lines = content.split(b"\n")
    if len(lines) > 1 and not lines[-1]:
        lines.pop()  # that was the end of the last line
    return [line.removesuffix(b"\r") + b"\r\n" for line in lines]


def seconds(line):
    """The time at which a line of the speakers' log was written."""
    return float(re.match(r" *(\d+\.\d{3}) ", line)[1])


class Dialog:
    """Opened for the speaker by a click on its row and on "Update >>"."""

    def __init__(self, program, name=NAME):
        self.program = program
        if program.current_tab() != road.OVERVIEW:
            program.click_tab(road.OVERVIEW)
        program.click_row(name)
        if program.current_tab() != road.OVERVIEW:
            program.click_tab(road.OVERVIEW)
        known = {w["widget"] for w in program.widgets("Client_Update", visible=False)}
        program.click_button("Update >>")
        self.window = road.await_condition(
            lambda: [w for w in program.widgets("Client_Update") if w["widget"] not in known],
            lambda: f"the update dialog of {name!r} opens; on the screen:\n{program.screen()}")[0]

    # What can be seen

    def widgets(self, kind=None, **wanted):
        return self.program.widgets(kind, visible=False, window=self.window["widget"], **wanted)

    def beside(self, caption):
        """The widget to the right of the caption."""
        return self._beside(caption, self.widgets())

    @staticmethod
    def _beside(caption, all_widgets):
        label = [w for w in all_widgets if w["class"] == "QLabel" and w["text"] == caption][0]
        middle = label["y"] + label["h"] // 2
        return min((w for w in all_widgets if w["x"] > label["x"] and w["y"] <= middle < w["y"] + w["h"]),
                   key=lambda w: w["x"])

    def text(self, caption):
        return self.beside(caption)["text"]

    def status(self):
        return self.text("Status:")

    def size(self):
        return self.text("File Size:")

    def bar(self):
        return self.widgets("QProgressBar")[0]["value"]

    def snapshot(self):
        """Status, bar and enabled buttons of one moment."""
        all_widgets = self.widgets()
        return (self._beside("Status:", all_widgets)["text"], self._beside("Progress:", all_widgets)["value"],
                sorted(w["text"] for w in all_widgets if w["class"] == "QPushButton" and w["enabled"]))

    def visible(self):
        return bool(self.program.widgets("Client_Update", widget=self.window["widget"]))

    def enabled_buttons(self):
        return sorted(w["text"] for w in self.widgets("QPushButton", enabled=True))

    def await_status(self, text, patience=road.PATIENCE):
        road.await_condition(lambda: self.status() == text, lambda: f"the status is {text!r}, not {self.status()!r}",
                             patience)

    def await_size(self, text):
        road.await_condition(lambda: self.size() == text, lambda: f"the size is {text!r}, not {self.size()!r}")

    def await_box(self, title, message, patience=road.PATIENCE):
        """Answers the box of that title and message, once it is there."""
        def boxes():
            return self.program.widgets("QMessageBox")
        box = road.await_condition(boxes, lambda: f"a box says {message!r}; on the screen:\n{self.program.screen()}",
                                   patience)[0]
        if (box["text"], box["message"]) != (title, message):
            raise AssertionError(f"the box says {box['text']!r}, {box['message']!r}, not {title!r}, {message!r}")
        self.program.click_button("OK", window=box["widget"])
        road.await_condition(lambda: not boxes(), "the box goes")

    def await_completed(self, patience=road.PATIENCE):
        self.await_box("Info", "Flashing HOST completed!", patience)

    # What can be done

    def click(self, text):
        self.program.click(self.widgets("QPushButton", text=text)[0])

    def choose(self, text):
        radio = self.widgets("QRadioButton", text=text)[0]
        self.program.click_at(radio, {**radio, "w": radio["h"]})  # where its dot is; it takes no click beside its text
        road.await_condition(lambda: self.widgets("QRadioButton", text=text)[0]["checked"], f"{text!r} is chosen")

    def set_url(self, text):
        edit = self.beside("Download URL:")
        self.program.focus(edit)
        self.program.key(edit, "Ctrl+A")
        self.program.type(edit, text)
        road.await_condition(lambda: self.text("Download URL:") == text, "the URL is what was typed")

    def check(self, size):
        """With a good end: the file has that many bytes."""
        self.click("Check")
        self.await_size(f"{size} Bytes")
        road.await_condition(lambda: "FLASH!" in self.enabled_buttons(), "the file may be flashed")

    def start_host(self, size):
        """All that leads to the transfer to the host."""
        self.choose("Host")
        self.check(size)
        self.click("FLASH!")

    def close_by_frame(self):
        self.program.close_by_frame(self.window)
        road.await_condition(lambda: not self.visible(), "the dialog is gone")


class Update_Test(road.Road_Test):
    """Base of the tests of updates."""

    def opened(self, program, name=NAME):
        road.await_condition(lambda: [row for row in program.rows() if row["texts"][1] == name],
                             lambda: f"the row {name!r} comes; on the screen:\n{program.screen()}")
        return Dialog(program, name)

    def no_complaints(self, speakers, name=NAME):
        self.assertEqual([text for text in speakers.events(name) if text.startswith("!!")], [])
