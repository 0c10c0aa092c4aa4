// The row under construction. Its texts keep their memory from row to row, so that filling a table does not
// allocate for each of them.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dao/value.h"

namespace dao {

class RowBuffer {
  public:
    explicit RowBuffer(std::size_t columns) : mValues(columns), mSpareTexts(columns), mAssigned(columns) {}

    /// All Null, nothing assigned.
    void Clear() {
        for (std::size_t i = 0; i < mValues.size(); ++i) {
            if (auto* text = std::get_if<std::u16string>(&mValues[i])) mSpareTexts[i] = std::move(*text);
            mValues[i] = Null{};
            mAssigned[i] = false;
        }
    }

    void Assign(std::size_t column, Value value) {
        mValues[column] = std::move(value);
        mAssigned[column] = true;
    }

    void AssignText(std::size_t column, std::u16string_view text) {
        if (!std::holds_alternative<std::u16string>(mValues[column]))
            mValues[column] = std::move(mSpareTexts[column]);
        std::get<std::u16string>(mValues[column]).assign(text);
        mAssigned[column] = true;
    }

    /// The values of a row that is there already; none counts as assigned.
    void Load(const std::vector<Value>& values) {
        mValues = values;
        mAssigned.assign(mValues.size(), false);
    }

    const Value& At(std::size_t column) const { return mValues[column]; }
    bool IsAssigned(std::size_t column) const { return mAssigned[column]; }
    std::span<const Value> Values() const { return mValues; }

  private:
    std::vector<Value> mValues;
    std::vector<std::u16string> mSpareTexts;
    std::vector<bool> mAssigned;
};

}  // namespace dao
