# SPDX-License-Identifier: MIT
"""A group from its creation to its end: what the window shows and what the speakers hold agree after each step."""

import road
from road import OVERVIEW

LEFT, RIGHT, KITCHEN = "Wohnzimmer links", "Wohnzimmer rechts", "Küche"
MASTER = road.Speaker("127.0.0.11")
RECEIVERS = {RIGHT: road.Speaker("127.0.0.12"), KITCHEN: road.Speaker("127.0.0.13")}
# Found as well, and no members: the volume of the group reaches every speaker of the list.
OTHERS = [road.Speaker("127.0.0.14"), road.Speaker("127.0.0.15")]
IS_MASTER = 'is group Master of "Feier"'
IS_MEMBER = 'is a Member of "Feier"'
ALONE = "in Zuhause"


class Group_Test(road.Road_Test):
    def open_dialog(self, program, name):
        program.click_tab(OVERVIEW)
        program.click_row(name)
        program.click_tab(OVERVIEW)
        program.click_button("Group >>")
        return program.await_one("Client_Group")

    def select(self, program, dialog, name):
        tree = program.one("QTreeWidget", parent=dialog["widget"])
        program.click_at(tree, [row for row in tree["rows"] if row["texts"][0] == name][0])

    def status_in_dialog(self, program, dialog, name):
        tree = program.one("QTreeWidget", parent=dialog["widget"])
        return [row["texts"][1] for row in tree["rows"] if row["texts"][0] == name][0]

    def agree(self, program, members):
        """The speakers' own Songcast state and the tree of the overview tell the same group, or none for None."""
        uuid = MASTER.sender()["uuid"]

        def speakers_hold_it():
            return (MASTER.sender()["enabled"] == (members is not None)
                    and all(receiver.receiver() == ({"state": 1, "sender": uuid} if name in (members or ())
                                                    else {"state": 0, "sender": ""})
                            for name, receiver in RECEIVERS.items()))

        def tree_shows_it():
            rows = {row["texts"][1]: (row["texts"][2], row["parent"]) for row in program.rows()}
            if members is None:
                wanted = {LEFT: (ALONE, -1), RIGHT: (ALONE, -1), KITCHEN: (ALONE, -1)}
            else:
                wanted = {"Feier": ("Is your Group", -1), LEFT: (IS_MASTER, 0)}
                wanted.update({name: (IS_MEMBER, 0) if name in members else (ALONE, -1) for name in RECEIVERS})
            return all(rows.get(name) == value for name, value in wanted.items()) and \
                ("Feier" in rows) == (members is not None)

        road.await_condition(speakers_hold_it, lambda: f"the speakers hold the group {members}: "
                             f"{MASTER.sender()}, {[r.receiver() for r in RECEIVERS.values()]}")
        road.await_condition(tree_shows_it, lambda: f"the tree shows the group {members}:\n{program.screen()}")

    def test_three_speakers_play_as_one_and_part_again(self):
        with self.speakers() as speakers, self.program() as program:
            road.await_condition(lambda: len(program.rows()) == 6, lambda: program.screen())
            program.mark()
            dialog = self.open_dialog(program, LEFT)
            program.one("QLabel", text='Click "Create Group"!')
            program.click_button("Create Group")
            program.await_one("QInputDialog", text="Create Group")
            line = program.one("QLineEdit", text="VIRELO Group")
            program.type(line, "Feier")  # the proposed name is selected
            program.key(line, "Return")
            program.await_one("QPushButton", text="Dissolve Group")
            self.assertEqual(program.widgets("QLabel", text='Click "Create Group"!'), [])
            self.agree(program, [])
            self.assertEqual(MASTER.sender()["groupname"], "Feier")

            for count, name in enumerate(RECEIVERS, 1):
                self.select(program, dialog, name)
                program.click_button("Add to Group", window=dialog["window"])
                self.agree(program, list(RECEIVERS)[:count])
                self.assertEqual(self.status_in_dialog(program, dialog, name), "Group member")
            program.click_button("<< Back", window=dialog["window"])
            self.assertEqual([w["text"] for w in program.widgets("QPushButton", enabled=True)
                              if w["text"] != "Quit"], [])

            program.click_tab(OVERVIEW)
            program.click_row("Feier")
            program.await_one("Client_Settings_Group")
            self.assertEqual(program.current_tab(), "Feier")
            slider = program.one("RZSlider", value=0)
            program.focus(slider)
            program.key(slider, "End")  # ten up and no more
            for speaker in [MASTER, *RECEIVERS.values(), *OTHERS]:
                speaker.await_value("vo", "10")
            program.one("QLabel", text="Volume: 10 / 100")
            program.click_button("Coax SPDIF")
            MASTER.await_value("IN", "D")
            self.assertEqual(RECEIVERS[RIGHT].value("IN"), "W")

            dialog = self.open_dialog(program, RIGHT)
            program.click_button("Remove from Group", window=dialog["window"])  # it came up selected
            self.agree(program, [KITCHEN])
            self.assertEqual(self.status_in_dialog(program, dialog, RIGHT), "Available")

            program.click_button("Dissolve Group", window=dialog["window"])
            self.agree(program, None)
            self.assertEqual(program.widgets("Client_Group"), [])
            complaints = [line for line in speakers.output.lines() if "  !! " in line]
            self.assertEqual(complaints, [])

    def test_a_group_that_the_speakers_hold_is_shown_at_start(self):
        with self.speakers("group"), self.program() as program:
            program.await_rows(["Salon", "Salon links", "Salon rechts", "Flur"])
            program.mark()
            self.assertEqual(program.row("Salon links")["texts"][2], 'is group Master of "Salon"')
            self.assertEqual(program.row("Salon rechts")["texts"][2], 'is a Member of "Salon"')
            program.click_row("Salon rechts")
            program.click_tab(OVERVIEW)
            program.click_button("Group >>")
            dialog = program.await_one("Client_Group")
            self.assertEqual(self.status_in_dialog(program, dialog, "Salon rechts"), "Group member")
            program.one("QPushButton", text="Remove from Group", enabled=True)
            program.one("QPushButton", text="Add to Group", enabled=False)


road.main()
