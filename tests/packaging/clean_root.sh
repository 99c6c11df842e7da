#!/bin/bash
# Installs the two packages in a new, small Debian 12, where nothing else is, and uses them as a person
# would: a scan, the threat in quarantine, back, deleted; then removes and purges them and looks what is
# left. As root; fetches the distribution's packages from where this machine does.
#
#   clean_root.sh korvale-ui_*.deb korvale-agent_*.deb
set -euo pipefail

say() { printf '==> %s\n' "$*"; }
fail() { printf 'clean_root: %s\n' "$*" >&2; exit 1; }

# What runs inside. It is only another root folder: what was started has to be ended, too.
bus= agent=
inside() {
  export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8
  local downloads=/home/ada/Downloads number
  say "installing"
  apt-get install -qq -y --no-install-recommends /packages/*.deb >/dev/null
  korvale-ui --version
  korvale-agent --version
  korvale-agent --check-config || fail "the packaged configuration is wrong"

  say "starting the bus and the agent"
  mkdir -p /run/dbus
  bus=$(dbus-daemon --system --fork --nopidfile --print-pid)
  trap 'kill $bus $agent 2>/dev/null || true' EXIT
  korvale-agent 2>/agent.log & agent=$!
  waits_for "the agent" korvale-agentctl status
  korvale-agentctl status

  say "scanning Downloads with the test file in it"
  useradd --create-home ada
  mkdir "$downloads"
  printf 'harmless\n' >"$downloads/letter.txt"
  # In pieces, or every scanner would find it here.
  printf '%s%s' 'X5O!P%@AP[4\PZX54(P^)7CC)7}$EICAR-STANDARD-' 'ANTIVIRUS-TEST-FILE!$H+H*' >"$downloads/eicar.com"
  chown -R ada:ada "$downloads"
  chmod 640 "$downloads/eicar.com"
  local before status=0
  before=$(stat -c '%U %G %a %Y %s' "$downloads/eicar.com"; sha256sum <"$downloads/eicar.com")
  korvale-agentctl scan --wait "$downloads" || status=$?
  [ "$status" = 5 ] || fail "the scan ended with $status, and found nothing"
  waits_for "the quarantine" sh -c 'korvale-agentctl threats | grep -q quarantined'
  korvale-agentctl threats
  [ ! -e "$downloads/eicar.com" ] || fail "the file is where it was"
  [ -e "$downloads/letter.txt" ] || fail "another file is gone, too"
  grep -q eicar.com '/Library/Application Support/Korvale/HostCache/file_states.log' ||
    fail "the program would not show it"
  ! grep -rlq 'EICAR-STANDARD' /var/lib/korvale-agent || fail "it lies readable in quarantine"
  [ "$(stat -c '%U %a' /var/lib/korvale-agent)" = 'root 700' ] || fail "others reach the quarantine"

  say "restoring it"
  number=$(korvale-agentctl threats | cut -d' ' -f1)
  korvale-agentctl restore "$number"
  [ "$before" = "$(stat -c '%U %G %a %Y %s' "$downloads/eicar.com"; sha256sum <"$downloads/eicar.com")" ] ||
    fail "it came back as something else"
  korvale-agentctl why "$downloads/eicar.com" | grep -q unsafe || fail "nobody remembers why"

  say "quarantining it again, and deleting it"
  korvale-agentctl quarantine "$number"
  [ ! -e "$downloads/eicar.com" ] || fail "the file is where it was"
  kill "$agent"
  wait "$agent" || fail "the agent ended with $?"
  korvale-agent 2>>/agent.log & agent=$!
  waits_for "the agent again" sh -c 'korvale-agentctl threats | grep -q quarantined'
  korvale-agentctl delete --yes "$number"
  [ -z "$(ls /var/lib/korvale-agent/quarantine)" ] || fail "its copy is still there"
  kill "$agent"
  wait "$agent" || fail "the agent ended with $?"

  say "running the packages' own tests"
  apt-get install -qq -y --no-install-recommends desktop-file-utils >/dev/null
  local test
  for test in installed-program installed-agent; do
    "/tests/$test" >/test.log 2>&1 || { cat /test.log >&2; fail "$test failed"; }
  done

  say "removing the packages"
  apt-get remove -qq -y korvale-ui korvale-agent >/dev/null
  for kept in /etc/korvale-agent/agent.toml /var/lib/korvale-agent/findings.sqlite; do
    [ -e "$kept" ] || fail "$kept is gone before it shall"
  done
  hash -r # the shell remembers where they were
  ! command -v korvale-ui korvale-agent korvale-agentctl || fail "a program is left"
  say "purging them"
  apt-get purge -qq -y korvale-ui korvale-agent >/dev/null
  find / -xdev \( -path /proc -o -path /sys -o -path /packages -o -path /var/log -o -path /var/cache/apt \) \
    -prune -o -iname '*korvale*' -print >/left
  [ ! -s /left ] || fail "left behind: $(cat /left)"
  say "nothing is left"
}

waits_for() { # WHAT COMMAND...
  local what=$1; shift
  for _ in $(seq 200); do
    ! "$@" >/dev/null 2>&1 || return 0
    sleep 0.1
  done
  cat /agent.log >&2
  fail "waited too long for $what"
}

if [ "${1:-}" = --inside ]; then
  inside
  exit
fi
[ "$(id -u)" = 0 ] || fail "that needs root: a file system of its own is made and entered"
[ $# -ge 2 ] || fail "usage: clean_root.sh KORVALE-UI.deb KORVALE-AGENT.deb"
command -v mmdebstrap >/dev/null || fail "mmdebstrap is not installed"

script=$(realpath "$0")
packages=("$@")
work=$(mktemp -d "${TMPDIR:-/tmp}/korvale-clean-root-XXXXXX")
trap 'rm -rf --one-file-system "$work"' EXIT
chmod 755 "$work" # the fetching user has to reach it
options=()
for file in /etc/apt/apt.conf.d/99*; do # proxies and the like
  [ ! -f "$file" ] || options+=("--aptopt=$file")
done
sources=()
for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.{list,sources}; do
  [ ! -s "$file" ] || sources+=("$file")
done
{
  printf 'mkdir "$1/packages"\n'
  for package in "${packages[@]}"; do
    printf 'cp %q "$1/packages/"\n' "$(realpath "$package")"
  done
  printf 'cp -r %q "$1/tests"\n' "${script%/*}/../../packaging/debian/tests"
  printf 'cp %q "$1/clean_root.sh"\nchroot "$1" /bin/bash /clean_root.sh --inside\n' "$script"
} >"$work/use"
chmod 755 "$work/use"
say "making a small Debian 12"
mmdebstrap --quiet --mode=root --format=null --variant=minbase --include=dbus,bash "${options[@]}" \
  --customize-hook="sh $work/use \"\$1\"" bookworm - "${sources[@]}"
say "the packages are good in a clean Debian 12"
