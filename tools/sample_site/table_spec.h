// What one table of the sample site looks like: its files, fields, key and target indexes. The writers build
// the records and the index from it, the catalogue writer the catalogue's rows, the manifest its columns.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/dao/table_def.h"
#include "tools/sample_site/field_value.h"
#include "tools/sample_site/row_context.h"

namespace sample {

using Maker = std::function<FieldValue(RowContext&)>;

/// One field of the record, as the catalogue describes it, and what fills it.
struct FieldSpec {
    std::string Name;
    char Code = 'A';    // type code
    int Length = 0;     // bytes
    int Start = 0;      // 1-based
    int Specifier = 0;  // decimals, bit number or character position
    Maker Make;
};

struct DataFileSpec {
    std::string Name;
    int RecordLength = 0;
};

/// The two block formats of an index.
enum class IndexFormat { Block512, Extended2048 };

/// Bytes of the record that are part of the key.
struct KeySegment {
    int Start = 0;  // 1-based
    int Length = 0;
};

/// The key file, and the catalogue's description of its key.
struct KeySpec {
    std::string FileName;  // empty for a table that is walked by record number
    std::string Description;
    IndexFormat Format = IndexFormat::Block512;
    bool Duplicates = false;
    std::vector<KeySegment> Segments;
    char DataType = 'U';
    int Size = 0;  // bytes of the key value at the start of the key
    std::int32_t StartValue = 0;
    std::int32_t EndValue = 0;
    std::function<std::int64_t(std::int64_t)> ValueAt;  // the key of row 1, 2, ...; ascending as bytes
    std::string FieldName;                              // the column that holds the key value

    int Length() const {
        int length = 0;
        for (const KeySegment& segment : Segments) length += segment.Length;
        return length;
    }
};

struct IndexColumn {
    std::string Field;
    bool Descending = false;
};

struct IndexSpec {
    std::string Name;
    bool Primary = false;
    bool Unique = false;
    std::vector<IndexColumn> Columns;
};

/// The lowest and highest status that a walk by record number exports.
struct StatusRange {
    std::int32_t Lowest = 1;
    std::int32_t Highest = 1;
};

struct TableSpec {
    std::string Name;
    std::string Hierarchy;
    std::string Area;  // folder of its files on the link share
    KeySpec Key;
    std::vector<DataFileSpec> DataFiles;  // none when the key is the record
    StatusRange Status;
    std::vector<FieldSpec> Fields;
    std::vector<IndexSpec> Indexes;
    bool IsReshaped = false;       // the export builds records of its own from what is stored
    bool HasDeleted = false;       // some records of the data files are deleted
    std::int64_t RepeatEvery = 0;  // every so many rows the primary key of the row before appears again

    bool IsKeyed() const { return !Key.FileName.empty(); }

    /// Bytes of the concatenated records, or of the key when that is the record.
    int RecordLength() const {
        if (DataFiles.empty()) return Key.Length();
        int length = 0;
        for (const DataFileSpec& file : DataFiles) length += file.RecordLength;
        return length;
    }
};

/// The column that a field becomes.
struct ColumnSpec {
    dao::FieldType Type = dao::FieldType::Text;
    int Size = 0;  // characters of a Text column, 0 where it has none
};

ColumnSpec ColumnOf(const FieldSpec& field);

}  // namespace sample
