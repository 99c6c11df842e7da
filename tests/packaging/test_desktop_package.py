"""The packages as an administrator and a user meet them, in a fresh Debian 12.

Arguments: the korvale-ui package and a folder to keep the made root in. Needs root, mmdebstrap, the network."""
import pathlib
import subprocess
import sys
import tempfile
import unittest

from fresh_debian import CleanRoot

PACKAGE, CACHE = sys.argv.pop(1), sys.argv.pop(1)
HERE = pathlib.Path(__file__).resolve().parent
SESSION = ("dbus", "dbus-x11", "libglib2.0-bin", "locales", "lxqt-panel", "lxqt-session", "openbox", "xdotool", "xvfb")
ENTRY = """[Desktop Entry]
Type=Application
Name=KorvaleUI
Exec=korvale-ui
Icon=com.korvale.ui
"""
AUTOSTART = "etc/xdg/autostart/com.korvale.ui.desktop"


def package_of_1_0_0(folder):
    """What 1.0.0 installed, by name; its autostart entry did not ask whether the program is there."""
    tree = pathlib.Path(folder) / "korvale-ui"
    for name, content in {
            "DEBIAN/control": "Package: korvale-ui\nVersion: 1.0.0\nArchitecture: all\nDescription: as it was\n"
                              "Maintainer: KorvaleUI developers <developers@korvale.invalid>\n",
            "DEBIAN/conffiles": f"/{AUTOSTART}\n",
            AUTOSTART: ENTRY + "X-GNOME-Autostart-enabled=true\n",
            "usr/bin/korvale-ui": "#!/bin/sh\necho KorvaleUI 1.0.0\n",
            "usr/share/applications/com.korvale.ui.desktop": ENTRY,
            "usr/share/dbus-1/system.d/com.korvale.agent_server.conf": "<busconfig/>\n",
            "usr/share/doc/korvale-ui/changelog.gz": "",
            "usr/share/korvale-ui/Info.json": "{}\n"}.items():
        path = tree / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(content)
    (tree / "usr/bin/korvale-ui").chmod(0o755)
    package = pathlib.Path(folder) / "korvale-ui_1.0.0_all.deb"
    subprocess.run(["dpkg-deb", "--root-owner-group", "--build", tree, package], check=True, stdout=subprocess.DEVNULL)
    return package


class Life(unittest.TestCase):
    """One life of the package, from an upgrade to its end: each step needs the one before."""

    def setUp(self):
        self.root = CleanRoot(CACHE, SESSION)
        self.root.__enter__()
        self.addCleanup(self.root.__exit__)
        self.root.run("localedef", "-i", "de_DE", "-f", "UTF-8", "de_DE.UTF-8")
        self.root.run("useradd", "--create-home", "--shell", "/bin/sh", "ada")
        self.root.run("install", "-d", "-m", "1777", "/tmp/.X11-unix")
        self.script, _, self.package = self.root.put(HERE / "session_in_root.sh", HERE / "desktop_screen.sh", PACKAGE)

    def log_in(self, patience=300):
        return self.root.run("sh", self.script, user="ada", environment={
            "HOME": "/home/ada", "LANG": "de_DE.UTF-8", "PATIENCE": str(patience)}).stdout

    def test_it_is_installed_starts_with_a_session_and_goes_without_a_trace(self):
        with self.subTest("nothing is there before"):
            self.assertEqual(self.root.holding("korvale"), set())
        with tempfile.TemporaryDirectory() as folder:
            old = self.root.put(package_of_1_0_0(folder))
            self.root.apt("install", *old)
        self.assertNotIn("TryExec", (self.root.folder / AUTOSTART).read_text())

        self.root.apt("update")
        self.root.apt("install", self.package)
        self.assertIn("TryExec=korvale-ui", (self.root.folder / AUTOSTART).read_text())
        self.assertFalse(list((self.root.folder / "etc/xdg/autostart").glob("*.dpkg-*")))
        self.assertRegex(self.root.run("korvale-ui", "--version", user="ada").stdout, r"^KorvaleUI 1\.[1-9]")
        self.assertEqual(self.root.run("dpkg", "--verify", "korvale-ui").stdout, "")

        said = self.log_in()
        self.assertIn("'korvale-ui'", said)
        self.assertIn("'KorvaleUI'", said)
        self.assertIn("Details anzeigen", said)
        self.assertIn("window shown", said)

        self.root.apt("remove", "korvale-ui")
        self.assertTrue((self.root.folder / AUTOSTART).exists(), "an administrator's file stays until the purge")
        self.assertIn("nothing started", self.log_in(25))
        self.assertNotIn("korvale", (self.root.folder / "home/ada/session.log").read_text())

        self.root.apt("purge", "korvale-ui")
        left = self.root.holding("korvale")
        self.assertEqual({path for path in left if not path.startswith("home/ada/.config/Korvale")}, set())
        self.assertIn("home/ada/.config/Korvale/KorvaleUI.conf", left, "the user's own settings stay")


if __name__ == "__main__":
    unittest.main(verbosity=2)
