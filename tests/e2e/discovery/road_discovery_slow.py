# SPDX-License-Identifier: MIT
"""What needs real seconds: the time limit of the resolve, and a daemon that hangs."""

import time

import engine_road

HANG_S = 10
TIME_LIMIT_S = 5


class Time_Limit_Test(engine_road.Engine_Test):
    def test_an_unresolvable_service_is_given_up_silently_after_5_s(self):
        with self.announcer() as announcer, self.engine() as engine:
            engine.start()
            announcer.service("Fence")
            engine.await_events("added", 1)
            before = engine.state()
            announcer.pointer("Nobody")
            engine.await_state("it is being resolved", resolvers=2)
            begun = time.monotonic()
            after = engine.await_state("it was given up", resolvers=1)
            taken = time.monotonic() - begun
            self.measured("s until it was given up", round(taken, 2))
            self.assertGreater(taken, TIME_LIMIT_S - 1)
            self.assertLess(taken, TIME_LIMIT_S + 5)
            self.assertEqual(self.names(engine.events()), ["Fence"])
            self.assertEqual(after["descriptors"], before["descriptors"])

    def test_a_host_without_address_for_longer_than_5_s_is_not_given_up(self):
        with self.announcer() as announcer, self.engine() as engine:
            engine.start()
            announcer.service("Waiting", "nowhere.local")
            announcer.pointer("Nobody")
            engine.await_state("both are being resolved", resolvers=2)
            engine.await_state("one was given up after 5 s, the other is still listened to", resolvers=1, known=0)
            announcer.address("nowhere.local", "127.0.0.41")
            added = engine.await_events("added", 1)[0]
            self.assertEqual((added["name"], added["ip"]), ("Waiting", "127.0.0.41"))


class Hanging_Daemon_Test(engine_road.Engine_Test):
    def hang(self, engine):
        """Lets 10 s go by, and looks at the event loop all the while."""
        end = time.monotonic() + HANG_S
        latest = 0
        while time.monotonic() < end:
            latest = max(latest, engine.state()["latest_beat_ms"])
            time.sleep(0.1)
        self.measured("latest beat in ms", latest)
        return latest

    def test_a_browse_on_a_daemon_that_hangs_for_10_s_holds_nothing_up(self):
        with self.announcer() as announcer, self.engine() as engine:
            announcer.services(["One", "Two"])
            self.avahi.pause()
            try:
                engine.state()
                self.measured("ms that the call took", engine.start()["call_ms"])
                self.assertLess(self.hang(engine), 1000)
                self.assertEqual(engine.events(), [])
            finally:
                self.avahi.resume()
            self.assertEqual(self.names(engine.await_events("added", 2)), ["One", "Two"])

    def test_a_daemon_that_hangs_for_10_s_while_services_are_known_holds_nothing_up(self):
        with self.announcer() as announcer, self.engine() as engine:
            announcer.services(["One", "Two"])
            engine.start()
            engine.await_events("added", 2)
            self.avahi.pause()
            try:
                engine.state()
                # Every release waits in the background.
                engine.stop()
                engine.start()
                self.assertLess(self.hang(engine), 1000)
            finally:
                self.avahi.resume()
            self.assertEqual(self.names(engine.await_events("added", 4)), ["One", "One", "Two", "Two"])
            engine.await_state("both are listened to", resolvers=2, known=2)

    def test_a_resolve_is_given_up_after_5_s_while_the_daemon_hangs(self):
        with self.announcer() as announcer, self.engine() as engine:
            engine.start()
            announcer.pointer("Nobody")
            engine.await_state("it is being resolved", resolvers=1)
            self.avahi.pause()
            try:
                begun = time.monotonic()
                # Another call stands in the poll thread's way.
                engine.stop()
                engine.start()
                engine.await_state("it was given up", resolvers=0)
                self.assertLess(time.monotonic() - begun, HANG_S)
            finally:
                self.avahi.resume()

    def test_the_program_ends_at_once_while_the_daemon_hangs(self):
        with self.announcer() as announcer:
            announcer.service("One")
            engine = engine_road.Engine(self.service_type)
            try:
                engine.start()
                engine.await_events("added", 1)
                self.avahi.pause()
                try:
                    begun = time.monotonic()
                    self.end(engine)
                    self.measured("s until its end", round(time.monotonic() - begun, 2))
                    self.assertLess(time.monotonic() - begun, HANG_S)
                finally:
                    self.avahi.resume()
            finally:
                engine.close()


if __name__ == "__main__":
    engine_road.main()
