"""What bash and zsh complete after "korvale-ui", asked of the shells themselves; argument: the folder of the
completions."""
import os
import pathlib
import pty
import re
import select
import subprocess
import sys
import tempfile
import time
import unittest

FOLDER = pathlib.Path(sys.argv.pop(1)).resolve()
LONG = {"--status", "--check-updates", "--scan", "--background-scan", "--choose-folder", "--help", "--version"}
SHORT = {"-a", "-update", "-background-scan", "-background-scan-stop", "-folder-scan"}

# Prints each match on a line of its own, and says when it is done.
ZSH = r"""
PROMPT='ready> '
setopt no_beep
fpath=(@FOLDER@ $fpath)
autoload -Uz compinit && compinit -u -d @SCRATCH@/dump
bindkey '^I' complete-word
compadd() {
    if [[ " ${argv[1,(i)(-|--)]} " == *' -'[OAD]' '* ]]; then
        builtin compadd "$@"
        return
    fi
    local -a hits
    builtin compadd -A hits "$@"
    (( $#hits )) && print -rl -- '' "<"${^hits}">"
    builtin compadd "$@"
}
said() {
    print -r -- '' '<done>'
    comppostfuncs=(said) # good for once
}
comppostfuncs=(said)
"""


class Completions(unittest.TestCase):
    def setUp(self):
        self.scratch = tempfile.TemporaryDirectory(prefix="korvale-completion-")
        self.addCleanup(self.scratch.cleanup)
        here = pathlib.Path(self.scratch.name)
        (here / "Down loads").mkdir()
        (here / "Documents").mkdir()
        (here / "Datei").write_text("")

    def check(self, line, expected):
        self.assertEqual(self.complete(line), expected, line)

    def check_common(self):
        self.assertTrue(LONG <= self.complete("korvale-ui --"))
        self.check("korvale-ui --sc", {"--scan"})
        self.check("korvale-ui --status --ba", {"--bar"})
        self.check("korvale-ui --status --bar ", {"waybar", "i3status-rs"})
        self.check("korvale-ui --background-scan ", {"start", "stop"})
        self.check("korvale-ui --background-scan sta", {"start"})
        self.check("korvale-ui --check-updates --", {"--wait", "--notify"})
        self.check("korvale-ui -folder-scan Do", {"Documents", "Down loads"})
        self.check("korvale-ui --scan D", {"Documents", "Down loads"})
        self.check("korvale-ui --scan Documents D", {"Documents", "Down loads"})
        self.assertIn("--wait", self.complete("korvale-ui --scan Documents --"))


class Bash(Completions):
    def complete(self, line):
        words = line.split(" ")
        script = ('source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _korvale_ui;'
                  ' printf "%s\\n" "${COMPREPLY[@]}"')
        done = subprocess.run(["bash", "--norc", "-c", script, "bash", FOLDER / "korvale-ui.bash", *words],
                              cwd=self.scratch.name, capture_output=True, text=True, timeout=60, check=True)
        self.assertEqual(done.stderr, "")
        return set(done.stdout.split("\n")) - {""}

    def test_it_completes_what_stands_there(self):
        self.check_common()

    def test_everything_is_offered_at_first(self):
        self.check("korvale-ui ", LONG | SHORT)
        self.check("korvale-ui --", LONG)
        self.check("korvale-ui -u", {"-update"})

    def test_a_value_behind_an_equals_sign(self):
        # bash makes three words of it.
        self.assertEqual(self.complete("korvale-ui --background-scan = st"), {"start", "stop"})
        self.assertEqual(self.complete("korvale-ui --background-scan ="), {"start", "stop"})

    def test_it_is_registered(self):
        done = subprocess.run(["bash", "--norc", "-c", 'source "$1"; complete -p korvale-ui', "bash",
                               FOLDER / "korvale-ui.bash"], capture_output=True, text=True, timeout=60)
        self.assertIn("-F _korvale_ui korvale-ui", done.stdout)


class Zsh(Completions):
    def setUp(self):
        super().setUp()
        setup = pathlib.Path(self.scratch.name) / ".setup"
        setup.write_text(ZSH.replace("@FOLDER@", str(FOLDER)).replace("@SCRATCH@", self.scratch.name))
        self.child, self.terminal = pty.fork()
        if self.child == 0:
            os.chdir(self.scratch.name)
            os.execvpe("zsh", ["zsh", "-f", "-i"], {**os.environ, "TERM": "dumb", "LC_ALL": "C.UTF-8"})
        self.addCleanup(self.end)
        self.send("source ./.setup\n")
        self.read_until("ready> ")

    def end(self):
        os.close(self.terminal)
        os.waitpid(self.child, 0)

    def send(self, text):
        os.write(self.terminal, text.encode())

    def read_until(self, mark):
        told, limit = "", time.monotonic() + 60
        while mark not in told.replace("\r", ""):
            left = limit - time.monotonic()
            self.assertGreater(left, 0, told)
            if select.select([self.terminal], [], [], left)[0]:
                told += os.read(self.terminal, 4096).decode(errors="replace")
        return told.replace("\r", "")

    def complete(self, line):
        self.send("\x15" + line + "\t")
        told = self.read_until("<done>\n")
        # zsh also tries what agrees in part only: "-s-c" with "-so-called".
        begun = re.split("[ =]", line)[-1]
        told = told.replace("\\ ", " ")
        return {word for word in re.findall(r"^<(.*)>$", told, re.MULTILINE) if word.startswith(begun)} - {"done"}

    def test_it_completes_what_stands_there(self):
        self.check_common()

    def test_everything_is_offered_at_first(self):
        self.check("korvale-ui -", LONG | SHORT)

    def test_a_folder_behind_an_equals_sign(self):
        self.check("korvale-ui --scan=Docu", {"Documents"})

    def test_no_file_is_offered_where_none_belongs(self):
        self.assertEqual(self.complete("korvale-ui D"), set())



unittest.main()
