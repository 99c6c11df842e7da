"""What every desktop has to give: the checks, played with mouse and keyboard and judged by the screen."""
import os
import pathlib

from desktop_case import wait_until
from panel_view import PanelView

EXIT_LINE = r'^INFO "-\[AppDelegate applicationWillTerminate:\]\(\) Bastion KorvaleUI Exit"$'
PICTURES = os.environ.get("KORVALE_PICTURES")  # a folder to leave screenshots in


class AtHome:
    """To be mixed into a DesktopCase whose `session` makes the desktop."""
    session = None

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.session().__enter__()
        cls.addClassCleanup(cls.desktop.stop)

    def setUp(self):
        super().setUp()
        self.panel = PanelView(self.desktop)
        self.panel.rest()
        self.addCleanup(self.desktop.uncover)

    def picture(self, name):
        if PICTURES:
            folder = pathlib.Path(PICTURES)
            folder.mkdir(parents=True, exist_ok=True)
            self.desktop.screenshot(folder / f"{self.desktop.name}-{name}.png".lower())

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
        self.panel.click()
        self.panel.rest()

    def test_start(self):
        self.program()
        self.panel.wait_colour("yellow")
        self.picture("start")

    def test_colours(self):
        agent = self.agent()
        self.started(agent)
        self.panel.wait_colour("yellow")
        agent.tell_all("start", "halyx on")
        self.panel.wait_colour("green")
        self.picture("green")
        agent.tell("driver lost")
        self.panel.wait_colour("red")
        self.picture("red")

    def test_click(self):
        self.shown()
        self.picture("click")

    def test_raise_from_behind(self):
        program = self.shown()
        self.desktop.cover()
        self.assertFalse(self.desktop.in_front(program))
        self.wait_in_front(program, self.click)
        self.picture("raise")

    def test_second_start(self):
        program = self.shown()
        self.desktop.cover()
        self.assertEqual(self.program().wait_exit(), 0)
        wait_until(lambda: self.desktop.in_front(program), "the window in front")
        self.picture("second-start")

    def test_menu(self):
        program = self.program()
        self.panel.wait_colour("yellow")
        before = self.panel.screen()
        self.panel.click(3)
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


class EndsWell:
    """The same for a desktop that ends."""
    session = None

    @classmethod
    def setUpClass(cls):
        cls.desktop = cls.session().__enter__()
        cls.addClassCleanup(cls.desktop.stop)

    def test_end_of_session(self):
        program = self.program()
        PanelView(self.desktop).wait_colour("yellow")
        self.desktop.end()
        self.assertEqual(program.wait_exit(), 0)
        program.wait_log(EXIT_LINE)
