#include "export/address_block.h"

#include <string_view>

namespace exporting {

using platform::ByteString;

namespace {

constexpr std::size_t LineLength = 30;
constexpr std::size_t FourthLine = 3 * LineLength;  // 0-based place of its first character

constexpr std::size_t StateLength = 2;
constexpr std::size_t PostalLength = 5;
constexpr std::size_t ShortestFullPostal = 9;
constexpr std::size_t LongestPostal = 10;
constexpr std::string_view NoState = "  ";
constexpr std::string_view NoPostal = "     -    ";

constexpr bool IsCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

constexpr bool IsPostal(char c) {
    return c == '-' || (c >= '0' && c <= '9');
}

/// An address as it is searched. Places are 0-based.
class SearchedAddress {
  public:
    explicit SearchedAddress(std::string_view text)
        : mText(text), mFourthLineIsBlank(text.size() > FourthLine && text[FourthLine] == '.') {}

    std::size_t Length() const { return mText.size(); }

    /// Where the run of characters of that kind that ends just before end begins.
    template <typename Kind>
    std::size_t RunStart(std::size_t end, Kind isOfKind) const {
        while (end > 0 && isOfKind(At(end - 1))) --end;
        return end;
    }

    std::string_view Run(std::size_t start, std::size_t end) const {
        return mText.substr(start, end - start);
    }

  private:
    /// The fourth line holds no address when it begins with a period.
    char At(std::size_t place) const {
        const bool isInFourthLine = place >= FourthLine && place < FourthLine + LineLength;
        return mFourthLineIsBlank && isInFourthLine ? ' ' : mText[place];
    }

    std::string_view mText;
    bool mFourthLineIsBlank;
};

/// A run that reaches the start of the address meets no character that would judge it: only one of more than
/// the longest code is cut.
std::string_view PostalAtStart(std::string_view run) {
    if (run.size() > LongestPostal) run = run.substr(0, PostalLength);
    return run.empty() ? NoPostal : run;
}

/// What a run followed (towards the start) by another character gives; nothing for one that is too short.
std::string_view PostalOf(std::string_view run) {
    if (run.size() < PostalLength) return {};
    const bool isWhole =
        run.size() == PostalLength || (run.size() >= ShortestFullPostal && run.size() <= LongestPostal);
    return isWhole ? run : run.substr(0, PostalLength);
}

}  // namespace

ByteString StateCode(std::string_view address) {
    const SearchedAddress searched(address);
    for (std::size_t end = searched.Length(); end > 0;) {
        const std::size_t start = searched.RunStart(end, IsCapital);
        if (end - start == StateLength) return ByteString(searched.Run(start, end));
        end = start == 0 ? 0 : start - 1;
    }
    return ByteString(NoState);
}

ByteString PostalCode(std::string_view address) {
    const SearchedAddress searched(address);
    std::size_t end = searched.Length();
    for (;;) {
        const std::size_t start = searched.RunStart(end, IsPostal);
        const std::string_view run = searched.Run(start, end);
        if (start == 0) return ByteString(PostalAtStart(run));
        if (const std::string_view code = PostalOf(run); !code.empty()) return ByteString(code);
        end = start - 1;
    }
}

}  // namespace exporting
