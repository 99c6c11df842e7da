"""What launchers and file managers read: the menu entry with its actions, the bus's service file, and the entries
"Scan for threats". Argument: the program, whose options they use."""
import configparser
import pathlib
import shlex
import subprocess
import sys
import unittest

PROGRAM = sys.argv.pop(1)
PACKAGING = pathlib.Path(__file__).resolve().parents[2] / "packaging"
LANGUAGES = ("de", "es", "fr", "ja")
KDE = "file-managers/kde-service-menu.desktop"
NEMO = "file-managers/nemo-action.nemo_action"
THUNAR = "file-managers/thunar-sendto.desktop"
MENU = "com.korvale.ui.desktop"


def entry(name):
    parser = configparser.ConfigParser(interpolation=None, delimiters=("=",), strict=True)
    parser.optionxform = str
    parser.read_string((PACKAGING / name).read_text(encoding="utf-8"))
    return parser


class LauncherFiles(unittest.TestCase):
    def actions(self, name):
        parser = entry(name)
        wanted = [action for action in parser["Desktop Entry"]["Actions"].split(";") if action]
        self.assertEqual([f"Desktop Action {action}" for action in wanted],
                         [group for group in parser if group.startswith("Desktop Action ")])
        return {action: parser[f"Desktop Action {action}"] for action in wanted}

    def test_every_name_is_there_in_every_language(self):
        for name in (MENU, KDE, NEMO, THUNAR):
            for group in entry(name).values():
                for key in ("Name", "Comment"):
                    if key in group:
                        translated = [group.get(f"{key}[{language}]", "") for language in LANGUAGES]
                        self.assertTrue(all(translated), f"{name}: {group.name}, {key}")

    def test_the_menu_entry_has_the_three_actions_and_is_started_by_the_bus(self):
        self.assertEqual(list(self.actions(MENU)), ["show-details", "scan-folder", "check-updates"])
        self.assertEqual(entry(MENU)["Desktop Entry"]["DBusActivatable"], "true")
        service = entry("com.korvale.ui.service.in")["D-BUS Service"]
        self.assertEqual(service["Name"], MENU.removesuffix(".desktop"))
        self.assertNotIn("DBusActivatable", entry("com.korvale.ui-autostart.desktop")["Desktop Entry"])

    def test_whatever_they_start_the_program_knows(self):
        known = subprocess.run([PROGRAM, "--help"], check=True, capture_output=True, text=True, timeout=20).stdout
        for name in (MENU, KDE, NEMO, THUNAR):
            for group in entry(name).values():
                program, *arguments = shlex.split(group.get("Exec", "korvale-ui"))
                self.assertEqual(program, "korvale-ui")
                for option in (one for one in arguments if one.startswith("-") and one != "--"):
                    self.assertIn(f" {option} ", known, name)

    def test_folders_are_offered_to_be_scanned_and_never_opened_by_the_program(self):
        for name in (KDE, THUNAR):
            self.assertEqual(entry(name)["Desktop Entry"]["MimeType"], "inode/directory;")
        self.assertEqual(entry(NEMO)["Nemo Action"]["Extensions"], "dir;")
        # Whatever a folder is called, it is no option; and whoever clicked has no terminal to read complaints in.
        scan = "korvale-ui --scan --notify -- "
        self.assertEqual([entry(NEMO)["Nemo Action"]["Exec"], entry(THUNAR)["Desktop Entry"]["Exec"],
                          self.actions(KDE)["scan"]["Exec"]], [scan + "%U", scan + "%F", scan + "%F"])
        self.assertNotIn("MimeType", entry(MENU)["Desktop Entry"])


unittest.main()
