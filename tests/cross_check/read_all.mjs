// Prints the rows of Access database files as the npm package mdb-reader reads them, one JSON object a line:
//   node read_all.mjs PACKAGES   (reads the paths of the files from standard input, a line each)
import { readFileSync, writeSync } from "node:fs";
import { createRequire } from "node:module";
import { pathToFileURL } from "node:url";
import path from "node:path";

const packages = createRequire(path.join(path.resolve(process.argv[2]), "package.json"));
const { default: MDBReader } = await import(pathToFileURL(packages.resolve("mdb-reader")));

const plain = (value) => {
    if (value instanceof Date) return { time: value.toISOString() };
    if (value instanceof Uint8Array) return Buffer.from(value).toString("hex");
    return typeof value === "bigint" ? value.toString() : value;
};

const print = (object) => writeSync(1, JSON.stringify(object) + "\n");

for (const file of readFileSync(0, "utf8").split("\n").filter((line) => line !== "")) {
    try {
        const reader = new MDBReader(readFileSync(file));
        for (const name of reader.getTableNames()) {
            const rows = reader.getTable(name).getData();
            print({ file, table: name, rows: rows.length });
            for (const row of rows) {
                const cells = Object.entries(row).filter(([, value]) => value !== null && value !== undefined);
                print({ row: Object.fromEntries(cells.map(([column, value]) => [column, plain(value)])) });
            }
        }
    } catch (error) {
        print({ file, error: String(error) });
    }
}
