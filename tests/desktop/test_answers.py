"""Why the icon has its colour and what to do, told by the window in words."""
import json

from window_case import WindowCase, text, wait_until


class Why(WindowCase):
    def names(self):
        return [name for _, name, _ in self.tree()]

    def report_nothing(self):
        """Lists that are there, and empty."""
        self.reported_agent.tell_all(
            'raw-file header.log {"MessageMask":17}', "raw-file file_states.log {}",
            "raw-file process_states.log {}", "post timer.aggregated_messages")

    def test_the_line_says_what_the_icon_shows_and_why(self):
        self.report_nothing()
        self.open_window()
        self.wait_text(text("HPS_WhyGood"))
        self.assertNotIn(text("HPS_WhatNow"), self.names())
        self.go_to("HPS_Exploits", 0)  # a new threat is not looked at
        self.publish("threat /tmp/a.exe 1 id-a")
        self.status_item.wait_colour("red")
        self.wait_text(text("HPS_WhyThreat"))
        self.reported_agent.tell("driver lost")
        self.wait_text(text("HPS_WhyDriverMissing"))
        self.reported_agent.tell("driver connected")
        self.wait_text(text("HPS_WhyThreat"))

    def test_a_yellow_icon_is_explained(self):
        self.report_nothing()
        self.open_window()
        self.wait_text(text("HPS_WhyGood"))
        self.reported_agent.tell_all("halyx off", "quillmar off")
        self.status_item.wait_colour("yellow")
        self.wait_text(text("HPS_WhyOffline"))

    def test_the_question_is_answered_by_keyboard(self):
        self.report_nothing()
        self.open_window()
        self.wait_text(text("HPS_WhyGood"))
        self.reported_agent.kill()
        self.wait_text(text("HPS_WhyAgentAway"))
        button = wait_until(lambda: [described for _, name, described in self.tree()
                                     if name == text("HPS_WhatNow")], "the question")
        self.assertEqual(button, [text("HPS_NowAgentAway")])
        x, y = self.place(text("HPS_WhatNow"))
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])
        self.wait_text(text("HPS_NowAgentAway"))
        self.press("space")  # the click gave it the focus
        wait_until(lambda: text("HPS_NowAgentAway") not in self.names(), "the answer to go")

    def test_the_end_of_a_background_scan_is_told(self):
        self.report_nothing()
        self.open_window()
        self.reported_agent.tell("post btdscancomplete")
        start = text("HPS_LastScan").partition("%@")[0]
        wait_until(lambda: any(name.startswith(start) for name in self.names()), start)


class Find(WindowCase):
    def field(self):
        """The middle of the field on the screen."""
        return self.place(text("HPS_Find"))

    def count(self, shown, rows):
        first, second, last = text("HPS_FindCount").split("%@")
        self.wait_text(f"{first}{shown}{second}{rows}{last}")

    def test_typing_leaves_out_rows_and_says_so_until_escape(self):
        self.publish("threat /tmp/Alpha.exe 1 id-a", "threat /tmp/beta.exe 1 id-b",
                     "threat /tmp/gamma.pdf 1 id-c")
        self.open_window()
        self.go_to("HPS_Threats", 3)
        self.press("ctrl+f")
        self.desktop.run(["xdotool", "type", "EXE al"])
        self.wait_tab(self.current_tab()[0], 1)
        self.count(1, 3)
        self.publish("threat /tmp/alarm.exe 1 id-d")
        self.count(2, 4)
        self.desktop.run(["xdotool", "type", "pha"])
        self.count(1, 4)
        self.assertEqual(json.loads(self.read("texts")), ["EXE alpha"])
        self.press("Escape")
        wait_until(lambda: self.current_tab()[1] == 4, "all rows")
        self.assertEqual(json.loads(self.read("texts")), [""])
        self.assertIsNotNone(self.window())
