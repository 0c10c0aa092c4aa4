// The rows that the writing benchmarks store: one table, Orders, shaped like an exported one. Every program
// that includes this header writes the same rows: the generator has a fixed seed and distributions of its
// own.
#pragma once

#include <array>
#include <cstdint>
#include <random>
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
    std::uint64_t Below(std::uint64_t limit) { return mRandom() % limit; }

    void MakeText(std::u16string& text) {
        constexpr char16_t Alphabet[] = u"ABCDEFGHIJKLMNOPQRSTUVWXYZ abcdefghijklmnopqrstuvwxyz0123456789";
        constexpr std::uint64_t AlphabetLength = sizeof(Alphabet) / sizeof(char16_t) - 1;
        constexpr std::uint64_t Shortest = 8;
        constexpr std::uint64_t Longest = 30;
        text.resize(Shortest + Below(Longest - Shortest + 1));
        std::uint64_t bits = 0;
        for (char16_t& character : text) {
            if (bits < AlphabetLength) bits = mRandom();
            character = Alphabet[bits % AlphabetLength];
            bits /= AlphabetLength;
        }
        if (text.back() == u' ') text.back() = u'.';  // trailing blanks would not count in a key
    }

    std::mt19937_64 mRandom{20240607};
    Order mOrder;
};

}  // namespace bench
