#!/usr/bin/python3
"""Whatever korvale-agentctl --help names is in its manual page and in its bash completion, and nothing
else is completed. Arguments: the built program, the folder agent/ of packaging."""
import pathlib
import re
import subprocess
import sys

program, packaging = sys.argv[1], pathlib.Path(sys.argv[2])
COMPLETE = """
source "$1"; shift
COMP_WORDS=("$@"); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); COMPREPLY=()
_korvale_agentctl 2>&1
printf '%s\\n' "${COMPREPLY[@]}"
"""


def completed(*words):
    run = subprocess.run(
        ["bash", "-c", COMPLETE, "bash", str(packaging / "korvale-agentctl.bash"), "korvale-agentctl",
         *words], capture_output=True, text=True, check=True)
    return set(run.stdout.split())


def main():
    help_text = subprocess.run([program, "--help"], capture_output=True, text=True, check=True).stdout
    usages = re.findall(r"^  (\S+)(.*)$", help_text, re.MULTILINE)
    commands = {word for word, _ in usages}
    page = (packaging / "korvale-agentctl.8").read_text(encoding="utf-8").replace("\\-", "-")
    problems = []
    if len(commands) < 10:
        problems.append(f"--help names only {sorted(commands)}")
    if completed("") != commands | {"--help", "--version"}:
        problems.append(f"completed commands are {sorted(completed(''))}")
    for word, usage in usages:
        options = set(re.findall(r"--[a-z-]+", usage)) | {"--json"}
        if completed(word, "-") != options:
            problems.append(f"completed options of {word} are {sorted(completed(word, '-'))}")
        if not re.search(rf"^\.(B|BR|BI) {word}\b", page, re.MULTILINE):
            problems.append(f"the manual page lacks {word}")
        problems += [f"the manual page lacks {option}" for option in options if option not in page]
    if completed("sc") != {"scan"}:
        problems.append("a begun word is not completed")
    warnings = subprocess.run(["man", "--warnings", "-l", "-Tutf8", str(packaging / "korvale-agentctl.8")],
                              capture_output=True, text=True, check=False).stderr if man() else ""
    problems += warnings.splitlines()
    print("\n".join(problems) if problems else f"{len(commands)} commands are documented")
    sys.exit(1 if problems else 0)


def man():
    return subprocess.run(["which", "man", "groff"], capture_output=True, check=False).returncode == 0


main()
