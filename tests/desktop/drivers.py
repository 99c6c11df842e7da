"""The program and the stand-in agent as the tests run them: real processes in a DesktopSession."""
import json
import re
import subprocess
import threading
import time

from desktop_session import BINARIES, SessionError, wait_until

HOST_CACHE = "Library/Application Support/Korvale/HostCache"


class LineReader:
    """Collects the lines of a stream in a thread of its own."""

    def __init__(self, stream):
        self.lines = []
        self._changed = threading.Condition()
        self._thread = threading.Thread(target=self._read, args=(stream,), daemon=True)
        self._thread.start()

    def _read(self, stream):
        with stream:
            for line in stream:
                with self._changed:
                    self.lines.append(line.rstrip("\n"))
                    self._changed.notify_all()

    def join(self):
        """Waits for the stream's end, which a process that left children may delay."""
        self._thread.join(2)

    def wait_for(self, pattern, start=0, timeout=20.0):
        """The first line from index `start` on that matches; returns (index, match)."""
        expression = re.compile(pattern)
        deadline = time.monotonic() + timeout
        with self._changed:
            index = start
            while True:
                while index < len(self.lines):
                    match = expression.search(self.lines[index])
                    if match:
                        return index, match
                    index += 1
                remaining = deadline - time.monotonic()
                if remaining <= 0 or not self._changed.wait(remaining):
                    tail = "\n".join(self.lines[-15:])
                    raise SessionError(f"no line matched {pattern!r}; the last ones:\n{tail}")


class Program:
    """korvale-ui with its log lines (standard error) at hand."""

    def __init__(self, session, *arguments, environment=None, binary=None, prefix=()):
        self.session = session
        env = dict(session.env)
        for name, value in (environment or {}).items():
            if value is None:
                env.pop(name, None)
            else:
                env[name] = value
        self.started = time.monotonic()
        self.process = subprocess.Popen(
            [*prefix, str(binary or BINARIES / "korvale-ui"), *arguments], env=env,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
            errors="backslashreplace")
        self.log = LineReader(self.process.stderr)
        self.output = LineReader(self.process.stdout)

    def __enter__(self):
        return self

    def __exit__(self, *unused):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.log.join()
        self.output.join()

    @property
    def pid(self):
        return self.process.pid

    def running(self):
        return self.process.poll() is None

    def wait_exit(self, timeout=20.0):
        return self.process.wait(timeout)

    def wait_log(self, pattern, start=0, timeout=20.0):
        return self.log.wait_for(pattern, start, timeout)

    def count(self, pattern):
        return sum(1 for line in self.log.lines if re.search(pattern, line))


class Agent:
    """The stand-in agent, commanded line by line; each command is awaited."""

    def __init__(self, session, *arguments):
        self.session = session
        self.process = subprocess.Popen(
            [str(BINARIES / "korvale-agent-sim"), *arguments], env=session.env, text=True,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE, bufsize=1)
        self.output = LineReader(self.process.stdout)
        self.errors = LineReader(self.process.stderr)
        self._answered = 0

    def __enter__(self):
        return self

    def __exit__(self, *unused):
        self.kill()

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self.process.stdin.close()
        self.output.join()
        self.errors.join()

    def wait_ready(self, timeout=20.0):
        index, _ = self.output.wait_for(r"^ready\b", 0, timeout)
        self._answered = index + 1
        return self

    def tell(self, command, timeout=20.0):
        """Sends one command; returns the text after its "ok"."""
        self.process.stdin.write(command + "\n")
        self.process.stdin.flush()
        index, match = self.output.wait_for(r"^(ok|error)\b ?(.*)", self._answered, timeout)
        self._answered = index + 1
        if match.group(1) != "ok":
            raise SessionError(f"agent refused {command!r}: {match.group(2)}")
        return match.group(2)

    def requests(self):
        """Every request the agent got so far, each as its JSON object."""
        start = self._answered
        self.tell("requests")
        lines = [json.loads(line) for line in self.output.lines[start:self._answered]
                 if line.startswith("{")]
        return [line["request"] for line in lines if "request" in line]

    def tell_all(self, *commands):
        for command in commands:
            self.tell(command)


def host_cache(session):
    folder = session.root / HOST_CACHE
    folder.mkdir(parents=True, exist_ok=True)
    return folder


__all__ = ["Agent", "BINARIES", "Program", "SessionError", "host_cache", "wait_until"]
