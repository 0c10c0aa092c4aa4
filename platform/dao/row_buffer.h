// The row under construction. Its texts keep their memory from row to row, so that filling a table does not
// allocate for each of them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/dao/value.h"

namespace dao {

class RowBuffer {
  public:
    explicit RowBuffer(std::size_t columns)
        : mValues(columns), mSpareTexts(columns), mStates(columns, State::Empty) {}

    /// All Null, nothing assigned.
    void Clear() { std::ranges::fill(mStates, State::Empty); }

    /// Puts a value into a column (0-based), which counts as assigned from now on.
    void Assign(std::size_t column, Value value) {
        mValues[column] = std::move(value);
        mStates[column] = State::Assigned;
    }

    /// The same for a text, in memory that the column has already.
    void AssignText(std::size_t column, std::u16string_view text) {
        if (!std::holds_alternative<std::u16string>(mValues[column]))
            mValues[column] = std::move(mSpareTexts[column]);
        std::get<std::u16string>(mValues[column]).assign(text);
        mStates[column] = State::Assigned;
    }

    /// The values of a row that is there already; none counts as assigned.
    void Load(const std::vector<Value>& values) {
        mValues = values;
        std::ranges::fill(mStates, State::Loaded);
    }

    /// The value of a column (0-based), Null when it has none.
    Value At(std::size_t column) const { return mStates[column] == State::Empty ? Value() : mValues[column]; }

    /// Whether a column (0-based) was assigned since Clear or Load.
    bool IsAssigned(std::size_t column) const { return mStates[column] == State::Assigned; }

    std::span<const Value> Values() {
        for (std::size_t i = 0; i < mValues.size(); ++i) {
            if (mStates[i] == State::Empty) PutAway(i);
        }
        return mValues;
    }

  private:
    enum class State : std::uint8_t { Empty, Loaded, Assigned };

    void PutAway(std::size_t column) {
        if (auto* text = std::get_if<std::u16string>(&mValues[column]))
            mSpareTexts[column] = std::move(*text);
        mValues[column] = Null{};
    }

    std::vector<Value> mValues;  // that of a column in state Empty is one of a former row, to be written over
    std::vector<std::u16string> mSpareTexts;
    std::vector<State> mStates;
};

}  // namespace dao
