"""The status item and its menu, read as a panel reads them."""
import os
import re
import signal
import socket

from desktop_case import DesktopCase, wait_until
from texts import text

NORMAL_MENU = ["ShowDetailsMenu", None, "CheckForUpdates", "CM_CheckForPolicyUpdate", "About", None,
               "CM_ShowNotifications", None, "Exit"]
ADVANCED_MENU = NORMAL_MENU[:-2] + [None, "TM_Logging", "TM_Detection", None, "Exit"]


class Tray(DesktopCase):
    def labels(self, keys, language="en"):
        return ["---" if key is None else text(key, language) for key in keys]

    def menu_labels(self, item):
        return [repr(entry) for entry in item.menu()]

    def test_the_item_is_yellow_at_first_and_says_so(self):
        item = self.item(self.program())
        item.wait_colour("yellow")
        self.assertEqual(item.tooltip().split("\n"), [text("ProductEP"), text("OfflineMode")])

    def test_the_item_has_the_programs_two_names(self):
        item = self.item(self.program())
        self.assertEqual(str(item.property("Id")), "korvale-ui")
        self.assertEqual(str(item.property("Title")), "KorvaleUI")

    def test_all_of_the_item_can_be_asked_for_at_once(self):
        item = self.item(self.program())
        item.wait_colour("yellow")
        everything = item.properties()
        self.assertEqual(everything["Category"], "ApplicationStatus")
        self.assertEqual(everything["Status"], "Active")
        self.assertEqual(everything["Title"], "KorvaleUI")
        self.assertEqual(everything["Menu"], "/MenuBar")
        self.assertEqual(everything["IconPixmap"].signature, "(iiay)")
        self.assertLessEqual({16, 22, 24, 32, 48, 64}, {int(width) for width, _, _ in everything["IconPixmap"]})
        self.assertEqual(str(everything["ToolTip"][2]).split("\n")[0], text("ProductEP"))
        self.assertEqual(str(everything["IconAccessibleDesc"]), str(everything["ToolTip"][2]))

    def test_a_change_is_told_to_the_tray(self):
        agent = self.agent()
        item = self.item(self.started(agent))
        item.wait_colour("yellow")
        with item.heard() as told:
            agent.tell_all("start", "halyx on")
            told.wait_for("member=NewIcon")
            told.wait_for("member=NewToolTip")

    def test_the_picture_is_told_at_every_request_and_the_tooltip_is_not(self):
        agent = self.agent()
        item = self.item(self.started(agent))
        agent.tell_all("start", "halyx on")
        item.wait_colour("green")
        with item.heard() as told:
            agent.tell_all(*["post com.korvale.agent.running"] * 4)  # asks for green each time
            wait_until(lambda: sum("member=NewIcon" in line for line in told.lines) >= 4,
                       "a picture for each")
            self.assertFalse([line for line in told.lines if "member=NewToolTip" in line])

    def test_the_menu_holds_its_items_in_order(self):
        item = self.item(self.program())
        wait_until(item.menu, "the menu")
        self.assertEqual(self.menu_labels(item), self.labels(NORMAL_MENU))
        self.assertTrue(all(entry.enabled for entry in item.menu()))
        self.assertFalse(item.entry(text("CM_ShowNotifications")).checked)

    def test_it_speaks_the_users_language_and_else_english(self):
        for locale, language in (("de_AT.UTF-8", "de"), ("ja_JP.UTF-8", "ja"),
                                 ("fr_FR.UTF-8", "fr"), ("es_MX.UTF-8", "es"),
                                 ("fi_FI.UTF-8", "en")):
            with self.subTest(locale=locale):
                program = self.program(environment={"LANG": locale})
                item = self.item(program)
                self.assertEqual(self.menu_labels(item), self.labels(NORMAL_MENU, language))
                self.assertEqual(item.tooltip().split("\n")[1], text("OfflineMode", language))
                os.kill(program.pid, signal.SIGTERM)
                program.wait_exit()

    def test_the_advanced_menu_offers_levels_and_scans(self):
        item = self.item(self.program("-a"))
        self.assertEqual(self.menu_labels(item), self.labels(ADVANCED_MENU))
        levels = item.entry(text("TM_Logging")).children
        self.assertEqual([entry.label for entry in levels],
                         self.labels(["TM_Error", "TM_Warning", "TM_Information", "TM_All"]))
        scans = item.entry(text("TM_Detection")).children
        self.assertEqual([entry.label for entry in scans],
                         self.labels(["TM_Background", "TM_Folder", "TM_Stop"]))

    def test_the_toolkits_options_leave_the_programs_own(self):
        item = self.item(self.program("-style", "fusion", "-a"))
        self.assertEqual(self.menu_labels(item), self.labels(ADVANCED_MENU))

    def test_the_administrator_can_choose_the_other_icon_set(self):
        first = self.program()
        item = self.item(first)
        item.wait_colour("yellow")
        standard = item.pixmap()
        os.kill(first.pid, signal.SIGTERM)
        first.wait_exit()
        folder = self.desktop.root / "etc" / "korvale-ui"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "Info.json").write_text('{"Use Vexa App Icon": true}')
        self.addCleanup((folder / "Info.json").unlink)
        item = self.item(self.program())
        item.wait_colour("yellow")
        self.assertNotEqual(item.pixmap(), standard)

    def test_the_alternate_picture_is_shown_while_the_menu_is_open(self):
        item = self.item(self.program())
        item.wait_colour("yellow")
        closed = item.pixmap()
        item.open_menu()
        wait_until(lambda: item.pixmap() != closed, "the alternate picture")
        item.close_menu()
        wait_until(lambda: item.pixmap() == closed, "the picture")

    def test_the_folder_chooser_sends_the_folder(self):
        agent = self.agent()
        program = self.program("-a")
        item = self.item(program)
        folder = self.desktop.folder / "to be scanned"
        folder.mkdir(exist_ok=True)
        item.click(item.entry(text("TM_Folder")))
        chooser = wait_until(lambda: self.windows(program), "the chooser")[0]
        self.desktop.run(["xdotool", "windowactivate", "--sync", chooser])
        self.desktop.run(["xdotool", "type", str(folder)])
        self.desktop.run(["xdotool", "key", "Return"])
        wait_until(lambda: {"CMD_": "SCAN", "START": str(folder)} in agent.requests(), "the scan")

    def test_a_one_time_file_gives_the_advanced_menu_once(self):
        folder = self.desktop.folder / "data" / "Korvale"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "uiArgs").write_text("please -a")
        first = self.program()
        self.assertEqual(self.menu_labels(self.item(first)), self.labels(ADVANCED_MENU))
        self.assertFalse((folder / "uiArgs").exists())
        os.kill(first.pid, signal.SIGTERM)
        first.wait_exit()
        self.assertEqual(self.menu_labels(self.item(self.program())), self.labels(NORMAL_MENU))

    def test_without_a_user_interface_the_menu_is_short_and_the_item_green(self):
        folder = self.desktop.root / "etc" / "korvale-ui"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "Info.json").write_text('{"NoKorvaleUI": 1}')
        self.addCleanup((folder / "Info.json").unlink)
        program = self.program()
        item = self.item(program)
        item.wait_colour("green")
        self.assertEqual(self.menu_labels(item), self.labels(["About", None, "Exit"]))
        item.activate()
        self.assertTrue(item.menu())  # the click is handled before this is answered
        self.assertEqual(self.windows(program), [])
        self.assertEqual(self.program().wait_exit(), 0)  # nor does a second start show a window
        self.assertTrue(item.menu())
        self.assertEqual(self.windows(program), [])

    def test_without_a_user_interface_the_agent_is_heard_all_the_same(self):
        folder = self.desktop.root / "etc" / "korvale-ui"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "Info.json").write_text('{"NoKorvaleUI": 1}')
        self.addCleanup((folder / "Info.json").unlink)
        agent = self.agent()
        item = self.item(self.started(agent))
        item.wait_colour("green")
        agent.tell("stop")
        item.wait_colour("yellow")
        agent.tell_all("start", "halyx on")
        item.wait_colour("green")
        agent.tell("driver lost")
        item.wait_colour("red")

    def test_the_administrator_can_take_the_policy_check_away(self):
        folder = self.desktop.root / "etc" / "korvale-ui"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "Info.json").write_text('{"Allow Check For Policy Update": false}')
        self.addCleanup((folder / "Info.json").unlink)
        labels = self.menu_labels(self.item(self.program()))
        self.assertNotIn(text("CM_CheckForPolicyUpdate"), labels)
        self.assertEqual(labels[labels.index(text("CheckForUpdates")) + 1], text("About"))

    def test_exit_ends_the_program(self):
        program = self.program()
        item = self.item(program)
        item.click(item.entry(text("Exit")))
        self.assertEqual(program.wait_exit(), 0)
        program.wait_log(r'^INFO "exitApp\."$')
        program.wait_log(r"applicationWillTerminate")

    def test_the_notification_mark_follows_the_choice_and_is_kept(self):
        self.empty_folders()
        program = self.program()
        item = self.item(program)
        item.click(item.entry(text("CM_ShowNotifications")))
        wait_until(lambda: item.entry(text("CM_ShowNotifications")).checked, "the mark")
        kept = self.desktop.folder / "config" / "Korvale" / "KorvaleUI.conf"
        self.assertEqual(sorted(kept.read_text().split()),
                         ["ShowUserNotificationChanged=1", "UserNotificationOn=1", "[General]"])
        os.kill(program.pid, signal.SIGTERM)
        program.wait_exit()
        item = self.item(self.program())
        self.assertTrue(item.entry(text("CM_ShowNotifications")).checked)
        item.click(item.entry(text("CM_ShowNotifications")))
        wait_until(lambda: not item.entry(text("CM_ShowNotifications")).checked, "no mark")
        self.assertEqual(sorted(kept.read_text().split()),
                         ["ShowUserNotificationChanged=1", "[General]"])
        kept.unlink()

    def test_the_menu_items_send_their_requests(self):
        agent = self.agent()
        item = self.item(self.program("-a"))
        for key, request in (("CheckForUpdates", {"CMD_": "CHKU"}),
                             ("CM_CheckForPolicyUpdate", {"CMD_": "PLYU"}),
                             ("TM_Background", {"CMD_": "SCAN", "START": " "}),
                             ("TM_Stop", {"CMD_": "SCAN", "STOP": " "})):
            item.click(item.entry(text(key)))
            wait_until(lambda: request in agent.requests(), f"{request}")

    def test_the_log_level_marks_follow_the_agent(self):
        agent = self.agent()
        agent.tell('set-reply GLOG {"RESP": "OK", "VALU": "1"}')
        item = self.item(self.program("-a"))
        for _ in range(2):  # asked anew each time the submenu opens
            before = agent.requests().count({"CMD_": "GLOG"})
            item.open(item.entry(text("TM_Logging")))
            wait_until(lambda: agent.requests().count({"CMD_": "GLOG"}) > before, "GLOG")
        wait_until(lambda: item.entry(text("TM_Warning")).checked, "the agent's level")
        item.click(item.entry(text("TM_All")))
        wait_until(lambda: {"CMD_": "SLOG", "VALU": "3"} in agent.requests(), "SLOG")
        wait_until(lambda: item.entry(text("TM_All")).checked, "the chosen level")
        self.assertFalse(item.entry(text("TM_Warning")).checked)

    def test_left_click_opens_the_details(self):
        program = self.program()
        self.item(program).activate()
        wait_until(lambda: self.windows(program), "the window")

    def test_a_panel_without_menus_of_its_own_has_the_item_open_its_menu(self):
        program = self.program()
        item = self.item(program)
        item.open_context_menu()
        wait_until(lambda: self.windows(program), "the menu")
        self.desktop.run(["xdotool", "key", "Escape"])
        wait_until(lambda: not self.windows(program), "the menu to close")

    def windows(self, program):
        return self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid",
                                 str(program.pid)], check=False).split()


class TrayHosts(DesktopCase):
    parts = {"panel": False}

    def test_a_late_host_and_a_restarted_one_show_the_present_item(self):
        program = self.program()
        program.wait_log("Bundle ID")
        self.desktop.start_panel()
        self.item(program).wait_colour("yellow")
        self.desktop.stop_panel()
        agent = self.agent()
        self.announce(agent, "halyx on")
        self.desktop.start_panel()
        item = self.item(program)
        item.wait_colour("green")
        self.assertIn(text("Safe"), item.tooltip())
        self.desktop.stop_panel()


class X11Tray(DesktopCase):
    """The panel takes X11 tray icons, too; the program's bus has no StatusNotifier host."""

    def icon(self):
        """Size and place of the picture in the tray."""
        # A window may go while they are listed.
        for line in self.desktop.run(["xwininfo", "-root", "-tree"], check=False).splitlines():
            place = re.search(r'"korvale-ui"\).* (\d+)x(\d+)\+\S+ +\+(\d+)\+(\d+)$', line)
            if place and int(place[1]) < 64:
                return [int(number) for number in place.groups()]
        return None

    def click(self, button):
        width, height, x, y = wait_until(self.icon, "the icon")
        self.desktop.run(["xdotool", "mousemove", str(x + width // 2), str(y + height // 2),
                          "click", str(button)])

    def windows(self, program):
        return self.desktop.run(["xdotool", "search", "--onlyvisible", "--pid", str(program.pid)],
                                check=False).split()

    def test_the_x11_tray_shows_the_item_and_its_click_opens_the_window(self):
        program = self.program(environment={"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"})
        self.click(1)
        wait_until(lambda: self.desktop.run(
            ["xdotool", "search", "--onlyvisible", "--pid", str(program.pid), "--name",
             "KorvaleUI"], check=False).split(), "the window")

    def test_the_menu_opens_in_the_x11_tray(self):
        program = self.program(environment={"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"})
        wait_until(self.icon, "the icon")
        before = len(self.windows(program))
        self.click(3)
        wait_until(lambda: len(self.windows(program)) > before, "the menu")
        self.desktop.run(["xdotool", "key", "Escape"])
        wait_until(lambda: len(self.windows(program)) == before, "the menu to close")

    def test_a_hanging_session_bus_keeps_the_x11_tray_from_nothing(self):
        path = str(self.desktop.folder / "deaf_bus_beside_a_tray")
        with socket.socket(socket.AF_UNIX) as deaf:
            deaf.bind(path)
            deaf.listen()
            program = self.program(environment={"DBUS_SESSION_BUS_ADDRESS": f"unix:path={path}"})
            self.click(1)
            wait_until(lambda: self.desktop.run(
                ["xdotool", "search", "--onlyvisible", "--pid", str(program.pid), "--name",
                 "KorvaleUI"], check=False).split(), "the window")
            os.kill(program.pid, signal.SIGTERM)
            self.assertEqual(program.wait_exit(5), 0)

    def test_a_tray_that_ends_takes_the_picture_and_nothing_else(self):
        program = self.program(environment={"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"})
        wait_until(self.icon, "the icon")
        self.desktop.stop_part("panel", signal.SIGKILL)
        wait_until(lambda: self.icon() is None, "the picture to go")
        self.desktop.start_panel()
        wait_until(self.icon, "the icon in the new tray")
        self.assertTrue(program.running())


class SessionBusRestart(DesktopCase):
    def test_item_name_and_notifications_come_back_by_themselves(self):
        agent = self.agent()
        agent.tell("policy notifications on")
        program = self.started(agent)
        self.item(program).wait_colour("yellow")
        for part in ("panel", "notifications", "session-bus"):
            self.desktop.stop_part(part, signal.SIGKILL)
        self.desktop._start_session_bus()
        self.desktop.start_notifications()
        self.desktop.start_panel()
        wait_until(lambda: self.desktop.has_name("com.korvale.ui"), "the name")
        item = self.item(program)
        item.wait_colour("yellow")
        item.activate()
        wait_until(lambda: self.desktop.run(
            ["xdotool", "search", "--onlyvisible", "--pid", str(program.pid), "--name",
             "KorvaleUI"], check=False).split(), "the window")
        wait_until(lambda: item.entry(text("CM_ShowNotifications")).checked, "the policy's mark")
        self.announce(agent, "halyx on", "exe-blocked /opt/again")
        self.wait_notification(lambda call: "again" in call["body"])


class Appearance(DesktopCase):
    def test_the_picture_follows_dark_and_light(self):
        self.desktop.start_service("portal", "settings_portal.py", "0")
        self.addCleanup(self.desktop.stop_part, "portal")
        item = self.item(self.program())
        item.wait_colour("yellow")
        light = item.pixmap()
        self.set_scheme(1)
        wait_until(lambda: item.pixmap() != light, "the picture for dark")
        self.set_scheme(2)
        wait_until(lambda: item.pixmap() == light, "the picture for light")

    def test_dark_from_the_start(self):
        light_item = self.item(first := self.program())
        light_item.wait_colour("yellow")
        light = light_item.pixmap()
        os.kill(first.pid, signal.SIGTERM)
        first.wait_exit()
        self.desktop.start_service("portal", "settings_portal.py", "1")
        self.addCleanup(self.desktop.stop_part, "portal")
        item = self.item(self.program())
        wait_until(lambda: item.pixmap() != light, "the picture for dark")

    def set_scheme(self, scheme):
        bus = self.desktop.session_bus()
        self.addCleanup(bus.close)
        bus.get_object("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
                       ).SetColorScheme(scheme, dbus_interface="com.korvale.Test")
