"""A private X display with a mouse and a keyboard. No window manager is needed."""

import os
import subprocess
import time


class OperatorError(Exception):
    """What went wrong, for the person who reads the output."""


def wait_for(what, condition, seconds, pause=0.05):
    """Returns the first true answer of condition."""
    end = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise OperatorError(f"waited {seconds} seconds in vain for {what}")
        time.sleep(pause)


class Display:
    SIZE = "1280x1024x24"

    def __enter__(self):
        read_end, write_end = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write_end), "-screen", "0", self.SIZE, "-noreset", "-nolisten", "tcp"],
            pass_fds=[write_end], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write_end)
        with os.fdopen(read_end) as numbers:
            number = numbers.readline().strip()
        if not number:
            raise OperatorError("Xvfb did not start")
        self.environment = {**os.environ, "DISPLAY": f":{number}"}
        return self

    def __exit__(self, *_):
        self._server.terminate()
        self._server.wait()

    def xdotool(self, *arguments):
        """The output of a command; empty when it fails, as a search without a hit does."""
        done = subprocess.run(["xdotool", *map(str, arguments)], env=self.environment, timeout=60, text=True,
                              stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        return done.stdout

    def windows(self, title):
        """The visible windows whose title matches the pattern."""
        return self.xdotool("search", "--onlyvisible", "--name", title).split()

    def wait_for_focus(self, title, seconds=60):
        """Keys that are pressed before would go to nobody."""
        wait_for(f"the keys to go to the window titled {title!r}",
                 lambda: self.xdotool("getwindowfocus", "-f").strip() in self.windows(title), seconds)

    def wait_until_gone(self, title, seconds=60):
        wait_for(f"the end of the window titled {title!r}", lambda: not self.windows(title), seconds)

    def geometry(self, window):
        """Left, top, width and height in pixels."""
        values = dict(line.split("=") for line in self.xdotool("getwindowgeometry", "--shell", window).split())
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def click(self, x, y):
        self.xdotool("mousemove", x, y, "click", 1)

    def keys(self, *names):
        self.xdotool("key", "--delay", 30, *names)

    def type(self, text):
        self.xdotool("type", "--delay", 8, text)

    def pixels(self, x, y, width, height):
        """The colours of a part of the screen, to be compared with each other."""
        return subprocess.run(["import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "+repage",
                               "-depth", "8", "rgb:-"],
                              env=self.environment, timeout=60, stdout=subprocess.PIPE, check=True).stdout

    def screenshot(self, path, window="root"):
        subprocess.run(["import", "-silent", "-window", window, str(path)], env=self.environment, timeout=60, check=True)
