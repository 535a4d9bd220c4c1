"""The built program in a terminal that is kept in memory: what it draws, and keys for it."""
import errno
import fcntl
import os
import pty
import select
import signal
import struct
import termios
import time

import pyte

KEYS = {"up": "\x1bOA", "down": "\x1bOB", "right": "\x1bOC", "left": "\x1bOD", "home": "\x1bOH",
        "end": "\x1bOF", "pageup": "\x1b[5~", "pagedown": "\x1b[6~", "delete": "\x1b[3~",
        "f1": "\x1bOP", "f3": "\x1bOR", "f4": "\x1bOS", "f10": "\x1b[21~", "enter": "\r",
        "tab": "\t", "backtab": "\x1b[Z", "escape": "\x1b", "backspace": "\x7f",
        "ctrl-c": "\x03", "ctrl-enter": "\n"}


class Terminal:
    """Runs a program. What it writes goes to the screen; `raw` keeps it all."""

    def __init__(self, command, columns=100, rows=30, env=None, cwd=None):
        self.screen = pyte.Screen(columns, rows)
        self.stream = pyte.ByteStream(self.screen)
        self.raw = b""
        self.pid, self.main = pty.fork()
        if self.pid == 0:
            os.environ.clear()
            os.environ.update(env or {})
            if cwd:
                os.chdir(cwd)
            # The size must be there before the program looks.
            self._set_size(0, columns, rows)
            os.execvp(command[0], command)
        self.status = None

    @staticmethod
    def _set_size(descriptor, columns, rows):
        fcntl.ioctl(descriptor, termios.TIOCSWINSZ, struct.pack("HHHH", rows, columns, 0, 0))

    def resize(self, columns, rows):
        self.screen.resize(rows, columns)
        self._set_size(self.main, columns, rows)

    def read(self, seconds):
        """Takes what comes within that time; False once the program has closed the terminal."""
        ready, _, _ = select.select([self.main], [], [], seconds)
        if not ready:
            return True
        try:
            data = os.read(self.main, 65536)
        except OSError as fault:
            if fault.errno != errno.EIO:
                raise
            data = b""
        self.raw += data
        self.stream.feed(data)
        return bool(data)

    def settle(self, quiet=0.15, seconds=20):
        """Until nothing has been drawn for a while."""
        deadline = time.time() + seconds
        last = time.time()
        while time.time() - last < quiet and time.time() < deadline:
            before = len(self.raw)
            if not self.read(0.02):
                return
            if len(self.raw) > before:
                last = time.time()

    def wait_for(self, text, seconds=20, settle=True):
        deadline = time.time() + seconds
        while text not in self.text():
            if time.time() > deadline or not self.read(0.02):
                raise AssertionError(f"'{text}' doesn't appear in\n{self.text()}")
        if settle:
            self.settle(quiet=0.08)

    def lines(self):
        # The second cell of a wide character is empty.
        return [line.rstrip() for line in self.screen.display]

    def text(self):
        return "\n".join(self.lines())

    def line_with(self, text):
        for number, line in enumerate(self.lines()):
            if text in line:
                return number
        raise AssertionError(f"'{text}' doesn't stand in\n{self.text()}")

    def send(self, *keys):
        """Names of keys, or characters to type."""
        for key in keys:
            os.write(self.main, KEYS.get(key, key).encode())
            self.settle(quiet=0.05)

    def click(self, column, row):
        os.write(self.main, f"\x1b[<0;{column + 1};{row + 1}M\x1b[<0;{column + 1};{row + 1}m".encode())
        self.settle()

    def hang_up(self):
        os.close(self.main)
        self.main = None

    def end(self, seconds=20):
        """The status with which the program ends by itself."""
        deadline = time.time() + seconds
        while time.time() < deadline:
            if self.main is not None:
                self.read(0.02)
            pid, status = os.waitpid(self.pid, os.WNOHANG)
            if pid:
                while self.main is not None and self.read(0) and \
                        select.select([self.main], [], [], 0)[0]:
                    pass
                self.status = os.waitstatus_to_exitcode(status)
                return self.status
            if self.main is None:
                time.sleep(0.02)
        raise AssertionError(f"the program doesn't end\n{self.text()}")

    def after(self):
        """What was written since the program left its screen."""
        return self.raw.rsplit(b"\x1b[?1049l", 1)[-1].decode()

    def close(self):
        if self.status is None:
            os.kill(self.pid, signal.SIGKILL)
            os.waitpid(self.pid, 0)
        if self.main is not None:
            os.close(self.main)
            self.main = None
