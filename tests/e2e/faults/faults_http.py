# SPDX-License-Identifier: MIT
"""The JSON API of a speaker answers with nothing, with less than it should, or with far too much."""

import fault_road
import road
from fault_road import NETWORK_DESCRIPTORS, NETWORK_THREADS, SERVICE_DESCRIPTORS, memory, speaker

NAME = "Prüfling"
WELL = "Gesund"
UNKNOWN = 99  # a type without a worker, so that what came with a speaker goes with it
HUGE = "50000000"
# What a row's status tells of the network info: the name of the WLAN, or nothing where no reply could be read.
TOLD, UNTOLD = "in Zuhause", "in "
STATUS = {
    "none": TOLD,
    "reset": UNTOLD,
    "error-page": UNTOLD,
    "empty": UNTOLD,
    "empty-object": UNTOLD,
    "half": UNTOLD,
    "too-long": TOLD,  # all of the document is there, though more was announced
    "too-short": UNTOLD,
    "wrong-types": UNTOLD,
    "wrong-members": UNTOLD,
    "huge": UNTOLD,
    "bulky": UNTOLD,
}


class Http_Test(fault_road.Fault_Test):
    def settled(self, program, expected):
        """Nothing is in flight for any speaker: the rows are drawn, and the search has ended in appearance too."""
        program.await_rows(expected)
        self.assertEqual({row["texts"][1]: row["texts"][2] for row in program.rows()}, expected)
        self.assertEqual(program.widgets("Busy_Label"), [])
        self.assertEqual([w for w in program.widgets("QLabel") if "Found" in w["text"] or "Searching" in w["text"]], [])


class Reply_Test(Http_Test):
    def test_every_spoilt_reply_counts_once(self):
        prober = speaker(0, NAME, UNKNOWN, ssid="Zuhause", present=False, faults={"http-size": HUGE})
        well = speaker(1, WELL, UNKNOWN, ssid="Zuhause")
        with self.speakers({"speakers": [prober, well]}) as house, self.watched() as program:
            self.settled(program, {WELL: TOLD})
            for fault, status in STATUS.items():
                with self.subTest(fault):
                    house.do("fault", NAME, "http", fault)
                    house.do("join", NAME)
                    self.settled(program, {WELL: TOLD, NAME: status})
                    self.answers(program)
                    # One more round shows that the count came back to nothing, and to no less.
                    house.do("leave", WELL)
                    self.settled(program, {NAME: status})
                    house.do("join", WELL)
                    self.settled(program, {WELL: TOLD, NAME: status})
                    if fault == "none":
                        program.mark()
                        before = memory(program, "VmHWM")
                    house.do("leave", NAME)
                    self.settled(program, {WELL: TOLD})
                    program.await_mark(more_descriptors=-SERVICE_DESCRIPTORS)
            self.took_less(program, before + 125, "MB; five replies of 50 MB come at a time")
            house.do("join", NAME)
            program.await_rows({WELL, NAME})


class Silence_Test(Http_Test):
    """A speaker that takes a request and never answers holds the search open, until it goes."""

    def searching(self, program, found):
        label = program.await_one("QLabel", text=f"<b>Speakers Found: {found}...</b>")
        self.assertTrue(label["visible"])
        self.assertEqual(len(program.widgets("Busy_Label")), 1)
        self.assertEqual(program.rows(), [])

    def await_requests(self, house, name, count, start=0):
        road.await_condition(lambda: len([event for event in house.events(name, start) if event.startswith("<- POST")])
                             >= count, f"{name} has {count} requests")

    def test_a_silent_speaker_that_goes_takes_its_requests_with_it(self):
        silent = speaker(0, NAME, UNKNOWN, present=False, faults={"http": "silent"})
        well = speaker(1, WELL, UNKNOWN, ssid="Zuhause", present=False)
        with self.speakers({"speakers": [silent, well]}) as house, self.watched() as program:
            program.mark()
            house.do_all([("join", NAME), ("join", WELL)])
            self.await_requests(house, NAME, 5)
            self.await_requests(house, WELL, 5)
            self.searching(program, 2)
            house.do("leave", NAME)
            self.settled(program, {WELL: TOLD})
            program.move_mark(NETWORK_THREADS, NETWORK_DESCRIPTORS + SERVICE_DESCRIPTORS)
            self.answers(program)
            house.do("leave", WELL)
            self.settled(program, {})
            house.do("join", WELL)
            self.settled(program, {WELL: TOLD})

    def test_replies_that_come_behind_the_departure_change_nothing(self):
        # One request of five is held at each turn, so that the others end before the speaker goes.
        paths = ["/api/v19/device.action", "/api/v19/network.action", "/api/v19/songcast/sender.action",
                 "/api/v19/songcast/receiver.action", "/api/v20/bluetooth.action"]
        held = speaker(0, NAME, UNKNOWN, ssid="Zuhause", present=False, faults={"http": "hold"})
        well = speaker(1, WELL, UNKNOWN, ssid="Zuhause")
        with self.speakers({"speakers": [held, well]}) as house, self.watched() as program:
            self.settled(program, {WELL: TOLD})
            program.mark()
            for path in paths:
                with self.subTest(path):
                    house.do("fault", NAME, "http-only", path)
                    start = house.output.count()
                    house.do("join", NAME)
                    self.await_requests(house, NAME, 5, start)
                    house.do("leave", NAME)
                    self.settled(program, {WELL: TOLD})
                    self.answers(program)
                    house.do("leave", WELL)
                    self.settled(program, {})
                    house.do("join", WELL)
                    self.settled(program, {WELL: TOLD})
                    program.await_mark()


class Scan_Test(Http_Test):
    """The WLANs that a speaker sees, asked for in a dialog."""

    def networks(self, program, dialog):
        return [row["texts"][0] for row in program.one("QTreeWidget", window=dialog["window"])["rows"]]

    def test_a_spoilt_scan_leaves_a_list_without_networks(self):
        seen = speaker(0, NAME, UNKNOWN, ssid="Zuhause", networks=[{"ssid": "Garten", "signal_level": "-48"}],
                       faults={"http-only": "wifiscan", "http-size": HUGE})
        with self.speakers({"speakers": [seen]}) as house, self.watched() as program:
            self.settled(program, {NAME: TOLD})
            program.click_row(NAME)
            program.click_tab(road.OVERVIEW)
            program.mark()
            for fault, status in STATUS.items():
                with self.subTest(fault):
                    house.do("fault", NAME, "http", fault)
                    start = house.output.count()
                    program.click_button("WiFi >>")
                    house.output.await_line("wifiscan", start)
                    dialog = program.await_one("Client_WLANs")
                    if fault == "wrong-types":  # a reply all the same, though one without a list
                        box = program.await_one("QMessageBox", message="No Speakers found")
                        program.click_button("OK", window=box["widget"])
                    program.await_mark()  # the request has ended
                    names = ["Garten"] if status == TOLD else [""] if fault == "wrong-members" else []
                    self.assertEqual(self.networks(program, dialog), names)
                    self.answers(program)
                    program.click_button("<< Back", window=dialog["widget"])
                    road.await_condition(lambda: not program.widgets("Client_WLANs"), "the dialog is gone")


road.main()
