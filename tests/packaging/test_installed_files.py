"""What an installation consists of, as `cmake --install` makes it; argument: the build folder."""
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

BUILD = pathlib.Path(sys.argv.pop(1))
MOST_BYTES = 2 * 1024 * 1024
FILES = {
    "etc/xdg/autostart/com.korvale.ui.desktop", "usr/bin/korvale-ui",
    "usr/share/Thunar/sendto/com.korvale.ui.scan.desktop",
    "usr/share/applications/com.korvale.ui.desktop", "usr/share/bash-completion/completions/korvale-ui",
    "usr/share/dbus-1/interfaces/com.korvale.agent_server.xml",
    "usr/share/dbus-1/interfaces/com.korvale.ui.Status1.xml",
    "usr/share/dbus-1/services/com.korvale.ui.service",
    "usr/share/dbus-1/system.d/com.korvale.agent_server.conf",
    "usr/share/doc/korvale-ui/README.md", "usr/share/doc/korvale-ui/SECURITY.md",
    "usr/share/icons/hicolor/scalable/apps/com.korvale.ui.svg",
    "usr/share/icons/hicolor/symbolic/apps/com.korvale.ui-symbolic.svg",
    "usr/share/kio/servicemenus/com.korvale.ui.scan.desktop",
    "usr/share/nemo/actions/com.korvale.ui.scan.nemo_action",
    "usr/share/korvale-ui/Info.json", "usr/share/man/man1/korvale-ui.1",
    "usr/share/man/man5/korvale-ui-files.5", "usr/share/metainfo/com.korvale.ui.metainfo.xml",
    "usr/share/zsh/vendor-completions/_korvale-ui"}


class InstalledFiles(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="korvale-install-")
        cls.addClassCleanup(folder.cleanup)
        cls.root = pathlib.Path(folder.name)
        subprocess.run(["cmake", "--install", BUILD, "--strip", "--prefix", "/usr"], check=True,
                       env={**os.environ, "DESTDIR": folder.name}, stdout=subprocess.DEVNULL)

    def test_they_are_the_program_and_nothing_for_developers(self):
        found = {str(path.relative_to(self.root)) for path in self.root.rglob("*")
                 if path.is_file()}
        self.assertEqual(found, FILES)

    def read_program(self, *options):
        return subprocess.run(["readelf", "--wide", *options, self.root / "usr/bin/korvale-ui"], check=True,
                              capture_output=True, text=True, timeout=20).stdout

    def test_the_program_is_hardened(self):
        header, dynamic = self.read_program("--file-header"), self.read_program("--dynamic")
        segments, symbols = self.read_program("--segments"), self.read_program("--dyn-syms")
        self.assertRegex(header, r"Type:\s+DYN", "position independent")
        self.assertIn("GNU_RELRO", segments)
        self.assertRegex(dynamic, r"FLAGS.*\bNOW\b", "immediate binding")
        self.assertRegex(segments, r"GNU_STACK\s.*\sRW\s", "no executable stack")
        self.assertIn("__stack_chk_fail", symbols)
        self.assertRegex(symbols, r"__\w+_chk@", "fortified calls")
        # The whole program is not marked for it, as Debian's start-up files are not; its code is.
        endbr64 = b"\xf3\x0f\x1e\xfa"
        self.assertGreater((self.root / "usr/bin/korvale-ui").read_bytes().count(endbr64), 1000,
                           "control-flow protection")
        self.assertEqual((self.root / "usr/bin/korvale-ui").stat().st_mode & 0o6000, 0, "no setuid")

    def test_menus_show_the_picture_that_title_bars_show(self):
        drawn = BUILD / "resources" / "CompiledPictures.cpp"  # what the program has, with each picture's drawing
        icon = (self.root / "usr/share/icons/hicolor/scalable/apps/com.korvale.ui.svg").read_text()
        self.assertIn(icon, drawn.read_text())

    def test_they_are_small(self):
        self.assertLess(sum((self.root / name).stat().st_size for name in FILES), MOST_BYTES)

    def test_the_information_dictionary_is_filled(self):
        info = json.loads((self.root / "usr/share/korvale-ui/Info.json").read_text())
        self.assertEqual(info["CFBundleIdentifier"], "com.korvale.ui")
        self.assertRegex(info["CFBundleShortVersionString"], r"^\d+\.\d+\.\d+$")
        self.assertNotIn("@", json.dumps(info))

    def test_the_bus_starts_the_installed_program(self):
        service = (self.root / "usr/share/dbus-1/services/com.korvale.ui.service").read_text()
        self.assertIn("\nExec=/usr/bin/korvale-ui\n", service)

    def test_the_installed_program_finds_its_own_share_folder(self):
        done = subprocess.run([self.root / "usr/bin/korvale-ui", "--version"], check=True,
                              capture_output=True, text=True, timeout=20)
        self.assertRegex(done.stdout, r"^KorvaleUI \d+\.\d+\.\d+ \(.+\)\n$")


unittest.main()
