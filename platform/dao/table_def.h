// Definitions of tables, columns and indexes: made empty, filled, then appended to what they belong to.
// Nothing reaches the file before the append.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace dao {

enum class FieldType {
    Boolean = 1,
    Byte = 2,
    Integer = 3,
    Long = 4,
    Currency = 5,
    Single = 6,
    Double = 7,
    Date = 8,
    Binary = 9,
    Text = 10,
    LongBinary = 11,
    Memo = 12
};

/// Value of Field::Attributes that makes an index column descend.
inline constexpr int DescendingField = 1;

/// A column of a table, an index or a relation.
struct Field {
    std::u16string Name;
    FieldType Type = FieldType::Text;
    int Size = 0;  // characters of a Text column
    int Attributes = 0;
    std::u16string ForeignName;  // of a relation's field
};

/// An index before and after it is appended.
class Index {
  public:
    std::u16string Name;
    bool Unique = false;
    bool Required = false;

    bool Primary() const { return mPrimary; }

    /// A primary index is unique and required too.
    void SetPrimary(bool primary) {
        mPrimary = primary;
        if (primary) Unique = Required = true;
    }

    std::vector<Field> Fields;

  private:
    bool mPrimary = false;
};

/// Appended indexes of a table.
class Indexes {
  public:
    virtual ~Indexes() = default;

    /// Adds the index and builds it over the rows there are. Raises 3375 (name in use), 3283 (second primary
    /// key), 3264 (no column), 3409 (unknown column), 3277 (more than 10 columns), 3039 (more than 32
    /// indexes), 3022 (rows that a unique index forbids), 3058 (Null where it is forbidden).
    virtual void Append(const Index& index) = 0;

    virtual int Count() const = 0;
    /// The index at a 0-based position. Raises 3265.
    virtual const Index& Item(int position) const = 0;
};

/// The definition of a table.
class TableDef {
  public:
    virtual ~TableDef() = default;

    virtual const std::u16string& Name() const = 0;

    /// A column of that type; size in characters for Text (255 when 0), disregarded for every other type.
    virtual Field CreateField(std::u16string_view name, FieldType type, int size = 0) const = 0;

    /// A key column of an index, by name only.
    virtual Field CreateField(std::u16string_view name) const = 0;

    /// Adds a column to a definition that is not appended yet. Raises 3380 (name in use), 3190 (more than
    /// 255), 3271 (a Text size over 255), 3125 (not a valid name).
    virtual void AppendField(const Field& field) = 0;

    virtual const std::vector<Field>& Fields() const = 0;

    /// An index that is not part of the table until it is appended to Indexes.
    virtual Index CreateIndex(std::u16string_view name) const = 0;

    virtual dao::Indexes& Indexes() = 0;
};

/// Appended table definitions of a database.
class TableDefs {
  public:
    virtual ~TableDefs() = default;

    /// Makes the table in the file. Raises 3010 (name in use), 3264 (no column), 3125 (not a valid name).
    virtual void Append(const std::shared_ptr<TableDef>& definition) = 0;

    /// Raises 3265 for a table that there is not.
    virtual std::shared_ptr<TableDef> Item(std::u16string_view name) = 0;

    /// The names of the user's tables, in the order of the database's own list.
    virtual std::vector<std::u16string> Names() = 0;
};

}  // namespace dao
