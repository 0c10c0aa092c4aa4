"""Runs window_bench on the display at hand and prints what the window takes as Markdown tables."""

import argparse
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from tables import heading


def output(command, environment=None):
    done = subprocess.run([str(word) for word in command], env={**os.environ, **(environment or {})}, text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    if done.returncode != 0:
        sys.exit(f"{command} failed")
    return done.stdout


def made_site(programs, folder, records):
    """The environment that leads to a new site, which sample_site writes down for shells."""
    output([programs / "sample_site", folder, "--records", records])
    return {"TMPDIR": str(folder / "tmp"), "XDG_CONFIG_HOME": str(folder / "config"), "HOME": str(folder)}


def export_table(programs, folder, arguments):
    """Both by turns, so that what else the machine does hits both alike."""
    site = folder / "large"
    environment = made_site(programs, site, arguments.records)
    commands = {"with the window": [programs / "window_bench", "export", site / "window.mdb"],
                "without a window": [programs / "export_bench", arguments.records, "--site", site]}
    runs = {name: [] for name in commands}
    for _ in range(arguments.rounds):
        for name, command in commands.items():
            wall, cpu = re.findall(r"([\d.]+) s wall +([\d.]+) s CPU", output(command, environment))[-1]
            runs[name].append((float(wall), float(cpu)))
    medians = {name: [statistics.median(values) for values in zip(*each)] for name, each in runs.items()}
    print(f"### Exporting about {arguments.records:,} records, with the window and without, {arguments.rounds} runs each\n")
    heading("What", "Wall s", "CPU s")
    for name, (wall, cpu) in medians.items():
        print(f"| {name} | {wall:.2f} | {cpu:.2f} |")
    ratios = [a / b for a, b in zip(medians["with the window"], medians["without a window"])]
    print(f"| ratio | {ratios[0]:.3f} | {ratios[1]:.3f} |\n")


def start_table(programs, folder, arguments):
    environment = made_site(programs, folder / "demo", 50000)
    times = []
    for _ in range(10 * arguments.rounds):
        begin = time.monotonic()
        times.append(1000 * (float(output([programs / "window_bench", "start"], environment)) - begin))
    print("### From the command to a window in which Select DB can be pressed\n")
    heading("Runs", "Median ms", "Longest ms")
    print(f"| {len(times)} | {statistics.median(times):.0f} | {max(times):.0f} |\n")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("programs", type=Path)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--records", type=int, default=1_000_000)
    arguments = parser.parse_args()
    programs = arguments.programs.resolve()
    with tempfile.TemporaryDirectory() as folder:
        export_table(programs, Path(folder), arguments)
        start_table(programs, Path(folder), arguments)
    for records in (arguments.records // 10, arguments.records):
        print(f"### The window during an export of about {records:,} records\n")
        print(output([programs / "window_bench", "drag", records]))
    print(f"### Cancel Update in an export of about {arguments.records // 10:,} records\n")
    print(output([programs / "window_bench", "cancel", arguments.records // 10, 10 * arguments.rounds]), end="")


if __name__ == "__main__":
    main()
