#!/usr/bin/python3
"""Reads the program's window over AT-SPI. Arguments: its pid and what to print.

rows: the current tab's label, a tab, and how many rows its table has.
tree: every accessible on screen as one JSON line: depth, role, name, description.
texts: what stands in the text fields, as a JSON list.
sensitive: the names of the buttons and menu items that can be pressed, as a JSON list.
cells: the current table's cells as a JSON list of rows; tips: their descriptions.
titles: the current table's column titles as a JSON list.
focus: role and name of what has the keyboard, as JSON; focusable: the same of all that can have it.
place:NAME: the middle of the first thing of that name on the screen, as JSON.
press:NAME: nothing; presses the first thing of that name, as a screen reader does.
size:NAME: its width and height, as JSON.
cell:N: the middle of the first cell of the current table's row N on the screen, as JSON.
"""
import json
import sys

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

MOST_ROWS = 50


def children(node):
    return [child for child in (node.get_child_at_index(index)
                                for index in range(min(node.get_child_count(), 2000)))
            if child is not None]


def find(node, role):
    """The first showing accessible of that role, depth first."""
    if node.get_role() == role and node.get_state_set().contains(Atspi.StateType.SHOWING):
        return node
    if node.get_role() == Atspi.Role.TABLE:
        return None
    for child in children(node):
        found = find(child, role)
        if found is not None:
            return found
    return None


def application(pid):
    for app in children(Atspi.get_desktop(0)):
        if app.get_process_id() == pid:
            return app
    sys.exit(f"no accessible application of pid {pid}")


def of_cells(table, question):
    grid = table.get_table_iface()
    rows = min(grid.get_n_rows(), MOST_ROWS)
    return [[question(grid.get_accessible_at(row, column))
             for column in range(grid.get_n_columns())] for row in range(rows)]


def titles(table):
    grid = table.get_table_iface()
    return [grid.get_column_description(column) for column in range(grid.get_n_columns())]


def print_tree(node, depth=0):
    if depth > 0 and not node.get_state_set().contains(Atspi.StateType.SHOWING):
        return
    print(json.dumps([depth, node.get_role_name(), node.get_name(), node.get_description()]))
    if node.get_role() != Atspi.Role.TABLE:
        for child in children(node):
            print_tree(child, depth + 1)


def middle(node):
    box = node.get_component_iface().get_extents(Atspi.CoordType.SCREEN)
    return [box.x + box.width // 2, box.y + box.height // 2]


def size(node):
    box = node.get_component_iface().get_extents(Atspi.CoordType.WINDOW)
    return [box.width, box.height]


def named(node, name):
    if node.get_name() == name and node.get_state_set().contains(Atspi.StateType.SHOWING):
        return node
    return next(filter(None, (named(child, name) for child in children(node))), None)


def with_state(node, state):
    """Role and name of everything on screen in that state, but for tables' cells."""
    states = node.get_state_set()
    if not states.contains(Atspi.StateType.SHOWING) and node.get_role() != Atspi.Role.APPLICATION:
        return []
    own = [[node.get_role_name(), node.get_name()]] if states.contains(state) else []
    if node.get_role() == Atspi.Role.TABLE:
        return own
    return own + [found for child in children(node) for found in with_state(child, state)]


def field_texts(node):
    if node.get_role() == Atspi.Role.TEXT:
        return [Atspi.Text.get_text(node, 0, Atspi.Text.get_character_count(node))]
    return [text for child in children(node) for text in field_texts(child)]


def sensitive(node):
    states = node.get_state_set()
    if not states.contains(Atspi.StateType.SHOWING) and node.get_role() != Atspi.Role.APPLICATION:
        return []
    if node.get_role() == Atspi.Role.TABLE:
        return []
    is_pressed = node.get_role() in (Atspi.Role.PUSH_BUTTON, Atspi.Role.MENU_ITEM)
    own = [node.get_name()] if is_pressed and states.contains(Atspi.StateType.SENSITIVE) else []
    return own + [name for child in children(node) for name in sensitive(child)]


def main():
    app = application(int(sys.argv[1]))
    what = sys.argv[2]
    if what == "tree":
        print_tree(app)
        return
    if what == "texts":
        print(json.dumps(field_texts(app)))
        return
    if what in ("focus", "focusable"):
        state = Atspi.StateType.FOCUSED if what == "focus" else Atspi.StateType.FOCUSABLE
        print(json.dumps(with_state(app, state)))
        return
    if what == "sensitive":
        print(json.dumps(sensitive(app)))
        return
    if what.startswith("place:"):
        print(json.dumps(middle(named(app, what.partition(":")[2]))))
        return
    if what.startswith("press:"):
        named(app, what.partition(":")[2]).get_action_iface().do_action(0)
        return
    if what.startswith("size:"):
        print(json.dumps(size(named(app, what.partition(":")[2]))))
        return
    table = find(app, Atspi.Role.TABLE)
    if table is None:
        sys.exit("no table is showing")
    if what == "rows":
        tabs = find(app, Atspi.Role.PAGE_TAB_LIST)
        print(f"{tabs.get_name() if tabs else ''}\t{table.get_table_iface().get_n_rows()}")
    elif what == "cells":
        print(json.dumps(of_cells(table, lambda cell: cell.get_name())))
    elif what == "tips":
        print(json.dumps(of_cells(table, lambda cell: cell.get_description())))
    elif what == "titles":
        print(json.dumps(titles(table)))
    elif what.startswith("cell:"):
        row = int(what.partition(":")[2])
        print(json.dumps(middle(table.get_table_iface().get_accessible_at(row, 0))))
    else:
        sys.exit(f"nothing is called {what}")


main()
