# SPDX-License-Identifier: MIT
"""The discovery engine on the real daemon."""

import contextlib
import os
import socket
import tempfile
import threading

import engine_road


class Service_Test(engine_road.Engine_Test):
    def test_a_service_comes_with_all_its_values_and_goes(self):
        with self.announcer() as announcer, self.engine() as engine:
            announcer.address("left.local", "127.0.0.11")
            service = announcer.service("Küche \\ links.1", "left.local", 8123, "id=42", "flag", "a=b=c", "e=")
            engine.start()
            added = engine.await_events("added", 1)[0]
            self.assertEqual(added["name"], "Küche \\ links.1")
            self.assertEqual(added["type"], self.service_type + ".")
            self.assertEqual(added["domain"], "local.")
            self.assertEqual(added["host"], "left.local.")
            self.assertEqual(added["ip"], "127.0.0.11")
            self.assertEqual(added["port"], 8123)
            self.assertEqual(added["interface"], socket.if_nametoindex("lo"))
            self.assertEqual(added["txt"], {"id": "42", "flag": "", "a": "", "e": ""})
            announcer.withdraw(service)
            self.assertEqual(self.names(engine.await_events("removed", 1)), ["Küche \\ links.1"])
            self.assertEqual([e["event"] for e in engine.events()], ["added", "removed"])

    def test_a_service_that_comes_while_the_browse_runs_is_found(self):
        with self.announcer() as announcer, self.engine() as engine:
            engine.start()
            announcer.service("Late")
            self.assertEqual(engine.await_events("added", 1)[0]["ip"], "127.0.0.1")

    def test_two_addresses_of_a_host_are_an_addition_and_an_update(self):
        with self.announcer() as announcer, self.engine() as engine:
            announcer.address("both.local", "127.0.0.21", "127.0.0.22")
            announcer.service("Both", "both.local")
            engine.start()
            updated = engine.await_events("updated", 1)[0]
            added = engine.events("added")
            self.assertEqual(len(added), 1)
            self.assertEqual({added[0]["ip"], updated["ip"]}, {"127.0.0.21", "127.0.0.22"})

    def test_an_address_that_comes_later_is_an_update_and_its_loss_is_nothing(self):
        with self.announcer() as announcer, self.engine() as engine:
            announcer.address("more.local", "127.0.0.31")
            announcer.service("More", "more.local")
            engine.start()
            engine.await_events("added", 1)
            second = announcer.address("more.local", "127.0.0.32")
            self.assertEqual(engine.await_events("updated", 1)[0]["ip"], "127.0.0.32")
            announcer.withdraw(second)
            announcer.service("Fence")
            engine.await_events("added", 2)
            self.assertEqual(len(engine.events()), 3)

    def test_a_service_without_address_is_kept_back_until_one_comes(self):
        with self.announcer() as announcer, self.engine() as engine:
            announcer.service("Waiting", "nowhere.local")
            announcer.service("Fence")
            engine.start()
            self.assertEqual(self.names(engine.await_events("added", 1)), ["Fence"])
            # Its host and port are known by now, and the query for its address is open.
            engine.await_state("both are listened to", resolvers=2, known=1)
            announcer.address("nowhere.local", "127.0.0.41")
            self.assertEqual(self.names(engine.await_events("added", 2)), ["Fence", "Waiting"])

    def test_a_service_that_leaves_before_its_address_came_is_never_told(self):
        with self.announcer() as announcer, self.engine() as engine:
            engine.start()
            service = announcer.service("Ghost", "lost.local")
            engine.await_state("it is being resolved", resolvers=1)
            announcer.withdraw(service)
            announcer.service("Fence")
            self.assertEqual(self.names(engine.await_events("added", 1)), ["Fence"])
            self.assertEqual(len(engine.events()), 1)

    def test_200_services_at_once_come_and_go_and_leave_nothing(self):
        names = [f"Speaker {i}" for i in range(200)]
        with self.announcer() as announcer, self.engine() as engine:
            engine.start()
            fence = announcer.service("Fence")
            engine.await_events("added", 1)
            before = engine.state()

            services = announcer.services(names)
            self.assertEqual(self.names(engine.await_events("added", 201)), sorted([*names, "Fence"]))
            full = engine.await_state("all are listened to", resolvers=201, known=201)
            # Two descriptors a service, and no thread of its own.
            self.assertEqual(full["descriptors"], before["descriptors"] + 400)
            self.assertEqual(full["threads"], before["threads"])
            self.measured("latest beat in ms while they came", full["latest_beat_ms"])
            self.measured("ms from the first to the last",
                          engine.events("added")[-1]["ms"] - engine.events("added")[1]["ms"])

            announcer.withdraw(*services)
            self.assertEqual(self.names(engine.await_events("removed", 200)), sorted(names))
            after = engine.await_state("one is left", resolvers=1, known=1)
            self.assertEqual(after["descriptors"], before["descriptors"])
            self.assertEqual(after["threads"], before["threads"])
            self.assertEqual(len(engine.events("added")), 201)
            self.assertEqual(engine.events("updated", "error"), [])
            announcer.withdraw(fence)

    def test_the_browse_stops_and_starts_again_without_a_trace(self):
        with self.announcer() as announcer, self.engine() as engine:
            announcer.services(["One", "Two"])
            engine.start()
            engine.await_events("added", 2)
            first = engine.state()
            for times in range(2, 6):
                engine.stop()
                self.assertEqual(engine.state()["resolvers"], 0)
                engine.start()
                engine.await_events("added", 2 * times)
            self.assertEqual(len(engine.events("removed")), 8)
            last = engine.state()
            self.assertEqual(last["descriptors"], first["descriptors"])
            self.assertEqual(last["threads"], first["threads"])


class Daemon_Test(engine_road.Engine_Test):
    def check_loss(self, lose):
        with self.engine() as engine:
            with self.announcer() as announcer:
                announcer.services(["One", "Two"])
                announcer.pointer("Nobody")
                engine.start()
                engine.await_events("added", 2)
                before = engine.state()
                lose()
            self.assertEqual(engine.await_events("error", 1)[0]["code"], -3)
            self.assertEqual(self.names(engine.events("removed")), ["One", "Two"])
            engine.await_state("nothing is listened to", resolvers=0, known=0)

            # Told once, and the program does not look for the daemon by itself.
            self.avahi.start()
            with self.announcer() as announcer:
                announcer.services(["Two", "Three"])
                start = engine.output.count()
                engine.start()
                self.assertEqual(self.names(engine.await_events("added", 2, start)), ["Three", "Two"])
                after = engine.state()
            self.assertEqual(after["threads"], before["threads"])
            self.assertEqual(len(engine.events("error")), 1)

    def test_a_daemon_that_is_killed_is_told_once_and_found_again(self):
        self.check_loss(self.avahi.kill)

    def test_a_daemon_that_stops_is_told_once_and_found_again(self):
        self.check_loss(self.avahi.stop)

    def test_daemons_that_come_and_go_leave_nothing(self):
        with self.engine() as engine:
            states = []
            for times in range(1, 5):
                with self.announcer() as announcer:
                    announcer.service("One")
                    engine.start()
                    engine.await_events("added", times)
                    states.append(engine.await_state("it is listened to", resolvers=1))
                    self.avahi.kill()
                engine.await_events("error", times)
                self.avahi.start()
            for key in ("descriptors", "threads"):
                self.assertEqual(len({state[key] for state in states}), 1, states)

    def test_without_a_daemon_the_browse_fails_and_works_once_there_is_one(self):
        self.avahi.stop()
        with self.engine() as engine:
            engine.start()
            self.assertEqual(engine.await_events("error", 1)[0]["code"], -3)
            engine.start()
            engine.await_events("error", 2)
            self.avahi.start()
            with self.announcer() as announcer:
                announcer.service("One")
                engine.start()
                engine.await_events("added", 1)


class Relay:
    """A bus that can be lost without the lab losing its own: it passes every byte on to that one."""

    def __init__(self, folder):
        self.path = folder + "/bus"
        self.real = os.environ["DBUS_SYSTEM_BUS_ADDRESS"].removeprefix("unix:path=")
        self.ends = []
        self.listener = socket.socket(socket.AF_UNIX)
        self.listener.bind(self.path)
        self.listener.listen()
        threading.Thread(target=self._accept, daemon=True).start()

    def _accept(self):
        while True:
            client, _ = self.listener.accept()
            bus = socket.socket(socket.AF_UNIX)
            bus.connect(self.real)
            self.ends += [client, bus]
            for source, sink in ((client, bus), (bus, client)):
                threading.Thread(target=self._pass_on, args=[source, sink], daemon=True).start()

    @staticmethod
    def _pass_on(source, sink):
        with contextlib.suppress(OSError):
            while data := source.recv(65536):
                sink.sendall(data)

    def cut(self):
        """Ends every connection. New ones work."""
        while self.ends:
            end = self.ends.pop()
            end.shutdown(socket.SHUT_RDWR)
            end.close()


class Bus_Test(engine_road.Engine_Test):
    def test_without_a_bus_the_browse_fails(self):
        with self.engine({"DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent/bus"}) as engine:
            engine.start()
            self.assertEqual(engine.await_events("error", 1)[0]["code"], -3)
            self.assertEqual(engine.state()["resolvers"], 0)

    def test_a_bus_that_is_lost_is_told_once_and_found_again(self):
        with tempfile.TemporaryDirectory() as folder, self.announcer() as announcer:
            relay = Relay(folder)
            announcer.service("One")
            with self.engine({"DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={relay.path}"}) as engine:
                for times in range(1, 4):
                    engine.start()
                    engine.await_events("added", times)
                    state = engine.await_state("it is listened to", resolvers=1)
                    relay.cut()
                    self.assertEqual(engine.await_events("error", times)[-1]["code"], -3)
                    self.assertEqual(len(engine.events("removed")), times)
                engine.start()
                engine.await_events("added", 4)
                after = engine.await_state("it is listened to", resolvers=1)
                for key in ("descriptors", "threads"):
                    self.assertEqual(after[key], state[key])
                self.assertEqual(len(engine.events("error")), 3)

    def test_a_bus_that_never_answers_holds_nobody_up(self):
        with tempfile.TemporaryDirectory() as folder, socket.socket(socket.AF_UNIX) as bus:
            bus.bind(folder + "/bus")
            bus.listen()
            bus.settimeout(engine_road.PATIENCE)
            with self.engine({"DBUS_SYSTEM_BUS_ADDRESS": f"unix:path={folder}/bus"}) as engine:
                engine.start()
                connection, _ = bus.accept()
                # The poll thread waits for a word now; the event loop turns, and the browse can be stopped.
                engine.state()
                engine.stop()
                engine.start()
                self.assertEqual(engine.events(), [])
            connection.close()


if __name__ == "__main__":
    engine_road.main()
