"""What a made-up site says about itself, and what an Access file holds (read with mdbtools)."""

import csv
import io
import json
import subprocess
from dataclasses import dataclass

from display import OperatorError

CATALOGUE = "drive_c/Program Files/Kestrel Software, Inc/Vantora/MasterFileInformation.mdb"
ENVIRONMENT = ("TMPDIR", "XDG_CONFIG_HOME")
csv.field_size_limit(1 << 24)


def rows(database, table):
    """The rows of a table as dictionaries of texts."""
    done = subprocess.run(["mdb-export", str(database), table], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    if done.returncode != 0:
        raise OperatorError(f"mdb-export cannot read {table} of {database}: {done.stderr.decode(errors='replace')}")
    return csv.DictReader(io.StringIO(done.stdout.decode(errors="replace"), newline=""))


def row_count(database, table):
    return sum(1 for _ in rows(database, table))


def key_values(database, table, column):
    return [int(row[column]) for row in rows(database, table) if row[column]]


@dataclass(frozen=True)
class Table:
    name: str
    expected_rows: int
    is_keyed: bool
    mode: str


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
        self.tables = [Table(name, of_manifest[name]["expectedRows"], "keyFile" in of_manifest[name],
                             of_manifest[name]["mode"]) for name in sorted(listed, key=lambda name: name.replace("_", " "))]
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
