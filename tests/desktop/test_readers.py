"""What screen readers are told, and told of nothing else."""
import json
import subprocess

from desktop_session import HERE
from drivers import LineReader
from window_case import WindowCase, text

LISTENER = str(HERE / "services" / "accessible_events.py")


class Told(WindowCase):
    def listen(self):
        listener = subprocess.Popen(
            ["/usr/bin/python3", LISTENER, str(self.details.pid)], env=self.desktop.env, text=True,
            stdout=subprocess.PIPE)

        def end():
            listener.kill()
            listener.wait()
            self.lines.join()
            listener.stdout.close()
        self.lines = LineReader(listener.stdout)
        self.cleanup.callback(end)
        self.lines.wait_for("^ready$")

    def told(self, kind):
        """What was told so far, without the marker "ready"."""
        events = [json.loads(line) for line in self.lines.lines if line.startswith("[")]
        return [event[1:] for event in events if event[0] == kind]

    def wait_told(self, kind, role, name):
        self.lines.wait_for(json.dumps([kind, role, name]).replace("[", r"\[")
                            .replace("(", r"\(").replace(")", r"\)").replace("]", r"\]"))

    def test_a_reload_is_no_news_of_the_focus(self):
        self.publish("threat /tmp/a.exe 1 id-a", "threat /tmp/b.exe 1 id-b")
        self.open_window()
        self.go_to("HPS_Threats", 2)
        self.click_row(0)
        self.go_to("HPS_Exploits", 0)  # the threats have a current row, out of sight
        self.listen()
        self.publish("threat /tmp/c.exe 1 id-c", "exploit 7 /usr/bin/p blocked 1 12")
        self.go_to("HPS_Exploits", 1)
        self.click_row(0)
        self.wait_told("focus", "table cell", "p")
        self.publish("threat /tmp/d.exe 1 id-d", "exploit 8 /usr/bin/q blocked 1 12")
        self.go_to("HPS_Exploits", 2)
        self.press("Right")
        self.wait_told("focus", "table cell", text("Blocked"))
        cells = [name for role, name in self.told("focus") if role == "table cell"]
        self.assertEqual(cells, ["p", text("Blocked")])

    def test_titles_and_their_order_are_said(self):
        self.publish("threat /tmp/a.exe 1 id-a")
        self.open_window()
        self.go_to("HPS_Threats", 1)
        self.click_row(0)
        self.listen()
        self.press("Tab")
        self.wait_told("focus", "table column header", text("HPS_ColFile"))
        self.press("Right")
        self.wait_told("name", "table column header", text("HPS_ColCategory"))
        self.press("space")
        self.wait_told("name", "table column header",
                       f"{text('HPS_ColCategory')}, {text('HPS_SortedAscending')}")
