"""What the whole-program tests share: one desktop a class, a program and an agent a test."""
import contextlib
import json
import os
import sys
import unittest

import dbus

from desktop_session import DesktopSession, wait_until
from drivers import Agent, Program
from tray import TrayItem


class DesktopCase(unittest.TestCase):
    """Starts its desktop once; `parts` are DesktopSession's arguments."""
    parts = {}

    @classmethod
    def setUpClass(cls):
        cls.desktop = DesktopSession(**cls.parts).__enter__()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        self.cleanup = contextlib.ExitStack()
        self.addCleanup(self.cleanup.close)
        self.said = []  # (who, its lines) of every process started

    def run(self, result=None):
        """Shows what the processes said when a test has failed."""
        result = result or self.defaultTestResult()
        before = len(result.failures) + len(result.errors)
        super().run(result)
        if len(result.failures) + len(result.errors) > before:
            for who, lines in self.said:
                print(f"--- {who} ({self.id()})", *lines[-40:], sep="\n", file=sys.stderr)
        return result

    def program(self, *arguments, **options):
        program = self.cleanup.enter_context(Program(self.desktop, *arguments, **options))
        self.said.append((f"korvale-ui {' '.join(arguments)}", program.log.lines))
        return program

    def agent(self, *arguments):
        agent = self.cleanup.enter_context(Agent(self.desktop, *arguments)).wait_ready()
        self.said.append(("agent", agent.output.lines))
        return agent

    def started(self, agent, *arguments, **options):
        """A program that hears the agent: it asks for the driver when it has subscribed."""
        agent.tell("requests clear")
        program = self.program(*arguments, **options)
        wait_until(lambda: {"CMD_": "GDRV"} in agent.requests(), "the program on the bus")
        return program

    def announce(self, agent, *commands):
        """Has the agent say that it started until the program hears it, then the commands."""
        def is_heard():
            agent.tell("start")
            return {"CMD_": "GDRV"} in agent.requests()
        wait_until(is_heard, "the program to hear the agent")
        agent.tell_all(*commands)

    def item(self, program):
        item = TrayItem(self.desktop, program)
        self.cleanup.callback(item.close)
        return item

    def notifications(self):
        """What the recording server was told so far."""
        with contextlib.closing(self.desktop.session_bus()) as bus:
            server = bus.get_object("org.freedesktop.Notifications",
                                    "/org/freedesktop/Notifications")
            return json.loads(server.Calls(dbus_interface="com.korvale.Test"))

    def wait_notification(self, condition, start=0, timeout=20.0):
        def matching():
            return [call for call in self.notifications()[start:] if condition(call)]
        return wait_until(matching, "a notification", timeout)[0]

    def empty_folders(self):
        """Takes away what an earlier test left in the host cache and the user's settings."""
        for folder in (self.desktop.root, self.desktop.folder / "config" / "Korvale",
                       self.desktop.folder / "home" / ".local" / "state" / "Korvale"):
            if folder.exists():
                for path in sorted(folder.rglob("*"), reverse=True):
                    path.rmdir() if path.is_dir() and not path.is_symlink() else os.unlink(path)


__all__ = ["DesktopCase", "wait_until"]
