"""Writes a catalogue in the format of Access 97 (Jet 3): jet3_catalogue.py SAMPLE.mdb OUT.mdb

Takes a database that the format's own engine made and adds the catalogue's tables to it, page by page and without
anything of the program under test: definitions, usage maps, rows in a shuffled physical order, index leaves, and the
rows and index entries of the system tables. Every table gets a memo column and an index that the catalogue does not
need. All numbers are little-endian but those in index entries; pages have 2048 bytes.
"""

import struct
import sys

PAGE = 2048
BOOLEAN, INTEGER, LONG, DATE, BINARY, TEXT, MEMO = 1, 3, 4, 8, 9, 10, 12
SIZES = {BOOLEAN: 1, INTEGER: 2, LONG: 4, DATE: 8, BINARY: 255, TEXT: 255, MEMO: 0}
FORMATS = {INTEGER: "<h", LONG: "<i", DATE: "<d"}
MAP_LENGTH = 133  # of a usage map's row: type, first page, 1024 bits
MAP_BITS = 5
DEFINITION, LEAF, DATA = 2, 4, 1
SYSTEM_OBJECTS, SYSTEM_ACES = 2, 3
TABLES_CONTAINER = 0x0F000001
ADMIN, USERS = b"\x03\x01", b"\x02\x01"
FULL_ACCESS = 0x000FFEFF
NOON_IN_2009 = 40000.5
STATISTICS = 0x2B  # of a definition: 8 bytes an index
LEAF_MASK, LEAF_ENTRIES = 22, 248

WEIGHTS = {c: 0x11 + i for i, c in enumerate(" !\"#$%&'()*+,-./")} | {"_": 0x2C}
WEIGHTS |= {str(i): 0x56 + i for i in range(10)}
WEIGHTS |= dict(zip("abcdefghijklmnopqrstuvwxyz", bytes.fromhex(
    "60616264666768696A6B6C6D6F70727374757677787A7B7C7D7E")))


def u16(data, at):
    return struct.unpack_from("<H", data, at)[0]


def u32(data, at):
    return struct.unpack_from("<I", data, at)[0]


def text_key(text):
    return b"\x7f" + bytes(WEIGHTS[c] for c in text.rstrip(" ").lower()) + b"\0"


def key_part(kind, value):
    if value is None:
        return b"\0"
    if kind == TEXT:
        return text_key(value)
    size = SIZES[kind]
    return b"\x7f" + ((value + (1 << 8 * size - 1)) % (1 << 8 * size)).to_bytes(size, "big")


class Column:
    def __init__(self, data, at):
        self.kind = data[at]
        self.number, self.variable = u16(data, at + 1), u16(data, at + 3)
        self.fixed = bool(data[at + 13] & 1)
        self.offset = u16(data, at + 14)
        self.name = None


class Table:
    """A definition of one page."""

    def __init__(self, file, page):
        self.file, self.page = file, page
        data = file.page(page)
        assert data[0] == DEFINITION and u32(data, 4) == 0
        self.column_count, self.variable_count = u16(data, 0x15), u16(data, 0x17)
        self.index_count = u32(data, 0x1F)
        at = STATISTICS + 8 * self.index_count
        self.columns = [Column(data, at + 18 * i) for i in range(u16(data, 0x19))]
        at += 18 * len(self.columns)
        for column in self.columns:
            column.name = bytes(data[at + 1:at + 1 + data[at]]).decode("cp1252")
            at += 1 + data[at]
        self.indexes = []
        by_number = {column.number: column for column in self.columns}
        for i in range(self.index_count):
            numbers = [u16(data, at + 39 * i + 3 * k) for k in range(10)]
            columns = [by_number[number] for number in numbers if number != 0xFFFF]
            self.indexes.append((columns, u32(data, at + 39 * i + 34)))

    def encode(self, values):
        fixed, variable, mask = bytearray(), {}, bytearray((self.column_count + 7) // 8)
        for column in self.columns:
            value = values.get(column.name)
            if column.fixed and column.kind != BOOLEAN:
                bytes_ = struct.pack(FORMATS[column.kind], value or 0)
                fixed = fixed.ljust(column.offset + len(bytes_), b"\0")
                fixed[column.offset:column.offset + len(bytes_)] = bytes_
            elif not column.fixed and value is not None:
                bytes_ = value if column.kind == BINARY else value.encode("cp1252")
                if column.kind == MEMO:
                    bytes_ = struct.pack("<III", 0x80000000 | len(bytes_), 0, 0) + bytes_
                variable[column.variable] = bytes_
            if value if column.kind == BOOLEAN else value is not None:
                mask[column.number // 8] |= 1 << column.number % 8
        row, offsets = bytearray([self.column_count]) + fixed, []
        for i in range(self.variable_count):
            offsets.append(len(row))
            row += variable.get(i, b"")
        row += bytes([len(row)]) + bytes(reversed(offsets)) + bytes([self.variable_count]) + mask
        assert len(row) <= 256  # a longer one has bytes that tell where its offsets pass 256
        return row

    def insert(self, values):
        row = self.encode(values)
        place = self.file.add_row(self.roomy_page(len(row)), row)
        data = self.file.page(self.page)
        data[0x0C:0x10] = struct.pack("<I", u32(data, 0x0C) + 1)
        for i, (columns, root) in enumerate(self.indexes):
            key = b"".join(key_part(column.kind, values.get(column.name)) for column in columns)
            if self.file.add_entry(root, key, place):
                at = STATISTICS + 8 * i + 4
                data[at:at + 4] = struct.pack("<I", u32(data, at) + 1)

    def roomy_page(self, length):
        data = self.file.page(self.page)
        owned, free = u32(data, 0x23), u32(data, 0x27)
        for page in self.file.pages_of(owned):
            if u16(self.file.page(page), 2) >= length + 2:
                return page
        page = self.file.append(data_page(self.page))
        self.file.set_bit(owned, page, True)
        self.file.set_bit(free, page, True)
        return page


def data_page(owner):
    return struct.pack("<BBHIH", DATA, 1, PAGE - 10, owner, 0)


class File:
    def __init__(self, data):
        self.data = bytearray(data)

    def page(self, number):
        """A view of the page's bytes, good until the next append."""
        return memoryview(self.data)[number * PAGE:(number + 1) * PAGE]

    def append(self, content):
        number = len(self.data) // PAGE
        self.data = self.data + bytes(content).ljust(PAGE, b"\0")
        self.set_bit(0x100, number, False)  # the map of free pages: page 1, row 0
        return number

    def row(self, pointer):
        page, number = self.page(pointer >> 8), pointer & 0xFF
        end = PAGE if number == 0 else u16(page, 10 + 2 * (number - 1)) & 0x1FFF
        return page[u16(page, 10 + 2 * number) & 0x1FFF:end]

    def set_bit(self, map_pointer, page, value):
        row = self.row(map_pointer)
        assert row[0] == 0 and u32(row, 1) == 0
        byte, bit = MAP_BITS + page // 8, 1 << page % 8
        row[byte] = row[byte] | bit if value else row[byte] & ~bit

    def pages_of(self, map_pointer):
        row = self.row(map_pointer)
        assert row[0] == 0 and u32(row, 1) == 0
        return [8 * i + bit for i, byte in enumerate(row[MAP_BITS:]) for bit in range(8) if byte >> bit & 1]

    def add_row(self, number, row):
        """The pointer of the new row."""
        page = self.page(number)
        count = u16(page, 8)
        end = PAGE if count == 0 else u16(page, 10 + 2 * (count - 1)) & 0x1FFF
        page[end - len(row):end] = row
        page[10 + 2 * count:12 + 2 * count] = struct.pack("<H", end - len(row))
        page[8:10] = struct.pack("<H", count + 1)
        page[2:4] = struct.pack("<H", u16(page, 2) - len(row) - 2)
        return number << 8 | count

    def entries(self, number):
        page = self.page(number)
        assert page[0] == LEAF and u32(page, 8) == 0 and u32(page, 12) == 0
        entries, start, prefix = [], 0, b""
        for bit in range(8 * (LEAF_ENTRIES - LEAF_MASK)):
            if page[LEAF_MASK + bit // 8] >> bit % 8 & 1:
                entries.append(prefix + bytes(page[LEAF_ENTRIES + start:LEAF_ENTRIES + bit]))
                prefix, start = entries[0][:page[20]], bit
        return entries

    def add_entry(self, number, key, pointer):
        """Whether the leaf had no entry of that key."""
        entries = self.entries(number)
        is_new = all(entry[:-4] != key for entry in entries)
        entries = sorted(entries + [key + struct.pack(">I", pointer)])
        page = self.page(number)
        page[LEAF_MASK:PAGE] = bytes(PAGE - LEAF_MASK)
        page[20] = 0
        end = 0
        for entry in entries:
            page[LEAF_ENTRIES + end:LEAF_ENTRIES + end + len(entry)] = entry
            end += len(entry)
            page[LEAF_MASK + end // 8] |= 1 << end % 8
        page[2:4] = struct.pack("<H", PAGE - LEAF_ENTRIES - end)
        return is_new

    def create_table(self, name, columns, key):
        """columns are pairs of name and type; an index "PrimaryKey" over those of key, and one over its first."""
        columns = columns + [("Remark", MEMO)]
        numbers = {column: i for i, (column, _) in enumerate(columns)}
        country = bytes(self.page(SYSTEM_OBJECTS)[STATISTICS + 8 * 2 + 7:][:2])
        page = self.append(b"")
        maps = self.append(data_page(0))
        roots = [self.append(struct.pack("<BBHI", LEAF, 1, PAGE - LEAF_ENTRIES, page)) for _ in range(2)]
        owned, free, memo, memo_free, *index_maps = [self.add_row(maps, bytes(MAP_LENGTH)) for _ in range(6)]
        for place, root in zip(index_maps, roots):
            self.set_bit(place, root, True)

        definitions = names = b""
        offset = variable = 0
        for number, (column, kind) in enumerate(columns):
            fixed = kind in (BOOLEAN, INTEGER, LONG)
            definitions += struct.pack("<BHHH", kind, number, variable, number) + country + struct.pack(
                "<HHBHH", 0x0409, 1252, 3 if fixed else 2, offset if fixed and kind != BOOLEAN else 0, SIZES[kind])
            names += bytes([len(column)]) + column.encode("cp1252")
            offset += SIZES[kind] if fixed and kind != BOOLEAN else 0
            variable += not fixed
        real = logical = b""
        for place, root, parts, flags in zip(index_maps, roots, (key, key[:1]), (0x09, 0x00)):
            slots = b"".join(struct.pack("<HB", numbers[part], 1) for part in parts)
            real += slots.ljust(30, b"\xff") + struct.pack("<IIB", place, root, flags)
        for number, kind in ((1, 0), (0, 1)):  # by name: Further, PrimaryKey
            logical += struct.pack("<IIBIIBBB", number, number, 0, 0xFFFFFFFF, 0, 4, 4, kind)
        body = (bytes(8 * 2) + definitions + names + real + logical + b"\x07Further\x0aPrimaryKey" +
                struct.pack("<HII", numbers["Remark"], memo, memo_free) + b"\xff\xff")
        head = struct.pack("<BB2sIIIIBHHHIIII", DEFINITION, 1, b"VC", 0, STATISTICS + len(body), 0, 0, ord("N"),
                           len(columns), variable, len(columns), 2, 2, owned, free)
        assert len(head) == STATISTICS and len(head + body) <= PAGE
        self.page(page)[:len(head + body)] = head + body

        Table(self, SYSTEM_OBJECTS).insert({
            "Id": page, "ParentId": TABLES_CONTAINER, "Name": name, "Type": 1, "Flags": 0, "Owner": ADMIN,
            "DateCreate": NOON_IN_2009, "DateUpdate": NOON_IN_2009})
        for sid in (ADMIN, USERS):
            Table(self, SYSTEM_ACES).insert({"ObjectId": page, "SID": sid, "ACM": FULL_ACCESS})
        return Table(self, page)


def texts(*names):
    return [(name, TEXT) for name in names]


# Name, columns, primary key and rows of every table. No row stands where its key would have it.
CATALOGUE = [
    ("VantoraFileDefinitions",
     [*texts("TableName"), ("RowNumber", LONG), *texts("FieldName", "FieldType"), ("FieldLength", INTEGER),
      ("StartPosition", INTEGER), ("FieldSpecifier", INTEGER)], ["TableName", "RowNumber"],
     [("PARTS", 2, "Name", "A", 6, 3, 0), ("NOTES", 1, "Text", "A", 4, 1, 0), ("PARTS", 1, "Number", "U", 2, 1, 0),
      ("PARTS", 3, "Price", "m", 3, 9, 0)]),
    ("LogicalMap",
     [*texts("TableName", "TableHierarchy", "KeyFile", "DataFile1", "DataFile2", "DataFile3", "DataFile4",
             "LogicalIndex"), ("StartingStatus", LONG), ("EndingStatus", LONG), *texts("IndexFieldinDataFile"),
      ("RowNumber", LONG)], ["TableName", "RowNumber"],
     [("PARTS", "Mid-Level", "PARTX", "PARTF", None, None, None, "PARTX", 0, 0, "Number", 1),
      ("NOTES", "Bottom Level", None, "NOTEF", None, None, None, None, 1, 9, None, 2),
      ("NOTES", "Top Level", None, "NOTEF", None, None, None, None, 1, 9, None, 1)]),
    ("LogicalIndexDefinition",
     [*texts("KeyName", "KeyFieldDescription", "DataType"), ("StartValue", LONG), ("EndValue", LONG),
      ("Size", INTEGER), ("overrideEnd", LONG), ("overrideStart", LONG)], ["KeyName"],
     [("STORE_X", "Store", "I", -5, 70000, 4, 0, 8), ("PARTX", "Part", "U", 1, 99, 2, -3, 2)]),
    ("LogicalIndex",
     [*texts("TableName", "IndexName"), ("RowNumber", LONG), ("Primary", BOOLEAN), ("Unique", BOOLEAN),
      *texts("FieldName"), ("Descending", BOOLEAN)], ["TableName", "IndexName", "RowNumber"],
     [("PARTS", "PrimaryKey", 1, True, False, "Number", False), ("PARTS", "ByName", 1, False, False, "Name", True)]),
    ("LogicalRelations",
     [*texts("RelationName"), ("RowNumber", LONG), *texts("TableName", "ForeignTable"), ("Type", INTEGER),
      *texts("FieldName", "ForeignName")], ["RelationName", "RowNumber"], []),
]


def main():
    sample, out = sys.argv[1:]
    with open(sample, "rb") as stream:
        file = File(stream.read())
    for name, columns, key, rows in CATALOGUE:
        table = file.create_table(name, columns, key)
        for row in rows:
            values = {column: value for (column, _), value in zip(columns, row)}
            table.insert(values | {"Remark": "a remark"})
    with open(out, "wb") as stream:
        stream.write(file.data)


main()
