# SPDX-License-Identifier: MIT
"""Writes a picture of every view, in German and in English, to the folder named on the command line; for
scripts/screenshots, inside scripts/lab.

The speakers are those of the scene "home". They come one after the other, so that the rows always stand in one order.
"""

import contextlib
import json
import os
import pathlib
import subprocess
import sys
import xml.etree.ElementTree

import road

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCENE = json.loads((ROOT / "simulator/scenes/home.json").read_text(encoding="utf-8"))
LEFT, RIGHT, KITCHEN, SUB, GUEST, UNKNOWN = road.HOME
GROUPS = {"de": "Feier", "en": "Party"}
LOCALES = {"de": "de_DE.UTF-8", "en": "en_US.UTF-8"}

# A phone and a tablet are told by the screen, in the build for "android".
DESKTOP, WIDE, TABLET, PHONE = "1280x1024", "2560x1440", "800x1280", "720x1280"


class Texts:
    """What the program says in a language, looked up as the program does."""

    def __init__(self, language):
        self._texts = {}
        tree = xml.etree.ElementTree.parse(ROOT / f"resources/translations/VIRELO_{language}.ts")
        for context in tree.iter("context"):
            for message in context.iter("message"):
                key = context.findtext("name"), message.findtext("source")
                self._texts[key] = message.findtext("translation")

    def __call__(self, context, source):
        return self._texts.get((context, source)) or source


class Session:
    """One run of the program, and the pictures that it yields."""

    def __init__(self, program, language, folder):
        self.program = program
        self.tr = Texts(language)
        self.group_name = GROUPS[language]
        self.folder = folder / language
        self.folder.mkdir(parents=True, exist_ok=True)

    def shoot(self, name, window=None):
        """Once the window has come to rest: two pictures in a row are the same."""
        window = window or self.program.main_window()
        path = self.folder / f"{name}.png"
        before = []

        def at_rest():
            before.append(path.read_bytes() if path.exists() else b"")
            self.program.probe.ask("grab", widget=window["widget"], file=str(path))
            return len(before) > 1 and path.read_bytes() == before[-1]

        road.await_condition(at_rest, f"{name} comes to rest")

    def show_all_rows(self):
        """By drawing the window taller."""
        program = self.program
        window, tree = program.main_window(), program.tree()
        height = sum(row["h"] for row in tree["rows"]) + 30
        program.resize(window["w"], window["h"] - tree["h"] + height)
        road.await_condition(lambda: program.tree()["h"] >= height, "the tree shows all rows")

    def usual_size(self):
        self.program.resize(726, 660)
        road.await_condition(lambda: self.program.main_window()["h"] == 660, "the window has its usual size")

    def open_row(self, name):
        self.program.click_tab_at(0)
        self.program.click_row(name)

    def open_dialog(self, name, button, kind):
        """The dialog that a button of the overview opens for that row."""
        self.open_row(name)
        self.program.click_tab_at(0)
        self.program.click_button(self.tr("Client_Overview", button))
        return self.program.await_one(kind)

    def press(self, dialog, context, source):
        self.program.click_button(self.tr(context, source), window=dialog["window"])

    def close(self, dialog):
        self.press(dialog, dialog["class"], "<< Back")
        road.await_condition(lambda: not self.program.widgets(dialog["class"]), "the dialog is closed")

    def select(self, dialog, name):
        tree = self.program.one("QTreeWidget", parent=dialog["widget"])
        self.program.click_at(tree, [row for row in tree["rows"] if row["texts"][0] == name][0])

    # The views

    def overview(self):
        self.shoot("overview")

    def group(self):
        program = self.program
        dialog = self.open_dialog(LEFT, "Group >>", "Client_Group")
        self.shoot("group-dialog-empty", dialog)
        self.press(dialog, "Client_Group", "Create Group")
        line = program.await_one("QLineEdit", text=self.tr("Client_Group", "VIRELO Group"))
        program.type(line, self.group_name)
        program.key(line, "Return")
        program.await_one("QPushButton", text=self.tr("Client_Group", "Dissolve Group"))
        leader = road.Speaker("127.0.0.11")
        road.await_condition(lambda: leader.sender()["enabled"], "the speaker leads the group")
        for name, address in ((RIGHT, "127.0.0.12"), (KITCHEN, "127.0.0.13")):
            self.select(dialog, name)
            self.press(dialog, "Client_Group", "Add to Group")
            receiver = road.Speaker(address)
            road.await_condition(lambda: receiver.receiver()["sender"] == leader.sender()["uuid"], f"{name} follows")
        self.shoot("group-dialog", dialog)
        self.close(dialog)
        program.await_rows([self.group_name, *road.HOME])
        program.click_tab_at(0)
        self.show_all_rows()
        self.shoot("overview-group")
        self.usual_size()
        program.click_row(self.group_name)
        slider = program.one("RZSlider", maximum=100)
        program.focus(slider)
        for volume in range(1, 9):
            program.key(slider, "Right")
            leader.await_value("vo", str(volume))
        self.shoot("group")

    def speakers(self):
        self.open_row(LEFT)
        self.shoot("air-desktop")
        self.open_row(SUB)
        self.shoot("sub")
        self.program.click_button("EQ")
        self.program.await_one("Client_Settings_Sub_EQ")
        self.shoot("sub-eq")
        self.open_row(UNKNOWN)
        self.shoot("empty")

    def hood(self):
        program = self.program
        self.open_row(LEFT)
        program.click_tab_at(0)
        tabs = program.tabs()
        overview = program.one("Client_Overview")
        program.press(program.one("RZPushButton", parent=overview["widget"]))
        road.await_condition(lambda: program.tabs() == [*tabs, "HOOD"], lambda: program.screen())
        program.release(program.main_window())
        self.shoot("hood")

    def wlan(self):
        program = self.program
        scan = self.open_dialog(GUEST, "WiFi >>", "Client_WLANs")
        road.await_condition(lambda: program.one("QTreeWidget", parent=scan["widget"])["rows"], "networks are listed")
        self.shoot("wlan-list", scan)
        self.press(scan, "Client_WLANs", "Next >>")
        settings = program.await_one("Client_Conf")
        password = max(program.widgets("QLineEdit", window=settings["window"]), key=lambda line: line["y"])
        program.click(password)
        program.type(password, "geheim123")
        self.shoot("wlan-settings", settings)
        self.press(settings, "Client_Conf", "DHCP/Static")
        address = program.await_one("Client_Conf_StatIP")
        self.shoot("static-address-dhcp", address)
        program.click(program.one("QRadioButton", text="Static"))
        program.await_one("QLineEdit", text="255.255.255.0")
        self.shoot("static-address", address)
        self.close(address)
        self.close(settings)

    def update(self):
        program = self.program
        dialog = self.open_dialog(LEFT, "Update >>", "Client_Update")
        self.shoot("update", dialog)
        self.press(dialog, "Client_Update", "Check")
        program.await_one("QLineEdit", text="200000 Bytes")
        self.press(dialog, "Client_Update", "FLASH!")
        program.await_one("QLabel", text=self.tr("Client_Update", "Done!"))
        self.shoot("update-done", dialog)
        self.close(dialog)


@contextlib.contextmanager
def running(language, folder, **options):
    program = road.Program(os.environ["VIRELO_LAB_DIR"], locale=LOCALES[language], **options)
    try:
        yield Session(program, language, folder)
        program.press_quit()
        program.check_end()
    except BaseException:
        print(program.errors()[-4000:], file=sys.stderr)
        program.abandon()
        raise


@contextlib.contextmanager
def home(language, folder, **options):
    """The program with all speakers, in the order of the scene."""
    road.Avahi().renew()  # it may still tell of the speakers of before, which are identified in vain
    with running(language, folder, **options) as session, contextlib.ExitStack() as stack:
        for number, speaker in enumerate(SCENE["speakers"], 1):
            scene = {"speakers": [speaker]}
            if number == 1:
                scene["download"] = SCENE["download"]
            stack.enter_context(road.Speakers(scene))
            session.program.await_rows(road.HOME[:number])
        yield session


def desktop(language, folder):
    """Each time with fresh tabs and fresh speakers."""
    for views in ([Session.overview, Session.speakers], [Session.group], [Session.hood], [Session.update, Session.wlan]):
        with home(language, folder, screen=DESKTOP) as session:
            for view in views:
                view(session)


def wide(language, folder):
    with home(language, folder, screen=WIDE) as session:
        session.program.resize(1500, 1000)
        session.shoot("overview-wide")


def hand_held(language, folder, screen, name):
    """The window fills the screen, as it does there."""
    with home(language, folder, screen=screen, app=os.environ["VIRELO_APP_ANDROID"]) as session:
        session.program.resize(*(int(length) for length in screen.split("x")))
        session.shoot(f"overview-{name}")
        session.open_row(LEFT)
        session.shoot(f"air-{name}")
        session.open_row(SUB)
        session.shoot(f"sub-{name}")


def debug(language, folder):
    """With a DNS-SD daemon that knows of no speaker, so that the log tells of the start alone."""
    road.Avahi().renew()
    with running(language, folder, debug=True) as session:
        session.program.click_tab("DEBUG")
        session.shoot("debug")


def profiles(language, folder):
    """No button of the program leads to this view."""
    subprocess.run([os.environ["VIRELO_PROFILES_VIEW"], SUB, folder / language / "profiles.png"], check=True,
                   env={**os.environ, "LC_ALL": LOCALES[language], "DISPLAY": road.Display.name(DESKTOP)},
                   stderr=subprocess.DEVNULL)


def main():
    folder = pathlib.Path(sys.argv[1]).resolve()
    try:
        for language in LOCALES:
            desktop(language, folder)
            wide(language, folder)
            hand_held(language, folder, TABLET, "tablet")
            hand_held(language, folder, PHONE, "phone")
            debug(language, folder)
            profiles(language, folder)
            print(f"screenshots: {language}", flush=True)
    finally:
        road.Display.end()


main()
