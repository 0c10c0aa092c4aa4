"""Exports of a sample site by a process of its own, and what is true of the Access file that one leaves."""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tools" / "operator"))

from display import OperatorError, wait_for  # noqa: E402, F401
from site_facts import SiteFacts, canonical_lines  # noqa: E402

RIGHT, REFUSED, NO_ENGINE = "right", "refused", "no engine"
FOR_EVER = -1
EMPTY_DATABASE = 65536  # bytes: the first write of all; a shorter file is none yet


class Damage(Exception):
    """What is wrong with an export or with the file that it left."""


class Site:
    """A sample site and the rows that an export of it must give."""

    def __init__(self, programs, folder, records, seed):
        self.folder = folder
        subprocess.run([programs / "sample_site", folder, "--records", str(records), "--seed", str(seed), "--expected"],
                       check=True)
        self.facts = SiteFacts(folder)
        self.environment = {**os.environ, **self.facts.environment}
        self.expected = {table.name: (folder / "expected" / f"{table.name}.tsv").read_text().split("\n")[:-1]
                         for table in self.facts.tables}

    def row_count(self):
        return sum(len(lines) - 1 for lines in self.expected.values())


class Faults:
    """Calls that fail in an export, by the library failing_calls, which tells in report what has become of them."""

    def __init__(self, library, report, calls, files, fault, first, times):
        self._report = report
        self._environment = {
            "LD_PRELOAD": str(library), "FAULT_CALLS": calls, "FAULT_PATH": str(files), "FAULT_WITH": fault,
            "FAULT_FIRST": str(first), "FAULT_TIMES": str(times), "FAULT_REPORT": str(report),
            # In a checked build the sanitizer wants to come first.
            "ASAN_OPTIONS": f"{os.environ.get('ASAN_OPTIONS', '')}:verify_asan_link_order=0"}

    def environment(self, files_are_remote):
        """The variables of the export. Files that are remote claim to lie on a share of the network."""
        remote = {"FAULT_FILESYSTEM": self._environment["FAULT_PATH"]} if files_are_remote else {}
        return {**self._environment, **remote}

    def were_met(self):
        return "met" in self._report.read_text().split("\n")

    def calls(self):
        return int(re.search(r"^calls (\d+)$", self._report.read_text(), re.MULTILINE).group(1))


class Run:
    """A program on a site, under way from now on."""

    def __init__(self, command, site, environment):
        self._out, self._errors = tempfile.TemporaryFile("w+"), tempfile.TemporaryFile("w+")
        self._process = subprocess.Popen([str(word) for word in command], stdout=self._out, stderr=self._errors,
                                         env={**site.environment, **environment}, start_new_session=True)

    def wait(self, seconds=None):
        """The exit status. Raises subprocess.TimeoutExpired."""
        return self._process.wait(seconds)

    def kill(self):
        """The exit status, 0 when the run came to its end before."""
        self._process.kill()
        return self._process.wait()

    def signal(self, number):
        self._process.send_signal(number)

    def output(self):
        self._out.seek(0)
        return self._out.read()

    def errors(self):
        """What was written to standard error."""
        self._errors.seek(0)
        return self._errors.read()

    def ending(self):
        """How a run has ended: RIGHT, or the number of the error it reports."""
        status = self._process.returncode
        is_closed = "closed" in self.output().split("\n")
        if status == 0 and is_closed:
            return RIGHT
        report = re.search(r"^Run-time error '(-?\d+)':\n\n.+\n", self.errors(), re.MULTILINE)
        if status != 1 or is_closed or not report:
            raise Damage(f"status {status}, {self.output()!r}, {self.errors()!r}")
        return int(report.group(1))


class Export(Run):
    """One run of headless_export."""

    def __init__(self, programs, site, flush_every, target, options=(), environment={}, wrapper=()):
        super().__init__([*wrapper, programs / "headless_export", target, "--flush-every", flush_every, *options], site,
                         environment)

    def told(self):
        """Whether the tables were built, and the rows that are safe, by table. A line that is cut was not told."""
        lines = self.output().split("\n")[:-1]
        safe = {}
        for line in lines:
            if line.startswith("safe "):
                _, table, rows = line.split()
                safe[table] = int(rows)
        return "built" in lines, safe


class WindowExport(Run):
    """One run of window_export, which works the program's window."""

    def __init__(self, programs, site, target, options=(), environment={}, wrapper=()):
        super().__init__([*wrapper, programs / "window_export", target, *options], site,
                         {"QT_QPA_PLATFORM": "offscreen", **environment})

    def ending(self):
        """A window that refuses to make the file is closed as any other, REFUSED; one whose site gives no engine says
        why and closes at once, NO_ENGINE."""
        if self._process.returncode == 0 and "closed" not in self.output().split("\n"):
            if ": Could not Create file: " in self.output():
                return REFUSED
            if not re.search(r"^message (Connection Error|EpcError):|^error -?\d+", self.output() + self.errors(),
                             re.MULTILINE):
                raise Damage(f"ended without a word: {self.output()!r}, {self.errors()!r}")
            return NO_ENGINE
        end = super().ending()
        if end != RIGHT and f"message Vantora Database Explorer: Run-time error '{end}':\n\n" not in self.output():
            raise Damage(f"error {end} was not shown: {self.output()}")
        return end

    def told(self):
        return False, {}


def rows_left(site, table, target):
    """The number of a table's rows; they are the first ones of the table."""
    found, wanted = canonical_lines(target, table.name, table.singles), site.expected[table.name]
    if found != wanted[:len(found)]:
        line = next(i for i, (one, other) in enumerate(zip(found + [""], wanted + [""])) if one != other)
        raise Damage(f"{table.name}: row {line} is not that of the site")
    return len(found) - 1


def soundness(programs, target):
    """The last line that mdb_check prints of a sound file."""
    done = subprocess.run([programs / "mdb_check", target], stdout=subprocess.PIPE, text=True)
    if done.returncode != 0:
        raise Damage(f"mdb_check ended with status {done.returncode}:\n{done.stdout}")
    return re.search(r"(\d+ damages, .*)", done.stdout).group(1)


def check(programs, site, target, is_built, safe):
    """Raises Damage, or gives the number of rows that are left and what to say of them."""
    if not is_built and (not target.exists() or target.stat().st_size < EMPTY_DATABASE):
        return 0, "no database yet"
    state = soundness(programs, target)
    listed = subprocess.run(["mdb-tables", "-1", target], stdout=subprocess.PIPE, text=True, check=True).stdout
    names = listed.split("\n")[:-1]
    missing = {table.name for table in site.facts.tables} - set(names)
    if is_built and missing:
        raise Damage(f"the tables {sorted(missing)} are missing")
    rows = {table.name: rows_left(site, table, target) for table in site.facts.tables if table.name in names}
    for table, promised in safe.items():
        if rows[table] < promised:
            raise Damage(f"{table} holds {rows[table]} rows, {promised} were safe")
    left = sum(rows.values())
    return left, (f"{sum(count > 0 for count in rows.values())} of {len(names)} tables with rows, {left} rows, "
                  f"{sum(safe.values())} promised; mdb_check: {state}")
