// Describes a table field by field: positions follow from the lengths, so a description reads as a list.
#pragma once

#include <initializer_list>
#include <string>

#include "tools/sample_site/table_spec.h"

namespace sample {

class TableBuilder {
  public:
    TableBuilder(std::string name, std::string hierarchy, std::string area);

    /// The records of this file follow in the concatenated record; fields come after its status word.
    TableBuilder& File(std::string name, int recordLength);

    /// A field at the next free position.
    TableBuilder& Field(std::string name, char code, int length, int specifier, Maker make);

    /// Another reading of the bytes of the field before.
    TableBuilder& Over(std::string name, char code, int specifier, Maker make);

    /// The next field begins at this 1-based position.
    TableBuilder& At(int position);

    /// Makes the bytes of a field described before part of the key.
    TableBuilder& KeyedBy(const std::string& field);

    TableBuilder& Index(std::string name, std::initializer_list<IndexColumn> columns);
    TableBuilder& Primary(std::initializer_list<IndexColumn> columns);
    TableBuilder& Unique(std::string name, std::initializer_list<IndexColumn> columns);

    /// Everything else of the description.
    TableSpec& Spec() { return mSpec; }

    TableSpec Done() const { return mSpec; }

  private:
    TableSpec mSpec;
    int mNext = 1;  // 1-based position of the next field
};

}  // namespace sample
