"""What the tests of the details window share: reading it over AT-SPI and working it over X."""
import json

from desktop_case import DesktopCase, wait_until
from desktop_session import HERE, SessionError
from texts import text

READER = str(HERE / "services" / "accessible_window.py")


def window_of(desktop, program):
    """The X window of the program's details window while it is on screen, or None."""
    found = desktop.run(["xdotool", "search", "--onlyvisible", "--pid", str(program.pid), "--name",
                         "KorvaleUI"], check=False).split()
    return found[0] if found else None


class WindowCase(DesktopCase):
    """A connected program whose item is green, its agent collecting batches."""
    parts = {"accessibility": True}

    def setUp(self):
        super().setUp()
        self.empty_folders()
        self.reported_agent = self.agent()
        self.details = self.started(self.reported_agent)
        self.status_item = self.item(self.details)
        self.reported_agent.tell_all("start", "halyx on", "quillmar on", "batch on")
        self.status_item.wait_colour("green")

    def publish(self, *commands):
        self.reported_agent.tell_all(*commands, "publish")

    # Reading

    def read(self, what):
        return self.desktop.run(["/usr/bin/python3", READER, str(self.details.pid), what],
                                check=False)

    def current_tab(self):
        """(label, number of rows) of the tab on screen, or None."""
        label, separator, rows = self.read("rows").rstrip("\n").rpartition("\t")
        return (label, int(rows)) if separator else None

    def wait_tab(self, label, rows):
        seen = []

        def is_there():
            seen.append(self.current_tab())
            return seen[-1] == (label, rows)
        try:
            wait_until(is_there, f"{label!r} with {rows} rows")
        except SessionError as error:
            raise SessionError(f"{error}, last seen: {seen[-1]}") from None

    def cells(self):
        return json.loads(self.read("cells"))

    def tips(self):
        """The tooltips of the current table's cells, which are their descriptions."""
        return json.loads(self.read("tips"))

    def tree(self):
        """(role, name, description) of everything in the window."""
        return [tuple(json.loads(line)[1:]) for line in self.read("tree").splitlines()]

    def place(self, name):
        """The middle of the first thing of that name on the screen."""
        return json.loads(self.read(f"place:{name}"))

    def names(self):
        return [name for _, name, _ in self.tree()]

    def details_text(self):
        """What stands in the pane, or nothing while it is not there."""
        fields = json.loads(self.read("texts") or "[]")
        return next((field for field in fields if "\t" in field), "")

    def wait_line(self, key, value):
        line = f"{text(key)}\t{value}"
        wait_until(lambda: line in self.details_text().split("\n"), repr(line))

    def wait_details_closed(self):
        wait_until(lambda: text("HPS_PaneCopyPath") not in self.names(), "the pane to close")

    def wait_text(self, wanted):
        """Waits for a label (or another accessible) with exactly that name."""
        wait_until(lambda: any(name == wanted for _, name, _ in self.tree()), repr(wanted))

    # Working

    def window(self):
        return window_of(self.desktop, self.details)

    def windows(self):
        """All that the program has on the screen, menus too."""
        return set(self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid", str(self.details.pid)],
                                    check=False).split())

    def open_window(self):
        self.status_item.activate()
        window = wait_until(self.window, "the window")
        self.desktop.run(["xdotool", "windowactivate", "--sync", window])
        wait_until(self.current_tab, "the window's accessibles")
        return window

    def press(self, *keys):
        for key in keys:
            self.desktop.run(["xdotool", "key", key])

    def go_to(self, key, rows):
        """Changes to the tab whose label begins with that text by the keyboard."""
        for _ in range(4):
            if self.current_tab()[0].startswith(text(key)):
                break
            before = self.current_tab()[0]
            self.press("ctrl+Next")
            wait_until(lambda before=before: self.current_tab()[0] != before, "another tab")
        wait_until(lambda: self.current_tab()[1] == rows, f"{rows} rows of {key}")

    def middle_of_row(self, row):
        """A place on the screen inside the first cell of the row."""
        return json.loads(self.read(f"cell:{row}"))

    def click_row(self, row, *modifiers):
        x, y = self.middle_of_row(row)
        for modifier in modifiers:
            self.desktop.run(["xdotool", "keydown", modifier])
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])
        for modifier in modifiers:
            self.desktop.run(["xdotool", "keyup", modifier])

    def clipboard(self):
        return self.desktop.run(["xclip", "-selection", "clipboard", "-o"], check=False)

    def copied(self, before=""):
        """What Control+C puts on the clipboard, as lines."""
        self.press("ctrl+c")
        return wait_until(lambda: self.clipboard() != before and self.clipboard(),
                          "the clipboard").split("\n")


__all__ = ["READER", "WindowCase", "window_of", "wait_until", "text"]
