"""What every desktop has to give: the checks, played with mouse and keyboard and judged by the screen."""
import os
import pathlib

from desktop_case import wait_until
from panel_view import PanelView

EXIT_LINE = r'^INFO "-\[AppDelegate applicationWillTerminate:\]\(\) Bastion KorvaleUI Exit"$'
PICTURES = os.environ.get("KORVALE_PICTURES")  # a folder to leave screenshots in


class Played:
    """To be mixed into a DesktopCase whose `session` makes the desktop."""
    session = None

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.session().__enter__()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        super().setUp()
        self.empty_folders()  # a window that an earlier test has enlarged
        self.panel = PanelView(self.desktop)
        self.panel.rest()
        self.panel.wait_none()  # the program before this one may have ended just now

    def picture(self, name):
        if PICTURES:
            folder = pathlib.Path(PICTURES)
            folder.mkdir(parents=True, exist_ok=True)
            self.panel.wait_still()
            self.desktop.screenshot(folder / f"{self.desktop.name}-{name}.png".lower())

    def cover(self):
        self.addCleanup(self.desktop.uncover)
        self.desktop.cover()

    def wait_front(self, program):
        wait_until(lambda: self.desktop.in_front(program), "the window in front")

    def start_again(self):
        wait_until(lambda: self.desktop.has_name("com.korvale.ui"), "the first start to be there")
        self.assertEqual(self.program().wait_exit(), 0)

    def play_colours(self, agent):
        agent.tell_all("start", "halyx on")
        self.panel.wait_colour("green")
        self.picture("green")
        agent.tell("driver lost")
        self.panel.wait_colour("red")
        self.picture("red")

    def check_second_start(self, program):
        """With the window in front: another covers it, and a second start brings it back as it was."""
        self.desktop.enlarge_active()
        self.panel.wait_still()
        before = self.desktop.measures()
        self.cover()
        self.start_again()
        self.wait_front(program)
        wait_until(lambda: self.desktop.measures() == before, f"the window to measure {before}")
        self.picture("second-start")


class AtHome(Played):
    """The checks for a desktop with a tray."""

    def wait_in_front(self, program, wish):
        """Waits for the window in front; wishes again as a person would whom nobody heard."""
        def granted():
            wish()
            try:
                return wait_until(lambda: self.desktop.in_front(program), "the wish to be granted", 4)
            except Exception:  # noqa: BLE001: the outer wait reports it
                return False
        wait_until(granted, "the window in front")

    def shown(self):
        program = self.program()
        self.panel.wait_colour("yellow")
        self.wait_in_front(program, self.click)
        return program

    def click(self):
        self.panel.click(1, self.desktop.clicks_for_window)
        self.panel.rest()

    def test_start(self):
        self.program()
        self.panel.wait_colour("yellow")
        self.picture("start")

    def test_colours(self):
        agent = self.agent()
        self.started(agent)
        self.panel.wait_colour("yellow")
        self.play_colours(agent)

    def test_click(self):
        before = self.panel.screen()
        self.shown()
        self.panel.wait_menu(before)  # a window that has the focus may have to be drawn yet
        self.picture("click")

    def test_raise_from_behind(self):
        program = self.shown()
        self.cover()
        self.assertFalse(self.desktop.in_front(program))
        self.wait_in_front(program, self.click)
        self.picture("raise")

    def test_second_start(self):
        self.check_second_start(self.shown())

    def test_menu(self):
        program = self.program()
        self.panel.wait_colour("yellow")
        before = self.panel.screen()
        self.panel.click(self.desktop.menu_button)
        menu = self.panel.wait_menu(before)
        self.picture("menu")
        self.panel.click_last_entry(menu)
        self.assertEqual(program.wait_exit(), 0)
        program.wait_log(r'^INFO "exitApp\."$')

    def test_host_restart(self):
        agent = self.agent()
        self.started(agent)
        agent.tell_all("start", "halyx on")
        self.panel.wait_colour("green")
        self.desktop.stop_panel()
        self.panel.wait_none()
        self.desktop.start_panel()
        self.panel.wait_colour("green")
        self.picture("host-restart")


class WithoutTray(Played):
    """The same where the window has to give everything: its picture the colours, its button the menu."""

    def shown(self, program=None):
        """In an installed desktop it is the menu entry that starts the program again."""
        program = program or self.program()
        self.start_again()
        self.wait_front(program)
        return program

    def test_start(self):
        self.shown()
        self.panel.wait_colour("yellow")
        self.picture("start")

    def test_colours(self):
        agent = self.agent()
        self.shown(self.started(agent))
        self.play_colours(agent)

    def test_second_start(self):
        self.check_second_start(self.shown())

    def test_menu(self):
        program = self.shown()
        self.panel.wait_still()
        before = self.panel.screen()
        self.desktop.play("key", "F10")
        self.panel.wait_menu(before)
        self.picture("menu")
        self.desktop.play("key", "Up")
        self.desktop.play("key", "Return")
        self.assertEqual(program.wait_exit(), 0)
        program.wait_log(r'^INFO "exitApp\."$')


class OwnTitleBar(Played):
    """For a dark desktop that leaves title bars to the programs."""

    def test_title_bar(self):
        program = self.program()
        self.panel.wait_still()
        before = self.panel.screen()
        self.start_again()
        self.wait_front(program)
        left, top, _, _ = self.panel.wait_menu(before)
        self.picture("dark")
        part = self.desktop.pixels(left + 40, top + 8, 40, 8)
        self.assertLess(sum(part) / len(part), 90)


class EndsWell(Played):
    """For a desktop that ends, with a program that the user has seen."""

    def test_end_of_session(self):
        program = self.program()
        if self.desktop.has_tray:
            self.panel.wait_colour("yellow")
        else:
            self.start_again()
            self.wait_front(program)
        self.desktop.end()
        self.assertEqual(program.wait_exit(), 0)
        program.wait_log(EXIT_LINE)
