"""Rows of a table written to a file that the person chooses, by keyboard, and what may go wrong with it."""
import contextlib
import csv
import io
import json
import os
import pathlib
import stat

from window_case import WindowCase, text, wait_until

THREATS = ("threat /tmp/Alpha.exe 1 id-a", "threat /srv/Alpha.exe 1 id-a", "threat /tmp/=beta.exe 1 id-b",
           "threat /tmp/gamma.pdf 1 id-c")
SHOWN_CSV, SHOWN_JSON, SELECTED_CSV, SELECTED_JSON = range(4)


def sentence(key, *values):
    parts = text(key).split("%@")
    return "".join(part + value for part, value in zip(parts, [*values, ""]))


class ExportCase(WindowCase):
    def setUp(self):
        super().setUp()
        self.publish(*THREATS)
        self.open_window()
        self.go_to("HPS_Threats", 3)

    def choose(self, entry):
        """An entry of the menu that Control+S opens, by keyboard."""
        before = self.windows()
        self.press("ctrl+s")
        wait_until(lambda: self.windows() - before, "the menu")
        self.press(*["Down"] * entry, "Return")

    def wait_sentence(self, key, *values):
        self.wait_text(sentence(key, *values))

    def rows(self, path):
        return list(csv.DictReader(io.StringIO(path.read_text(encoding="utf-8"), newline="")))


class WithoutPortal(ExportCase):
    def test_the_toolkits_dialog_asks_for_the_place_and_the_shown_rows_are_written(self):
        folder = self.desktop.folder / "home"
        self.press("ctrl+f")
        self.desktop.run(["xdotool", "type", "exe"])
        wait_until(lambda: self.current_tab()[1] == 2, "two rows")
        self.choose(SHOWN_CSV)
        dialog = wait_until(lambda: self.desktop.run(
            ["xdotool", "search", "--onlyvisible", "--name", text("HPS_ExportTitle")], check=False).split(),
            "the dialog")[0]
        self.desktop.run(["xdotool", "windowactivate", "--sync", dialog])
        wait_until(lambda: "threats.csv" in self.read("texts"), "the offered name")
        self.press("ctrl+a")
        self.desktop.run(["xdotool", "type", "mine.csv"])  # in the home folder
        self.press("Return")
        self.wait_sentence("HPS_ExportDone", str(folder / "mine.csv"), "2")
        rows = self.rows(folder / "mine.csv")
        self.assertEqual([row["file"] for row in rows], ["alpha.exe", "'=beta.exe"])
        self.assertEqual(rows[0]["paths"], "/tmp/Alpha.exe\n/srv/Alpha.exe")
        self.assertEqual(list(rows[0]), ["file", "category", "score", "found", "id", "paths"])
        self.press("Escape")  # the field's text goes
        wait_until(lambda: self.current_tab()[1] == 3, "all rows")


class PortalCase(ExportCase):
    def setUp(self):
        super().setUp()
        self.desktop.start_service("file-portal", "file_portal.py")
        self.addCleanup(self.desktop.stop_part, "file-portal")

    def portal(self, method, *arguments):
        with contextlib.closing(self.desktop.session_bus()) as bus:
            portal = bus.get_object("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop",
                                    introspect=False)
            return portal.get_dbus_method(method, "com.korvale.Test")(*arguments)

    def export_to(self, place, entry=SHOWN_CSV):
        self.portal("SetPlace", place if "://" in place else pathlib.Path(place).as_uri())
        self.choose(entry)


class WithPortal(PortalCase):
    def test_the_portal_asks_for_the_place(self):
        path = self.desktop.folder / "home" / "größe 1.json"
        self.export_to(str(path), SHOWN_JSON)
        self.wait_sentence("HPS_ExportDone", str(path), "3")
        rows = json.loads(path.read_text(encoding="utf-8"))
        self.assertEqual([row["id"] for row in rows], ["id-a", "id-b", "id-c"])
        self.assertEqual(rows[0]["paths"], ["/tmp/Alpha.exe", "/srv/Alpha.exe"])
        parent, title, name = json.loads(self.portal("Asked"))[0]
        self.assertEqual(int(parent.removeprefix("x11:"), 16), int(self.window()))
        self.assertEqual((title, name), (text("HPS_ExportTitle"), "threats.json"))

    def test_the_selection_is_written(self):
        path = self.desktop.folder / "home" / "selected.csv"
        self.click_row(1)
        self.export_to(str(path), SELECTED_CSV)
        self.wait_sentence("HPS_ExportDone", str(path), "1")
        self.assertEqual([row["id"] for row in self.rows(path)], ["id-b"])

    def test_no_place_is_no_export(self):
        self.portal("SetPlace", "")
        before = sorted((self.desktop.folder / "home").rglob("*"))
        self.choose(SHOWN_CSV)
        wait_until(lambda: json.loads(self.portal("Asked")), "the question")
        self.assertEqual(sorted((self.desktop.folder / "home").rglob("*")), before)

    def test_what_is_no_ordinary_file_is_refused_and_stays(self):
        fifo = self.desktop.folder / "home" / "fifo.csv"
        os.mkfifo(fifo)
        self.addCleanup(fifo.unlink)
        for place in (str(fifo), "/dev/full", str(fifo.parent), "sftp://host/a.csv"):
            self.export_to(place)
            self.wait_sentence("HPS_ExportNoFile", place)
        self.assertTrue(stat.S_ISFIFO(fifo.stat().st_mode))
        self.assertTrue(stat.S_ISCHR(os.stat("/dev/full").st_mode))

    def test_a_place_that_cannot_be_written_names_the_reason(self):
        place = str(self.desktop.folder / "home" / "no such folder" / "a.csv")
        self.export_to(place)
        self.wait_sentence("HPS_ExportFailed", place, os.strerror(2))


class FullDisk(PortalCase):
    """The program alone sees a file system of 64 KiB."""

    def program(self, *arguments, **options):
        self.disk = self.desktop.folder / "small disk"
        self.disk.mkdir(exist_ok=True)
        fill = 'mount -t tmpfs -o size=64k small "$0" && printf old >"$0/a.csv" && exec "$@"'
        own = ["unshare", "-m"] if os.geteuid() == 0 else ["unshare", "-c", "--keep-caps", "-m"]
        return super().program(*arguments, **options, prefix=[*own, "sh", "-c", fill, str(self.disk)])

    def seen_there(self):
        """The disk as the program sees it."""
        return pathlib.Path(f"/proc/{self.details.pid}/root{self.disk}")

    def test_a_full_disk_is_one_sentence_and_the_old_file_stays(self):
        self.publish(*[f"threat /tmp/{number:04}-{'x' * 180}.exe 1 id-{number}" for number in range(500)])
        wait_until(lambda: self.current_tab()[1] == 503, "the rows")
        self.export_to(str(self.disk / "a.csv"))
        self.wait_sentence("HPS_ExportNoRoom", str(self.disk / "a.csv"))
        self.assertEqual((self.seen_there() / "a.csv").read_text(), "old")
        self.assertEqual(os.listdir(self.seen_there()), ["a.csv"])
        self.assertTrue(self.details.running())
        self.click_row(0)
        self.export_to(str(self.disk / "a.csv"), SELECTED_CSV)  # for one row there is room
        self.wait_sentence("HPS_ExportDone", str(self.disk / "a.csv"), "1")
        self.assertEqual([row["id"] for row in self.rows(self.seen_there() / "a.csv")], ["id-a"])

