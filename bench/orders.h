// The rows that the writing benchmarks store: one table, Orders, shaped like an exported one. Every program
// that includes this header writes the same rows: the generator has a fixed seed and distributions of its
// own.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace bench {

struct Order {
    static constexpr std::size_t TextCount = 5;
    static constexpr std::size_t AmountCount = 2;

    std::int32_t Id = 0;  // ascends from 1
    std::int32_t Customer = 0;
    std::int32_t Quantity = 0;
    std::array<std::u16string, TextCount> Texts;      // 8 to 30 characters
    std::array<std::int64_t, AmountCount> Amounts{};  // ten-thousandths
    double Date = 0;                                  // whole days since 30 December 1899
    float Weight = 0;
};

/// Column names in the order of the table.
inline constexpr std::array<const char16_t*, 12> ColumnNames{
    u"OrderId", u"CustomerId", u"Quantity",  u"CustomerName", u"Address", u"City",
    u"Product", u"Remark",     u"UnitPrice", u"Total",        u"Ordered", u"Weight"};

/// The text column that the second index is on, as its position among the texts.
inline constexpr std::size_t IndexedText = 0;

class OrderGenerator {
  public:
    /// Makes the next order, reusing the memory of the one before.
    const Order& Next() {
        ++mOrder.Id;
        mOrder.Customer = static_cast<std::int32_t>(Below(100'000));
        mOrder.Quantity = static_cast<std::int32_t>(Below(1'000));
        for (std::u16string& text : mOrder.Texts) MakeText(text);
        for (std::int64_t& amount : mOrder.Amounts)
            amount = static_cast<std::int64_t>(Below(1'000'000'000)) * 100;
        constexpr double FirstDay = 35'000;
        mOrder.Date = FirstDay + static_cast<double>(Below(10'000));
        mOrder.Weight = static_cast<float>(Below(100'000)) / 8;
        return mOrder;
    }

  private:
    std::uint64_t Below(std::uint64_t limit) { return Draw() % limit; }

    void MakeText(std::u16string& text) {
        constexpr char16_t Alphabet[] = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ abcdefghijklmnopqrstuvwxyz0123456789e";
        constexpr unsigned CharacterBits = 6;
        static_assert(sizeof Alphabet / sizeof *Alphabet == (1U << CharacterBits) + 1);
        constexpr std::size_t CharactersInDraw = 64 / CharacterBits;
        constexpr std::uint64_t Shortest = 8;
        constexpr std::uint64_t Longest = 30;
        text.resize(Shortest + Below(Longest - Shortest + 1));
        for (std::size_t start = 0; start < text.size(); start += CharactersInDraw) {
            std::uint64_t bits = Draw();
            const std::size_t end = std::min(start + CharactersInDraw, text.size());
            for (std::size_t i = start; i < end; ++i, bits >>= CharacterBits)
                text[i] = Alphabet[bits % (1U << CharacterBits)];
        }
        if (text.back() == u' ') text.back() = u'.';  // trailing blanks would not count in a key
    }

    /// The next number of a splitmix64 sequence: making the rows should cost little beside writing them.
    std::uint64_t Draw() {
        std::uint64_t mixed = mState += 0x9E3779B97F4A7C15U;
        mixed = (mixed ^ mixed >> 30U) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ mixed >> 27U) * 0x94D049BB133111EBU;
        return mixed ^ mixed >> 31U;
    }

    std::uint64_t mState = 20240607;
    Order mOrder;
};

}  // namespace bench
