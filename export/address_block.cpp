#include "export/address_block.h"

namespace exporting {

using platform::ByteString;

namespace {

// The fourth line holds no address when it begins with a period.
constexpr std::int32_t FourthLine = 91;
constexpr std::int32_t LineLength = 30;

constexpr std::size_t StateLength = 2;
constexpr std::size_t PostalLength = 5;
constexpr std::size_t ShortestFullPostal = 9;
constexpr std::size_t LongestPostal = 10;
constexpr std::string_view NoState = "  ";
constexpr std::string_view NoPostal = "     -    ";

bool HasEmptyFourthLine(std::string_view address) {
    return platform::Mid(address, FourthLine, 1) == ".";
}

ByteString WithBlankFourthLine(std::string_view address) {
    ByteString blanked(address);
    platform::Put(blanked, FourthLine, ByteString(LineLength, ' '));
    return blanked;
}

constexpr bool IsCapital(char c) {
    return c >= 'A' && c <= 'Z';
}

constexpr bool IsPostal(char c) {
    return c == '-' || (c >= '0' && c <= '9');
}

/// Where the last run of characters of that kind before end ends, 0-based; 0 without one.
template <typename Kind>
std::size_t RunEnd(std::string_view text, std::size_t end, Kind isOfKind) {
    while (end > 0 && !isOfKind(text[end - 1])) --end;
    return end;
}

/// Where the run of characters of that kind that ends just before end begins, 0-based.
template <typename Kind>
std::size_t RunStart(std::string_view text, std::size_t end, Kind isOfKind) {
    while (end > 0 && isOfKind(text[end - 1])) --end;
    return end;
}

/// A run that reaches the start of the address meets no character that would judge it: only one of more than
/// the longest code is cut.
std::string_view PostalAtStart(std::string_view run) {
    return run.size() > LongestPostal ? run.substr(0, PostalLength) : run;
}

/// What a run followed (towards the start) by another character gives; nothing for one that is too short.
std::string_view PostalOf(std::string_view run) {
    if (run.size() < PostalLength) return {};
    const bool isWhole =
        run.size() == PostalLength || (run.size() >= ShortestFullPostal && run.size() <= LongestPostal);
    return isWhole ? run : run.substr(0, PostalLength);
}

std::string_view StateIn(std::string_view text) {
    std::size_t start = text.size();
    while (const std::size_t end = RunEnd(text, start, IsCapital)) {
        start = RunStart(text, end, IsCapital);
        if (end - start == StateLength) return text.substr(start, StateLength);
    }
    return NoState;
}

std::string_view PostalIn(std::string_view text) {
    std::size_t start = text.size();
    while (const std::size_t end = RunEnd(text, start, IsPostal)) {
        start = RunStart(text, end, IsPostal);
        const std::string_view run = text.substr(start, end - start);
        if (start == 0) return PostalAtStart(run);
        if (const std::string_view code = PostalOf(run); !code.empty()) return code;
    }
    return NoPostal;
}

}  // namespace

ByteString StateCode(std::string_view address) {
    if (HasEmptyFourthLine(address)) return ByteString(StateIn(WithBlankFourthLine(address)));
    return ByteString(StateIn(address));
}

ByteString PostalCode(std::string_view address) {
    if (HasEmptyFourthLine(address)) return ByteString(PostalIn(WithBlankFourthLine(address)));
    return ByteString(PostalIn(address));
}

}  // namespace exporting
