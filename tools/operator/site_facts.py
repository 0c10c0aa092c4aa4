"""What a made-up site says about itself, and what an Access file holds (read with mdbtools)."""

import csv
import io
import json
import os
import struct
import subprocess
import zlib
from dataclasses import dataclass
from decimal import Decimal

from display import OperatorError

CATALOGUE = "drive_c/Program Files/Kestrel Software, Inc/Vantora/MasterFileInformation.mdb"
ENVIRONMENT = ("TMPDIR", "XDG_CONFIG_HOME")
csv.field_size_limit(1 << 24)


def exported(database, table, *options):
    """What mdb-export prints of a table."""
    done = subprocess.run(["mdb-export", *options, str(database), table], stdout=subprocess.PIPE,
                          stderr=subprocess.PIPE, env={**os.environ, "LC_ALL": "C.UTF-8", "MDBICONV": "UTF-8"})
    if done.returncode != 0:
        raise OperatorError(f"mdb-export cannot read {table} of {database}: {done.stderr.decode(errors='replace')}")
    return done.stdout.decode(errors="replace")


def rows(database, table):
    """The rows of a table as dictionaries of texts."""
    return csv.DictReader(io.StringIO(exported(database, table), newline=""))


def row_count(database, table):
    return sum(1 for _ in rows(database, table))


def single_cell(text):
    """The shortest decimal that reads back as the same 32-bit real, without an exponent."""
    wanted = struct.pack("f", float(text))
    for digits in range(1, 10):
        shorter = f"{float(text):.{digits}g}"
        if struct.pack("f", float(shorter)) == wanted:
            return f"{Decimal(shorter):f}"
    return text


def canonical_lines(database, table, singles):
    """A table's rows as lines of cells between tabs, the columns' names first: the form in which the manifest's cells
    were added up and the site's expected rows are written. Reals, the columns in singles, are printed in another."""
    lines = exported(database, table, "-e", "-Q", "-d", "\t", "-D", "%Y-%m-%d", "-T", "%Y-%m-%d").split("\n")[:-1]
    reals = [place for place, name in enumerate(lines[0].split("\t")) if name in singles]
    for number in range(1, len(lines) if reals else 1):
        cells = lines[number].split("\t")
        for place in reals:
            if cells[place]:
                cells[place] = single_cell(cells[place])
        lines[number] = "\t".join(cells)
    return lines


def column_checksums(database, table, singles):
    """The number of cells, and for each column the sum of the CRC-32 of its cells; a Null adds 0."""
    lines = canonical_lines(database, table, singles)
    names = lines[0].split("\t")
    sums = dict.fromkeys(names, 0)
    for line in lines[1:]:
        for name, cell in zip(names, line.split("\t"), strict=True):
            if cell:
                sums[name] += zlib.crc32(cell.encode())
    return len(names) * (len(lines) - 1), sums


def key_values(database, table, column):
    return [int(row[column]) for row in rows(database, table) if row[column]]


@dataclass(frozen=True)
class Table:
    name: str
    expected_rows: int
    is_keyed: bool
    mode: str
    checksums: dict  # of each column
    singles: frozenset  # columns that hold reals

    @staticmethod
    def of_manifest(entry):
        return Table(entry["name"], entry["expectedRows"], "keyFile" in entry, entry["mode"],
                     {column["name"]: column["checksum"] for column in entry["columns"]},
                     frozenset(column["name"] for column in entry["columns"] if column["type"] == "Single"))

    def differing_columns(self, database):
        """The number of cells in database, and the columns whose cells are not the manifest's."""
        cells, sums = column_checksums(database, self.name, self.singles)
        return cells, sorted(name for name in self.checksums.keys() | sums.keys()
                             if self.checksums.get(name) != sums.get(name))


class SiteFacts:
    def __init__(self, folder):
        manifest = json.loads((folder / "manifest.json").read_text())
        self._catalogue = folder / CATALOGUE
        listed = {row["TableName"]: row for row in rows(self._catalogue, "LogicalMap")}
        of_manifest = {entry["name"]: entry for entry in manifest["tables"]}
        if set(listed) != set(of_manifest):
            raise OperatorError("the catalogue and the manifest name different tables")
        self._map = listed
        # The list shows the tables by name, in an order in which a low line comes before every letter.
        self.tables = [Table.of_manifest(of_manifest[name])
                       for name in sorted(listed, key=lambda name: name.replace("_", " "))]
        self.environment = self._read_environment(folder / "env.sh")

    def range_table(self):
        """The largest table with a numeric key and ordinary records."""
        numeric = {row["LogicalIndex"] for row in self._numeric_keys()}
        candidates = [t for t in self.tables if t.mode == "keyed" and self._map[t.name]["LogicalIndex"] in numeric]
        if not candidates:
            raise OperatorError("no table has a numeric key")
        return max(candidates, key=lambda table: table.expected_rows)

    def key_column(self, table):
        return self._map[table]["IndexFieldinDataFile"]

    def _numeric_keys(self):
        for row in rows(self._catalogue, "LogicalIndexDefinition"):
            if row["DataType"] in ("U", "I"):
                yield {**row, "LogicalIndex": next(iter(row.values()))}

    @staticmethod
    def _read_environment(script):
        """The variables that the site's shell script exports."""
        command = '. "$0"; printf "%s\\0" ' + " ".join(f'"${name}"' for name in ENVIRONMENT)
        done = subprocess.run(["bash", "-c", command, str(script)], stdout=subprocess.PIPE, check=True, text=True)
        return dict(zip(ENVIRONMENT, done.stdout.split("\0")))
