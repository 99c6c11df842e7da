"""What a person sees of the item: a coloured spot in the panel, to be hit with the mouse."""
import time

from desktop_session import wait_until
from tray import hue_name

FEWEST_PIXELS = 25  # of one hue, to be a shield and no fringe of a letter
MENU_PIXELS = 3000  # that differ at least when a menu is open
RESTING = (640, 780)  # where the pointer is taken, which some compositors draw into what others see of the screen
POINTER = 40  # its size at most
LAST_ENTRY = 18  # pixels from the menu's lower edge to the middle of its last entry


class PanelView:
    def __init__(self, session):
        self.session = session

    def spot(self):
        """(colour, x, y) of the item's middle on the screen, or None while none is to be seen."""
        x, y, width, height = self.session.panel_place
        data = self.session.pixels(x, y, width, height)
        places = {"red": [], "yellow": [], "green": []}
        for offset in range(0, len(data), 3):
            red, green, blue = data[offset:offset + 3]
            if max(red, green, blue) - min(red, green, blue) < 50:
                continue
            if name := hue_name(red, green, blue):
                places[name].append((offset // 3 % width, offset // 3 // width))
        colour, found = max(places.items(), key=lambda entry: len(entry[1]))
        if len(found) < FEWEST_PIXELS:
            return None
        return colour, x + sum(p[0] for p in found) // len(found), y + sum(p[1] for p in found) // len(found)

    def wait_colour(self, colour):
        """Waits for the item in that colour; returns its place."""
        return wait_until(lambda: (spot := self.spot()) and spot[0] == colour and spot[1:],
                          f"a {colour} picture in the panel")

    def wait_none(self):
        wait_until(lambda: self.spot() is None, "the picture to go")

    def click(self, button=1, times=1):
        _, x, y = wait_until(self.spot, "a picture in the panel")
        self.session.play("mousemove", x - 3, y)
        self.session.play("mousemove", x, y)
        time.sleep(0.3)  # a panel looks where the pointer is now and then only
        self.session.play("click", "--repeat", times, "--delay", 60, button)

    def rest(self):
        """Takes the pointer away, and with it the tooltip."""
        self.session.play("mousemove", *RESTING)

    def wait_still(self):
        """Waits until nothing on the screen changes any more."""
        seen = []

        def is_still():
            seen.append(self.session.pixels(0, 0, 1280, 800))
            time.sleep(0.2)
            return len(seen) > 1 and seen[-1] == seen[-2]
        wait_until(is_still, "a screen that stands still")

    def wait_menu(self, before):
        """Waits until the screen differs from `before`, a screen(), by as much as a menu or window, and no longer
        changes; returns what differs: left, top, right, bottom."""
        seen = []

        def is_open():
            seen.append(self._difference(before))
            return seen[-1] and seen[-1] == (seen + [None])[-3] and seen[-1]
        seen.append(None)
        return wait_until(is_open, "the menu or window")

    def click_last_entry(self, menu):
        left, _, right, bottom = menu
        self.session.play("mousemove", (left + right) // 2, bottom - LAST_ENTRY)
        time.sleep(0.3)
        self.session.play("mousemove", (left + right) // 2 + 2, bottom - LAST_ENTRY)
        self.session.play("click", 1)

    def screen(self):
        """The screen but for the panel."""
        return self.session.pixels(*self._place_beside())

    def _place_beside(self):
        _, y, _, height = self.session.panel_place
        if not self.session.has_tray:
            return (0, 0, 1280, 800)
        return (0, height, 1280, 800 - height) if y == 0 else (0, 0, 1280, y)

    def _difference(self, before):
        left, top, width, _ = self._place_beside()
        now = self.screen()
        places = [(i // 3 % width, i // 3 // width) for i in range(0, len(now), 3)
                  if max(abs(a - b) for a, b in zip(now[i:i + 3], before[i:i + 3])) > 40]
        places = [(x, y) for x, y in places
                  if max(abs(left + x - RESTING[0]), abs(top + y - RESTING[1])) > POINTER]
        if len(places) < MENU_PIXELS:
            return None
        columns, rows = zip(*places)
        return left + min(columns), top + min(rows), left + max(columns), top + max(rows)
