#!/bin/sh
# A login of the user who runs it, without a screen: lxqt-session starts what XDG autostart names. Prints what the
# tray item says once the program is there, or "nothing started" when the session is up and the program is not.
set -eu
XDG_RUNTIME_DIR="$(mktemp -d)"
export XDG_RUNTIME_DIR
. "$(dirname "$0")/desktop_screen.sh"
# The panel shows trays of both kinds; with this one alone the item tells its texts on the bus.
printf 'panels=panel1\n[panel1]\nplugins=statusnotifier\nposition=Top\n[statusnotifier]\ntype=statusnotifier\n' \
  >"$HOME/.config/lxqt/panel.conf"
exec dbus-run-session -- sh -c '
  ask() { gdbus call --session --timeout 5 "$@" 2>/dev/null || true; }
  owned() { ask -d org.freedesktop.DBus -o /org/freedesktop/DBus -m org.freedesktop.DBus.NameHasOwner "$1" | grep -q true; }
  property() { ask -d "$1" -o "$2" -m org.freedesktop.DBus.Properties.Get "$3" "$4"; }
  lxqt-session >"$HOME/session.log" 2>&1 &
  for _ in $(seq 300); do owned org.lxqt.session && owned org.kde.StatusNotifierWatcher && break; sleep 0.2; done
  owned org.lxqt.session && owned org.kde.StatusNotifierWatcher || { cat "$HOME/session.log"; exit 1; }
  for _ in $(seq "${PATIENCE:-300}"); do
    items=$(property org.kde.StatusNotifierWatcher /StatusNotifierWatcher org.kde.StatusNotifierWatcher \
      RegisteredStatusNotifierItems)
    item=$(printf "%s" "$items" | grep -o ":1\.[0-9]*" | head -n 1)
    [ -z "$item" ] || break
    sleep 0.2
  done
  [ -n "$item" ] || { echo "nothing started"; exit 0; }
  menu=$(ask -d "$item" -o /MenuBar -m com.canonical.dbusmenu.GetLayout 0 1 "[]")
  echo "$menu"
  choice=$(printf "%s" "$menu" | grep -o "([0-9]*, {[^}]*toggle-type" | grep -o "^([0-9]*" | tr -d "(")
  ask -d "$item" -o /MenuBar -m com.canonical.dbusmenu.Event "$choice" clicked "<0>" 0
  for name in Id Title; do property "$item" /StatusNotifierItem org.kde.StatusNotifierItem $name; done
  korvale-ui # a second start: shows the window of the first
  xdotool search --sync --onlyvisible --name "^KorvaleUI$" >/dev/null && echo "window shown"
  for _ in $(seq 100); do [ -e "$HOME/.config/Korvale/KorvaleUI.conf" ] && break; sleep 0.2; done
'
