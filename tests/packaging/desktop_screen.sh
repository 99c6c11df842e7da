# Sourced: a screen that nobody sees, and what an LXQt session needs to know to start without questions.
export XDG_CURRENT_DESKTOP=LXQt XDG_SESSION_TYPE=x11 QT_QPA_PLATFORM=xcb
mkdir -p "$HOME/.config/lxqt"
printf '[General]\nwindow_manager=openbox\nleave_confirmation=false\n' >"$HOME/.config/lxqt/session.conf"
mkfifo "$XDG_RUNTIME_DIR/display"
Xvfb -displayfd 3 -screen 0 1280x800x24 -nolisten tcp -noreset 3>"$XDG_RUNTIME_DIR/display" >/dev/null 2>&1 &
read -r number <"$XDG_RUNTIME_DIR/display"
export DISPLAY=":$number"
