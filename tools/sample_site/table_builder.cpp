#include "tools/sample_site/table_builder.h"

#include <algorithm>
#include <stdexcept>

namespace sample {

namespace {

constexpr int StatusLength = 2;

}  // namespace

TableBuilder::TableBuilder(std::string name, std::string hierarchy, std::string area) {
    mSpec.Name = std::move(name);
    mSpec.Hierarchy = std::move(hierarchy);
    mSpec.Area = std::move(area);
}

TableBuilder& TableBuilder::File(std::string name, int recordLength) {
    const int before = mSpec.DataFiles.empty() ? 0 : mSpec.RecordLength();
    mSpec.DataFiles.push_back({std::move(name), recordLength});
    mNext = before + StatusLength + 1;
    return *this;
}

TableBuilder& TableBuilder::Field(std::string name, char code, int length, int specifier, Maker make) {
    mSpec.Fields.push_back({std::move(name), code, length, mNext, specifier, std::move(make)});
    mNext += length;
    if (!mSpec.DataFiles.empty() && mNext - 1 > mSpec.RecordLength())
        throw std::logic_error("field " + mSpec.Fields.back().Name + " ends beyond its record");
    return *this;
}

TableBuilder& TableBuilder::Over(std::string name, char code, int specifier, Maker make) {
    const FieldSpec& under = mSpec.Fields.back();
    mSpec.Fields.push_back({std::move(name), code, under.Length, under.Start, specifier, std::move(make)});
    return *this;
}

TableBuilder& TableBuilder::At(int position) {
    mNext = position;
    return *this;
}

TableBuilder& TableBuilder::KeyedBy(const std::string& field) {
    const auto found = std::find_if(mSpec.Fields.begin(), mSpec.Fields.end(),
                                    [&](const FieldSpec& candidate) { return candidate.Name == field; });
    if (found == mSpec.Fields.end()) throw std::logic_error("no field " + field + " for the key");
    mSpec.Key.Segments.push_back({found->Start, found->Length});
    return *this;
}

TableBuilder& TableBuilder::Index(std::string name, std::initializer_list<IndexColumn> columns) {
    mSpec.Indexes.push_back({std::move(name), false, false, columns});
    return *this;
}

TableBuilder& TableBuilder::Primary(std::initializer_list<IndexColumn> columns) {
    mSpec.Indexes.push_back({"PrimaryKey", true, false, columns});
    return *this;
}

TableBuilder& TableBuilder::Unique(std::string name, std::initializer_list<IndexColumn> columns) {
    mSpec.Indexes.push_back({std::move(name), false, true, columns});
    return *this;
}

}  // namespace sample
