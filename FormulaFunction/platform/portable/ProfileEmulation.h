// Private-profile (INI) files in pure standard C++, reproducing what the Windows
// profile functions answer and how they edit a file. Systems without those
// functions use this; on Windows it is compiled only to be compared with the
// real API.
//
// The file is a sequence of lines ending in CRLF, LF or CR. A line whose first
// non-blank character is '[' and that holds a ']' further on starts a section
// named by the text between the '[' and the last ']'. The lines before the first
// such header form a nameless section, matched by the name "". Any other
// non-blank line is a key: its name is the text before the first '=', its value
// the text after it; a line without '=' is a key with no value. There are no
// comments: ";x=1" is the key ";x". Names match after trimming blanks, without
// regard to ASCII case, and only the first section of a name and the first
// matching key in it count. Bytes are not decoded: a UTF-8 byte-order mark is
// part of the first line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ffplatform {
namespace emulated {

// The buffer, terminating NUL included, that the string reader fills for the
// library, and the one the integer reader reads the value into.
constexpr size_t kProfileStringBuffer = 260;
constexpr size_t kProfileIntBuffer = 30;

// The stored value of `key` in `section` of the file text `text`, trimmed of
// blanks, or nothing when the section or key is missing or the key has no '='.
std::optional<std::string> FindProfileValue(std::string_view text, std::string_view section,
                                            std::string_view key);

// What a reader with a buffer of `bufferSize` characters hands back for a stored
// value (already trimmed): one pair of matching quotes removed, cut to fit.
std::string CopyProfileValue(std::string_view value, size_t bufferSize);

// What the reader hands back when the key is missing: the default without its
// trailing spaces (its first character always stays), cut to fit.
std::string CopyProfileDefault(std::string_view defaultValue, size_t bufferSize);

// The number as the system's integer reader takes it: control characters and
// blanks skipped, an optional sign, then digits in base 10, or in base 16, 8 or 2
// after a "0x", "0o" or "0b" prefix (lower case only; digits above 9 are letters of
// either case), wrapping modulo 2^32; the first other character ends the number
// ("7abc" is 7, "abc" is 0, "-3" is 4294967293, "0x1F" is 31, "0X1F" is 0).
uint32_t ParseProfileInt(std::string_view text);

// The file text after `key` of `section` is set to `value`: the existing key line
// is rewritten in place, or a new key is added after the last line of its
// section, or a new section is appended at the end. Every other byte stays.
std::string SetProfileValue(std::string_view text, std::string_view section,
                            std::string_view key, std::string_view value);

// The profile functions over a file. Texts are cut at an embedded NUL, as the
// C strings handed to the system would be.
uint32_t ProfileGetInt(const std::string& section, const std::string& key,
                       int32_t defaultValue, const std::string& path);
std::string ProfileGetString(const std::string& section, const std::string& key,
                             const std::string& defaultValue, const std::string& path);
bool ProfileWriteString(const std::string& section, const std::string& key,
                        const std::string& value, const std::string& path);

}  // namespace emulated
}  // namespace ffplatform
