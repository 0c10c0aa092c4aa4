"""The program's main window, worked by mouse and keys."""

import fcntl
import signal
import subprocess
import tempfile
from pathlib import Path

from display import OperatorError, wait_for

# The form's design in twips; it fills the window between the menu bar and the status bar.
FORM = (14010, 8700)
BUTTONS = {"Select DB": (7575, 255, 1575, 615), "Update": (9495, 240, 1575, 615)}
FRAME = (705, 915)
COLUMN_LEFTS = (120, 2880, 5880, 8880)
ROWS = 19
FIRST_ROW, ROW_PITCH = 240, 360
TWIPS_OF_PIXEL = 15

MAIN = "^Vantora Database Explorer     Version"
MESSAGE = "^Vantora Database Explorer$"
RANGE = "^Range Selection$"
SAVE = "^Create Database$"

LIBRARY_LEAKS = Path(__file__).with_name("library_leaks.supp")  # matters to checked builds only


class Explorer:
    MARK = (14, 16)  # pixels: the square of a check box, and a little air

    def __init__(self, display, program, environment):
        self._display = display
        self._errors = tempfile.TemporaryFile(mode="w+")
        settings = {"QT_QPA_PLATFORM": "xcb", "LSAN_OPTIONS": f"suppressions={LIBRARY_LEAKS}:print_suppressions=0"}
        self._process = subprocess.Popen([str(program)], stdout=self._errors, stderr=self._errors,
                                         env={**display.environment, **environment, **settings})

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self._process.poll() is None:
            self._process.kill()
            self._process.wait()
        self._errors.close()

    def account(self):
        """What the program wrote and how it stands."""
        self._errors.seek(0)
        return f"the program {self._state()}\n{self._errors.read()}"

    def _state(self):
        status = self._process.poll()
        if status is None:
            return "is still running"
        if status < 0:
            return f"was ended by signal {-status} ({signal.Signals(-status).name})"
        return f"has ended with status {status}"

    def select_database(self, path):
        self._main_window()
        self._click_button("Select DB")
        self._display.wait_for_focus(SAVE)
        self._display.type(str(path))
        self._display.keys("Return")
        self._display.wait_until_gone(SAVE)
        self._wait(f"the database {path}", path.exists, 60)

    def tick(self, box, has_range, bounds=None):
        """Ticks a table and answers its range dialog, typing bounds (start and end) into it."""
        left, top = self._box_mark(box)
        before = self._display.pixels(left, top, *self.MARK)
        self._display.click(left + self.MARK[0] // 2, top + self.MARK[1] // 2)
        if has_range:
            self._display.wait_for_focus(RANGE)
            if bounds:
                start, end = bounds
                self._display.type(str(start))
                self._display.keys("Tab")
                self._display.type(str(end))
            self._display.keys("Return")
            self._display.wait_until_gone(RANGE)
        self._wait(f"the tick of box {box}", lambda: self._display.pixels(left, top, *self.MARK) != before, 60)

    def update(self, path):
        """Presses Update and waits until the program has let go of the database."""
        if not self._is_locked(path):
            raise OperatorError(f"the program holds no lock on {path} before the update")
        self._click_button("Update")
        self._wait("the end of the update", lambda: not self._is_locked(path), 3600, pause=0.2)

    def close(self):
        """Closes the window through its menu and waits until the program has ended."""
        self._display.wait_for_focus(MAIN)
        self._display.keys("alt+f")
        self._display.keys("Down", "Return")
        wait_for("the program's end", lambda: self._process.poll() is not None, 60)
        if self._process.returncode != 0:
            raise OperatorError(f"at its close the program {self._state()}")

    def screenshot(self, path):
        # The pointer rests outside, so that no tool tip covers the window.
        self._display.xdotool("mousemove", 1270, 1010, "sleep", 0.5)
        self._display.screenshot(path, self._main_window())

    def _main_window(self):
        return self._wait("the main window", lambda: self._display.windows(MAIN), 60)[0]

    def _wait(self, what, condition, seconds, pause=0.05):
        """Waits for condition, but not when the program has ended or reports an error."""
        def answer():
            found = condition()
            if not found and self._process.poll() is not None:
                raise OperatorError(f"the program {self._state()} before {what}")
            if not found and self._display.windows(MESSAGE):
                raise OperatorError(f"the program shows a message before {what}")
            return found

        return wait_for(what, answer, seconds, pause)

    def _place(self, twips_x, twips_y):
        """A point of the form on the screen. Menu bar and status bar share what the form leaves of the height."""
        left, top, width, height = self._display.geometry(self._main_window())
        bars = height - FORM[1] / TWIPS_OF_PIXEL
        return round(left + twips_x * width / FORM[0]), round(top + bars / 2 + twips_y / TWIPS_OF_PIXEL)

    def _click_button(self, caption):
        left, top, width, height = BUTTONS[caption]
        self._display.click(*self._place(left + width / 2, top + height / 2))

    def _box_mark(self, box):
        column, row = divmod(box, ROWS)
        return self._place(FRAME[0] + COLUMN_LEFTS[column], FRAME[1] + FIRST_ROW + ROW_PITCH * row)

    @staticmethod
    def _is_locked(path):
        """Whether the program has the database open: it holds a lock on the file as long."""
        with open(path, "rb") as file:
            try:
                fcntl.flock(file, fcntl.LOCK_SH | fcntl.LOCK_NB)
            except BlockingIOError:
                return True
        return False
