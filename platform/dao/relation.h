// Relations between tables, as the builder's relation step uses them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/dao/table_def.h"

namespace dao {

/// Values that add up in Relation::Attributes.
inline constexpr int UniqueRelation = 1;
inline constexpr int RelationDoNotEnforce = 2;

struct Relation {
    std::u16string Name;
    std::u16string Table;
    std::u16string ForeignTable;
    int Attributes = 0;
    std::vector<Field> Fields;
};

/// Appended relations of a database.
class Relations {
  public:
    virtual ~Relations() = default;

    /// Adds the relation to the file. Raises 3012 (name in use), 3265 (unknown table or column).
    virtual void Append(const Relation& relation) = 0;

    virtual int Count() const = 0;
};

}  // namespace dao
