"""The four options that send one request and end."""
import subprocess
import time

from desktop_case import DesktopCase, wait_until


class NoScan(DesktopCase):
    """With a tray and an agent that would scan."""
    parts = {"notifications": None}

    def test_a_folder_scan_of_a_file_becomes_a_tray_program_that_scans_nothing(self):
        regular = self.desktop.folder / "regular file"
        regular.write_text("")
        agent = self.agent()
        program = self.program("-folder-scan", str(regular))
        self.item(program).wait_colour("yellow")
        wait_until(lambda: {"CMD_": "GOPV"} in agent.requests(), "the first poll")
        self.assertEqual({request["CMD_"] for request in agent.requests()},
                         {"GDRV", "CUST", "POLY", "GPUT", "GOPV"})


class OneShot(DesktopCase):
    parts = {"panel": False, "notifications": None}

    def test_each_option_sends_its_request_and_ends_after_the_reply(self):
        folder = self.desktop.folder / "Ärger mit Leerzeichen"
        folder.mkdir(exist_ok=True)
        for number in range(20):
            (folder / f"{number}").write_text(f"{number}")
        agent = self.agent("--scan-folder", str(folder))
        agent.tell("scan-pace 1000")  # the background scan is still running when it is stopped
        for arguments, request, name in (
                (["-update"], {"CMD_": "CHKU"}, "checkUpdates"),
                (["-background-scan"], {"CMD_": "SCAN", "START": " "}, "scanBackground"),
                (["-background-scan-stop"], {"CMD_": "SCAN", "STOP": " "}, "stopScan"),
                (["-folder-scan", str(folder)], {"CMD_": "SCAN", "START": str(folder)},
                 "forwardFolderScan")):
            with self.subTest(arguments=arguments):
                program = self.program(*arguments)
                self.assertEqual(program.wait_exit(), 0)
                program.wait_log(rf"^INFO \"Service returned 'OK' for {name}\.\"$")
                self.assertIn(request, agent.requests())

    def test_it_works_without_a_display(self):
        agent = self.agent()
        program = self.program("-update", environment={"DISPLAY": None})
        self.assertEqual(program.wait_exit(), 0)
        program.wait_log(r"^INFO \"Service returned 'OK' for checkUpdates\.\"$")
        self.assertIn({"CMD_": "CHKU"}, agent.requests())

    def test_an_absent_agent_ends_it_at_once(self):
        program = self.program("-update")
        self.assertEqual(program.wait_exit(8), 0)
        self.assertEqual(program.count("Service returned"), 0)

    def test_a_silent_agent_ends_it_after_fifteen_waits(self):
        agent = self.agent()
        agent.tell("hang on")
        program = self.program("-update")
        start = time.monotonic()
        self.assertEqual(program.wait_exit(30), 0)
        self.assertGreater(time.monotonic() - start, 14)
        self.assertEqual(program.count("Service returned"), 0)

    def test_a_refusal_is_logged_as_an_error(self):
        agent = self.agent()
        agent.tell('set-reply CHKU {"RESP": "ok"}')
        program = self.program("-update")
        self.assertEqual(program.wait_exit(), 0)
        program.wait_log(r'^ERROR "Service returned bad status for checkUpdates\."$')

    def test_a_folder_scan_without_a_folder_keeps_running(self):
        regular = self.desktop.folder / "regular file"
        regular.write_text("")
        for arguments in (["-folder-scan"], ["-folder-scan", str(regular)],
                          ["-folder-scan", "/nonexistent"]):
            with self.subTest(arguments=arguments):
                program = self.program(*arguments)
                program.wait_log("Bundle ID")
                with self.assertRaises(subprocess.TimeoutExpired):
                    program.wait_exit(2)
                self.assertEqual(program.count(r"app\("), 0)  # no single-instance rule either

    def test_a_one_shot_start_leaves_a_running_instance_alone(self):
        agent = self.agent()
        first = self.program()
        wait_until(lambda: self.desktop.has_name("com.korvale.ui"), "the program's name")
        self.assertEqual(self.program("-update").wait_exit(), 0)
        self.assertTrue(first.running())
        self.assertIn({"CMD_": "CHKU"}, agent.requests())
