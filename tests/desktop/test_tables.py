"""What stands in the four tables, and what the copy key makes of it."""
import json

from window_case import WindowCase, text, wait_until


class Tables(WindowCase):
    def test_threats(self):
        self.publish("threat /home/me/One.exe 1 id-a", "threat /home/me/Two.exe 1 id-a",
                     "threat /home/me/Three.exe 10 id-b", "threat /home/me/Four,five.exe 2 id-c 55")
        self.status_item.wait_colour("red")
        self.open_window()
        self.go_to("HPS_Threats", 3)
        self.status_item.wait_colour("green")  # someone has looked
        rows = {row[0]: row[1:] for row in self.cells()}
        self.assertEqual(rows["one.exe"], [text("Unsafe"), "2", "id-a"])
        self.assertEqual(rows["three.exe"], [text("Quarantined"), "1", "id-b"])
        self.assertEqual(rows["four,five.exe"], [text("Abnormal"), "1", "id-c"])
        tips = {row[0] for row in self.tips()}
        self.assertIn("/home/me/One.exe\n\n/home/me/Two.exe\n\n", tips)
        self.assertIn("[Quarantined:]\n/home/me/Three.exe\n\n", tips)

    def test_exploits(self):
        self.publish("exploit 100 /usr/bin/player alert 3 1",
                     "exploit 101 /usr/bin/viewer blocked 1 12",
                     "exploit 102 /usr/bin/editor terminated 2 1",
                     "exploit 103 /usr/bin/harmless ignored 2 1")
        self.open_window()
        self.go_to("HPS_Exploits", 3)
        self.assertEqual(sorted(self.cells()),
                         [["editor", text("Terminated"), "2", "102"],
                          ["player", text("Alert"), "3", "100"],
                          ["viewer", text("Blocked"), "1", "101"]])

    def test_events_come_newest_first(self):
        self.open_window()
        self.publish("threat /home/me/first.exe 1 id-a")
        self.go_to("HPS_Events", 1)
        self.publish("threat /home/me/second.exe 9 id-b", "exploit 7 /usr/bin/p blocked 1 12")
        self.go_to("HPS_Events", 3)
        cells = self.cells()
        self.assertEqual(cells[2][3], "/home/me/first.exe")
        self.assertEqual({row[1] for row in cells[:2]}, {"Threat", "Exploit"})
        self.assertEqual(self.tips(), cells)

    def test_devices(self):
        self.publish("device USB-Storage Block 0781 5583 4C53")
        self.publish('device "Phone (MTP)" FullAccess 04e8 6860 R58M')
        self.open_window()
        self.go_to("HPS_ExternalDevices", 3)  # the changed list comes whole each time, on purpose
        cells = self.cells()
        self.assertEqual({tuple(row[:4] + row[5:]) for row in cells},
                         {("USB-Storage", "0781", "5583", "4C53", text("Blocked")),
                          ("Phone (MTP)", "04e8", "6860", "R58M", text("FullAccess"))})
        self.assertEqual(self.tips(), cells)

    def test_every_table_has_its_titles(self):
        self.open_window()
        for tab, columns in (("HPS_Threats", "File Category Found ID"),
                             ("HPS_Exploits", "Process Category Found PID"),
                             ("HPS_Events", "When Category Event Details"),
                             ("HPS_ExternalDevices",
                              "DeviceType VendorID ProductID SerialNumber When Action")):
            self.go_to(tab, 0)
            self.assertEqual(json.loads(self.read("titles")),
                             [text(f"HPS_Col{column}") for column in columns.split()])

    def test_a_click_on_a_title_sorts_and_a_second_turns_it(self):
        self.publish("threat /tmp/c.exe 1 id-1", "threat /tmp/a.exe 1 id-2",
                     "threat /tmp/b.exe 1 id-3")
        self.open_window()
        self.go_to("HPS_Threats", 3)
        self.assertEqual(self.names(), ["c.exe", "a.exe", "b.exe"])
        self.click_title("HPS_ColFile")
        wait_until(lambda: self.names() == ["a.exe", "b.exe", "c.exe"], "the sorted rows")
        self.click_row(0)
        first = self.copied()
        self.assertTrue(first[1].startswith("a.exe,"), first)
        self.click_title("HPS_ColFile")
        wait_until(lambda: self.names() == ["c.exe", "b.exe", "a.exe"], "the turned rows")
        # positions stay selected, whatever stands there after a sort
        self.press("Tab")
        turned = self.copied("\n".join(first))
        self.assertTrue(turned[1].startswith("c.exe,"), turned)

    def names(self):
        return [row[0] for row in self.cells()]

    def click_title(self, key):
        x, y = json.loads(self.read(f"place:{text(key)}"))
        self.desktop.run(["xdotool", "mousemove", str(x), str(y), "click", "1"])

    def test_a_changed_batch_replaces_the_threats(self):
        self.publish("threat /tmp/a.exe 1 id-a", "threat /tmp/b.exe 1 id-b")
        self.open_window()
        self.go_to("HPS_Threats", 2)
        self.publish("threat /tmp/a.exe 0 id-a")
        self.wait_tab(text("HPS_Threats") + " ", 1)
        self.assertEqual(self.cells(), [["b.exe", text("Unsafe"), "1", "id-b"]])

    def test_texts_from_files_are_no_markup(self):
        hostile = "<b>bold</b>&amp;<img src=x>\u202egpj.exe"
        self.publish(f'device "{hostile}" Block 1 2 3')
        self.open_window()
        self.go_to("HPS_ExternalDevices", 1)
        self.assertIn("<b>bold</b>&amp;", self.cells()[0][0])


class Copying(WindowCase):
    def test_a_threat_is_a_line_for_each_of_its_paths(self):
        self.publish("threat /home/me/one.exe 1 id-a", "threat /home/me/two.exe 1 id-a")
        self.open_window()
        self.go_to("HPS_Threats", 1)
        self.click_row(0)
        lines = self.copied()
        self.assertEqual(lines[0], '"File","Category","Score","Found","ID","Path"')
        # empty lines of the remembered paths are copied, too
        fields = [line.split(",") for line in lines[1:] if line and not line.endswith(",")]
        self.assertEqual([field[:2] + field[3:] for field in fields],
                         [["one.exe", text("Unsafe"), "2", "id-a", f"/home/me/{name}.exe"]
                          for name in ("one", "two")])

    def test_several_exploits_are_copied_in_order(self):
        self.publish("exploit 100 /usr/bin/player alert 3 1",
                     "exploit 101 /usr/bin/viewer blocked 1 12")
        self.open_window()
        self.go_to("HPS_Exploits", 2)
        names = [row[0] for row in self.cells()]
        self.click_row(1)
        self.click_row(0, "ctrl")
        lines = self.copied()
        self.assertEqual(lines[0], '"Process Name","Category","Found","PID","Path"')
        self.assertEqual([line.split(",")[0] for line in lines[1:3]], names)

    def test_nothing_selected_copies_the_header_alone(self):
        self.publish("threat /tmp/x.exe 1 id-x")
        self.open_window()
        self.go_to("HPS_Threats", 1)
        self.focus_table()
        self.assertEqual(self.copied(), ['"File","Category","Score","Found","ID","Path"', ""])

    def focus_table(self):
        """Keyboard focus without a selection: a click on the empty part of the table."""
        x, y = self.middle_of_row(0)
        self.desktop.run(["xdotool", "mousemove", str(x), str(y + 250), "click", "1"])

    def test_events_and_devices_share_one_remembered_selection(self):
        self.open_window()
        self.publish("device USB-A Block 1 2 A")
        self.publish("threat /tmp/first.exe 1 id-a", "threat /tmp/second.exe 1 id-b")
        self.go_to("HPS_ExternalDevices", 1)
        self.click_row(0)
        device = self.copied()
        self.assertEqual(device[0],
                         '"Device Type","Product ID","Vendor ID","Serial Number","When","Action"')
        self.assertTrue(device[1].startswith("USB-A,2,1,A,"), device)
        self.go_to("HPS_Events", 2)
        self.click_row(0)
        events = self.copied("\n".join(device))
        self.assertEqual(events[0], '"When","Category","Event","Details"')
        # row 0 was chosen among the events, and is copied among the devices
        self.go_to("HPS_ExternalDevices", 1)
        self.press("Tab")
        self.assertEqual(self.copied("\n".join(events)), device)
        # row 1 was chosen among the events; the devices have none, so that copy is abandoned
        self.go_to("HPS_Events", 2)
        self.click_row(1)
        events = self.copied("\n".join(device))
        self.go_to("HPS_ExternalDevices", 1)
        self.press("Tab", "ctrl+c")
        self.go_to("HPS_Events", 2)  # a round trip later the clipboard still holds the events
        self.assertEqual(self.clipboard().split("\n"), events)
