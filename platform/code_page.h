// Windows code page 1252: what the business's bytes stand for. Bytes become Unicode only where they enter a
// data-access value or a widget. The five undefined bytes 81 8D 8F 90 9D stand for the control characters of
// the same number.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

/// The character that one byte of code page 1252 stands for.
char16_t WideFromByte(std::uint8_t byte);

/// Bytes of code page 1252 as UTF-16.
std::u16string WideFromBytes(std::string_view bytes);

/// The same in place of text, whose memory is used again.
void WideFromBytesInto(std::string_view bytes, std::u16string& text);

/// UTF-16 as bytes of code page 1252; a character that the code page lacks becomes "?".
std::string BytesFromWide(std::u16string_view text);

/// UTF-8 to UTF-16 and back; ill-formed parts become U+FFFD.
std::u16string WideFromUtf8(std::string_view text);
std::string Utf8FromWide(std::u16string_view text);

/// Bytes of code page 1252 as UTF-8, for messages.
std::string Utf8FromBytes(std::string_view bytes);

/// A character without letter case. Folds the letters of code page 1252 and leaves every other character
/// alone.
char16_t FoldCase(char16_t character);

/// The same for one byte of code page 1252.
char FoldByte(char byte);

/// Texts compared without regard to letter case.
bool EqualFolded(std::u16string_view a, std::u16string_view b);
bool EqualFoldedBytes(std::string_view a, std::string_view b);

/// Bytes of code page 1252 without letter case: the form under which keyed collections keep their keys.
std::string FoldedBytes(std::string_view bytes);

}  // namespace platform
