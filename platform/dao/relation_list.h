// The relations of a database, as rows of MSysRelationships: one row for each pair of columns.
#pragma once

#include <memory>
#include <utility>

#include "platform/dao/connection.h"
#include "platform/dao/relation.h"

namespace dao {

class RelationList final : public Relations {
  public:
    explicit RelationList(std::shared_ptr<Connection> connection) : mConnection(std::move(connection)) {}

    void Append(const Relation& relation) override;
    int Count() const override;

  private:
    std::vector<std::u16string> Names() const;

    std::shared_ptr<Connection> mConnection;
};

}  // namespace dao
