#include "tools/sample_site/part_numbers.h"

#include <string_view>

#include "tools/sample_site/random.h"

namespace sample {

namespace {

constexpr std::string_view Consonants = "BCDFGHJKLMNPQRSTVWXZ";
constexpr std::string_view SuffixCharacters = "0123456789ABCDEFGHJKLMNPRSTUVWXYZ";
constexpr std::string_view MaskCharacters = "123456789ABCDEFGHI";  // a dash before position 1, 2, ... 18
constexpr std::size_t NumberLength = 18;
constexpr std::size_t MaskLength = 3;

/// Three letters and six digits that ascend with the ordinal, spread over all there are.
std::string Core(std::int64_t ordinal, std::int64_t parts) {
    constexpr std::int64_t Letters = 3;
    constexpr std::int64_t DigitNumbers = 1'000'000;
    constexpr std::int64_t DigitCount = 6;
    constexpr std::int64_t AllCores = DigitNumbers * 20 * 20 * 20;
    const std::int64_t place = AllCores / (parts + 1) * ordinal;
    std::string core(Letters + DigitCount, '0');
    std::int64_t letters = place / DigitNumbers;
    for (std::int64_t i = Letters; i-- > 0; letters /= 20)
        core[static_cast<std::size_t>(i)] = Consonants[static_cast<std::size_t>(letters % 20)];
    std::int64_t digits = place % DigitNumbers;
    for (std::int64_t i = Letters + DigitCount; i-- > Letters; digits /= 10)
        core[static_cast<std::size_t>(i)] = static_cast<char>('0' + digits % 10);
    return core;
}

/// Takes small numbers out of one scattered number.
class Chooser {
  public:
    explicit Chooser(std::uint64_t bits) : mBits(Scatter(bits)) {}

    std::size_t Below(std::size_t limit) {
        const std::uint64_t chosen = mBits % limit;
        mBits /= limit;
        return static_cast<std::size_t>(chosen);
    }

  private:
    std::uint64_t mBits;
};

/// Inserts dashes between groups of one to four characters and notes each in the mask. Positions count in the
/// text with the dashes inserted so far.
PartNumber Dashed(const std::string& number, std::size_t dashes, Chooser& chooser) {
    constexpr std::size_t LongestGroup = 4;
    PartNumber part{number, ""};
    part.Stored.resize(NumberLength, ' ');
    std::size_t taken = 0;
    for (std::size_t i = 0; i < dashes && taken + LongestGroup < number.size(); ++i) {
        const std::size_t group = 1 + chooser.Below(LongestGroup);
        part.Shown += number.substr(taken, group);
        taken += group;
        part.Stored += MaskCharacters[part.Shown.size()];
        part.Shown += '-';
    }
    part.Shown += number.substr(taken);
    part.Shown.resize(part.Shown.size() + NumberLength - number.size(), ' ');
    part.Stored.resize(NumberLength + MaskLength, ' ');
    return part;
}

}  // namespace

PartNumber PartNumberAt(std::int64_t ordinal, std::int64_t parts) {
    constexpr std::size_t LongestSuffix = 9;
    constexpr std::size_t SuffixChances = 3;  // most numbers have none
    Chooser chooser(static_cast<std::uint64_t>(ordinal));
    std::string number = Core(ordinal, parts);
    const std::size_t suffix = chooser.Below(SuffixChances) == 0 ? chooser.Below(LongestSuffix + 1) : 0;
    const std::size_t dashes = chooser.Below(MaskLength + 1);
    for (std::size_t i = 0; i < suffix; ++i)
        number += SuffixCharacters[chooser.Below(SuffixCharacters.size())];
    return Dashed(number, dashes, chooser);
}

PartNumber NoPartNumber() {
    return {std::string(NumberLength + MaskLength, ' '), std::string(NumberLength, ' ')};
}

}  // namespace sample
