"""A program that is started all the time on the machine, and shows at once when starting takes long."""
import json
import pathlib

SONG = pathlib.Path(__file__).resolve().parent / "canary_song.py"


class Canary:
    """Context manager: it sings meanwhile. Its programs lie in a folder that the agent watches."""

    def __init__(self, case):
        self.case = case
        self.machine = case.machine

    def __enter__(self):
        song, = self.machine.put(SONG, folder="opt")
        self.machine.path("/run/canary").unlink(missing_ok=True)
        self.machine.inside("systemd-run", "--quiet", "--collect", "--unit=canary", "/usr/bin/python3", song,
                            "/home/canary", "/run/canary")
        self.sings(5)
        return self

    def __exit__(self, *unused):
        self.machine.inside("systemctl", "kill", "--signal=KILL", "canary", check=False)

    def told(self):
        file = self.machine.path("/run/canary")
        return json.loads(file.read_text("ascii")) if file.exists() else {"songs": 0, "failures": 0, "longest": 0}

    def sings(self, more=100):
        """Waits for so many songs from now on."""
        goal = self.told()["songs"] + more
        self.case.eventually(f"{more} more programs to start", lambda: self.told()["songs"] >= goal)

    def is_well(self, limit):
        """No start took longer than that many seconds, and none failed."""
        told = self.told()
        print(f"    {told['songs']} programs, the slowest took {told['longest']:.2f} s", flush=True)
        self.case.assertEqual(told["failures"], 0)
        self.case.assertLess(told["longest"], limit)
