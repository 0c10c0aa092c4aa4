// Data-access objects: an open Access database, its table definitions and its recordsets. Names are looked up
// without regard to letter case. A database is closed by Close or when its last handle goes; its objects then
// raise 3420.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "platform/dao/recordset.h"
#include "platform/dao/relation.h"
#include "platform/dao/table_def.h"

namespace dao {

class Database : public std::enable_shared_from_this<Database> {
  public:
    virtual ~Database() = default;

    /// The table of that name, or the result of a query of the one form
    ///     Select * from T Where [C] = 'text'
    /// whose comparison disregards letter case and trailing blanks; its rows come in physical order.
    /// Raises 3078 for an unknown table, 3061 for an unknown column, 3075 for a query that does not read.
    virtual std::shared_ptr<Recordset> OpenRecordset(std::u16string_view source) = 0;

    /// A table definition that is not part of the database until it is appended to TableDefs.
    virtual std::shared_ptr<TableDef> CreateTableDef(std::u16string_view name) = 0;

    virtual dao::TableDefs& TableDefs() = 0;

    /// A relation that is not part of the database until it is appended to Relations.
    virtual std::shared_ptr<Relation> CreateRelation(std::u16string_view name) = 0;

    virtual dao::Relations& Relations() = 0;

    /// Long work in Update, Flush and Close calls pause every now and then, so that a window can show signs
    /// of life. pause must use no object of this database and raise no error.
    virtual void SetPause(std::function<void()> pause) = 0;

    /// Writes everything to the file without closing it.
    virtual void Flush() = 0;

    /// Writes everything and closes. Every object of the database raises 3420 afterwards; a second Close too.
    virtual void Close() = 0;
};

/// Opens an existing database writable, for other programs too unless it is opened exclusively. Raises 3024
/// (no such file), 3343 (not an Access database of a known format), 3051 (may not be opened), 3045 (asked for
/// exclusively and open elsewhere).
std::shared_ptr<Database> OpenDatabase(std::string_view path, bool exclusive = false);

/// Creates a new database in the Jet 4 format with the locale ";LANGID=0x0409;CP=1252;COUNTRY=0".
/// Raises 3204 (the file exists), 3424 (another locale), 3044 (no such folder), 3436 (cannot be created).
std::shared_ptr<Database> CreateDatabase(std::string_view path, std::string_view locale);

}  // namespace dao
