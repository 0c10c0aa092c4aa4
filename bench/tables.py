"""Runs the benchmark programs of a build side by side and prints what they took as Markdown tables."""

import argparse
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass
from pathlib import Path


@dataclass
class Run:
    wall: float
    cpu: float
    peak: float  # MiB
    out: str


def once(command, keep=False):
    """One run of a whole process. What it prints goes nowhere unless it is kept: a process begins with the peak of
    memory of the one that started it, so this one must stay small."""
    with tempfile.TemporaryFile("w+") if keep else open(os.devnull, "w") as out:
        start = time.monotonic()
        child = os.posix_spawn(command[0], command, os.environ,
                               file_actions=[(os.POSIX_SPAWN_DUP2, out.fileno(), 1)])
        _, status, usage = os.wait4(child, 0)
        wall = time.monotonic() - start
        if status != 0:
            sys.exit(f"{' '.join(command)} failed")
        if keep:
            out.seek(0)
        return Run(wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024, out.read() if keep else "")


class Table:
    """Commands that are run by turns, round by round, so that what else the machine does hits all alike."""

    def __init__(self, rounds):
        self.rounds = rounds
        self.commands = {}

    def add(self, name, *command):
        self.commands[name] = [str(word) for word in command]

    def run(self):
        runs = {name: [] for name in self.commands}
        for _ in range(self.rounds):
            for name, command in self.commands.items():
                runs[name].append(once(command))
        return {name: Run(statistics.median(r.wall for r in rs), statistics.median(r.cpu for r in rs),
                          max(r.peak for r in rs), "") for name, rs in runs.items()}


def heading(*columns):
    print("| " + " | ".join(columns) + " |")
    print("| --- |" + " ---: |" * (len(columns) - 1))


def write_tables(programs, folder, arguments):
    rows = arguments.rows
    table = Table(arguments.rounds)
    for program, kind in (("jet_write", "mdb"), ("sqlite_write", "db")):
        for name, switch in (("both indexes", None), ("no text index", "--no-text-index"),
                             ("text index last", "--text-index-last")):
            command = [programs / program, rows, folder / f"{name}.{kind}"]
            table.add(f"{program}, {name}", *command, *([switch] if switch else []))
    table.add("jet_write, both indexes, a tenth", programs / "jet_write", rows // 10, folder / "tenth.mdb")
    runs = table.run()
    print(f"### Writing {rows:,} rows\n")
    heading("What", "Wall s", "CPU s", "Peak MiB", "Rows per CPU second")
    for name, run in runs.items():
        count = rows // 10 if name.endswith("tenth") else rows
        print(f"| {name} | {run.wall:.2f} | {run.cpu:.2f} | {run.peak:.0f} | {count / run.cpu:,.0f} |")
    size = (folder / "both indexes.mdb").stat().st_size
    both = runs["jet_write, both indexes"].cpu
    print(f"\nThe Access file with both indexes has {size:,} bytes. By CPU time:\n")
    heading("Ratio", "Value")
    for name, value in (
            ("SQLite's both indexes to ours", runs["sqlite_write, both indexes"].cpu / both),
            ("SQLite's text index last to our both indexes", runs["sqlite_write, text index last"].cpu / both),
            ("SQLite's to ours, no text index",
             runs["sqlite_write, no text index"].cpu / runs["jet_write, no text index"].cpu),
            ("Growth: time a row to that at a tenth of the rows",
             both / 10 / runs["jet_write, both indexes, a tenth"].cpu)):
        print(f"| {name} | {value:.2f} |")


def scan_table(programs, folder, arguments):
    file = folder / "both indexes.mdb"
    table = Table(arguments.rounds)
    table.add("jet_scan", programs / "jet_scan", file)
    table.add("mdb-export", "/usr/bin/mdb-export", file, "Orders")
    runs = table.run()
    print(f"\n### Reading {arguments.rows:,} rows back, every column\n")
    heading("What", "Wall s", "CPU s", "Peak MiB")
    for name, run in runs.items():
        print(f"| {name} | {run.wall:.2f} | {run.cpu:.2f} | {run.peak:.0f} |")
    print(f"\nRatio by CPU time: {runs['mdb-export'].cpu / runs['jet_scan'].cpu:.1f}")


def export_table(programs, arguments):
    print(f"\n### Exporting a sample site of about {arguments.records:,} records\n")
    medians = {}
    for title, switches in (("Into a new Access file", []), ("Decoded and thrown away", ["--discard"]),
                            ("The same rows written from memory", ["--writing"])):
        run = once([str(programs / "export_bench"), str(arguments.records), "--rounds", str(arguments.rounds),
                    *switches], keep=True)
        print(f"{title}:\n\n```\n{run.out.strip()}\n```\n")
        rounds = re.findall(r"^round.* (\d+) rows .* ([0-9.]+) s CPU", run.out, re.MULTILINE)
        medians[title] = statistics.median(int(rows) / float(cpu) for rows, cpu in rounds)
    heading("What", "Rows per CPU second, median")
    for title, rate in medians.items():
        print(f"| {title} | {rate:,.0f} |")
    whole, *halves = medians.values()
    print(f"\nThe whole export runs at {100 * whole / min(halves):.0f} % of the rate of its slower half.\n")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("programs", type=Path)
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--rows", type=int, default=1_000_000)
    parser.add_argument("--records", type=int, default=1_000_000)
    arguments = parser.parse_args()
    programs = arguments.programs.resolve()
    with tempfile.TemporaryDirectory() as folder:
        write_tables(programs, Path(folder), arguments)
        scan_table(programs, Path(folder), arguments)
    export_table(programs, arguments)
    for title, program in (("The engine alone", "engine_bench"), ("The Access file format alone", "jet_bench")):
        print(f"### {title}\n", flush=True)
        subprocess.run([programs / program], check=True, stderr=subprocess.DEVNULL)


if __name__ == "__main__":
    main()
