"""The machine fails: no memory, no descriptors, no room, no fonts. The program goes on, and works again
once it can."""
import json
import os
import shutil
import signal
import unittest

from desktop_case import DesktopCase, wait_until
from drivers import host_cache
from texts import text

UNREADABLE = r"^WARN .*file_states.log is there and cannot be read"
CONFIG = "Korvale/KorvaleUI.conf"


def status_of(pid, name):
    with open(f"/proc/{pid}/status", encoding="ascii") as lines:
        return int(next(line for line in lines if line.startswith(name + ":")).split()[1])


class Failures(DesktopCase):
    def setUp(self):
        super().setUp()
        self.empty_folders()

    def limit(self, program, resource, soft):
        self.desktop.run(["prlimit", "--pid", str(program.pid), f"--{resource}={soft}:"])

    def click_notifications(self, item):
        before = item.entry(text("CM_ShowNotifications")).checked
        item.click(item.entry(text("CM_ShowNotifications")))
        wait_until(lambda: item.entry(text("CM_ShowNotifications")).checked != before, "the mark")
        return not before

    @unittest.skipIf("KORVALE_SANITIZE" in os.environ, "a sanitizer ends the program when memory is short")
    def test_a_list_that_memory_does_not_hold_is_absent_and_the_next_one_is_read(self):
        agent = self.agent()
        program = self.started(agent)
        item = self.item(program)
        agent.tell_all("start", "halyx on")
        item.wait_colour("green")
        agent.tell("threat /opt/small.bin 9 1")
        item.wait_colour("red")
        room = status_of(program.pid, "VmSize") * 1024 + (48 << 20)
        self.limit(program, "as", room)
        large = {f"/opt/{number}/{'x' * 1000}": {"State": 9, "ID": str(number)}
                 for number in range(100_000)}
        cache = host_cache(self.desktop)
        (cache / "file_states.log").write_text(json.dumps(large))
        agent.tell("post timer.aggregated_messages")
        at, _ = program.wait_log(UNREADABLE)
        self.assertTrue(item.menu())
        agent.tell_all("threat /opt/other.bin 9 2", "stop")  # writes a small list again
        item.wait_colour("yellow")
        self.assertEqual(sum("cannot be read" in line for line in program.log.lines[at + 1:]), 0)
        self.assertTrue(program.running())

    def test_without_descriptors_it_goes_on_and_reads_again_when_there_are_some(self):
        agent = self.agent()
        program = self.started(agent)
        item = self.item(program)
        agent.tell_all("start", "halyx on")
        item.wait_colour("green")
        agent.tell("threat /opt/a.bin 9 1")  # everything was opened once by now
        item.wait_colour("red")
        present = len(os.listdir(f"/proc/{program.pid}/fd"))
        self.limit(program, "nofile", present)
        agent.tell_all("threat /opt/b.bin 9 2", "exe-blocked /opt/b.bin", "analyzer /opt/c")
        self.assertTrue(item.menu())
        self.click_notifications(item)
        program.wait_log("^WARN .*(cannot be read|cannot be written)")
        self.limit(program, "nofile", 1024)
        agent.tell_all("policy notifications on", "exe-blocked /opt/again.bin")
        if not item.entry(text("CM_ShowNotifications")).checked:
            self.click_notifications(item)
        before = len(self.notifications())
        agent.tell("exe-blocked /opt/seen.bin")
        self.wait_notification(lambda call: "seen.bin" in call["body"], before)

    def test_in_a_home_that_may_only_be_read_the_choice_holds(self):
        config = self.desktop.folder / "config" / "Korvale"
        shutil.rmtree(config, ignore_errors=True)  # of another test's program
        config.parent.mkdir(parents=True, exist_ok=True)
        config.write_text("in the way of the folder")
        self.addCleanup(config.unlink)
        agent = self.agent()
        agent.tell("policy notifications off")
        program = self.started(agent)
        item = self.item(program)
        self.assertTrue(self.click_notifications(item))
        program.wait_log(rf"^WARN .*{CONFIG} cannot be written")
        agent.tell("exe-blocked /opt/shown.bin")
        self.wait_notification(lambda call: "shown.bin" in call["body"])
        self.assertFalse(self.click_notifications(item))
        self.assertEqual(program.count("cannot be written"), 1)

    def test_a_missing_locale_and_missing_fonts_are_no_obstacle(self):
        fonts = self.desktop.folder / "no-fonts.conf"
        fonts.write_text('<?xml version="1.0"?><fontconfig></fontconfig>\n')
        program = self.program(environment={
            "LC_ALL": "xx_YY.UTF-8", "LANGUAGE": "xx", "FONTCONFIG_FILE": str(fonts)})
        item = self.item(program)
        self.assertIn(text("Exit"), [entry.label for entry in item.menu()])
        item.activate()
        wait_until(lambda: self.desktop.run(
            ["xdotool", "search", "--onlyvisible", "--pid", str(program.pid), "--name",
             "KorvaleUI"], check=False).split(), "the window")
        os.kill(program.pid, signal.SIGTERM)
        self.assertEqual(program.wait_exit(), 0)

    def test_a_missing_plug_in_of_the_toolkit_is_one_clear_line(self):
        program = self.program("-platform", "nosuch")
        self.assertNotEqual(program.wait_exit(), 0)
        program.wait_log("^ERROR .*nosuch")
