"""Buses and servers are killed and come back, a hundred times, in changing orders."""
import contextlib
import os
import random
import signal

from desktop_case import DesktopCase, wait_until
from test_failures import status_of


class Restarts(DesktopCase):
    """Everybody the program deals with is killed, and comes back, in changing orders."""
    ROUNDS = int(os.environ.get("KORVALE_RESTARTS", "100"))
    PARTS = ("system-bus", "session-bus", "notifications", "panel", "portal")

    def kill(self, part):
        with contextlib.suppress(KeyError):
            self.desktop.stop_part(part, signal.SIGKILL)

    def bring_back(self, part):
        if part == "system-bus":
            self.desktop.start_system_bus()
        elif part == "session-bus":
            self.desktop._start_session_bus()
        elif part == "notifications":
            self.desktop.start_notifications()
        elif part == "panel":
            self.desktop.start_panel()
        else:
            self.desktop.start_service("portal", "settings_portal.py", "0")

    def test_in_any_order_they_come_back_and_are_used_again(self):
        self.empty_folders()
        orders = random.Random(1)
        program = self.program()
        self.item(program)
        threads = descriptors = None
        for number in range(self.ROUNDS):
            killed = orders.sample(self.PARTS, orders.randint(1, len(self.PARTS)))
            if "session-bus" in killed:  # nobody on it outlives it
                killed += [part for part in self.PARTS[2:] if part not in killed]
            for part in killed:
                self.kill(part)
            # Who needs the session bus comes back after it, in any order.
            back = sorted(orders.sample(killed, len(killed)), key=lambda part: "bus" not in part)
            for part in back:
                self.bring_back(part)
            with self.subTest(round=number, killed=killed, back=back):
                self.assertTrue(program.running())
                self.show_it_works(program)
            if number == 9:
                threads, descriptors = self.used(program)
        if threads is not None:
            wait_until(lambda: self.used(program)[0] <= threads, "no more threads than before")
            self.assertLessEqual(self.used(program)[1], descriptors + 5)

    def used(self, program):
        return (status_of(program.pid, "Threads"), len(os.listdir(f"/proc/{program.pid}/fd")))

    def show_it_works(self, program):
        wait_until(lambda: self.desktop.has_name("com.korvale.ui"), "the name", 60)
        item = self.item(program)
        with contextlib.ExitStack() as stack:
            agent = stack.enter_context(contextlib.closing(self.agent_once()))
            self.announce(agent, "halyx on")
            item.wait_colour("green", 60)
            self.announce(agent, "halyx off", "quillmar off")
            item.wait_colour("yellow", 60)
        item.close()

    def agent_once(self):
        agent = self.agent()
        agent.close = agent.kill
        return agent
