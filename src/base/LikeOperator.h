#pragma once

#include <QStringView>
#include <string>

/// The Like operator: `*` any run of characters, `?` any one character, `#` any one digit 0 to 9,
/// `[list]` any one character of the list (ranges as `a-z`), `[!list]` any one not in it. The whole
/// text must match; letter case counts; a surrogate pair is one character.
///
/// `]` outside a group is itself. In a group only the first `]` ends it; `-` first or last, `!`
/// not first, and `*?#[` are themselves; `[]` matches the empty string, `[!]` the character "!".
/// An unclosed `[` or a descending range is an error, and such a pattern matches nothing.
///
/// Time is at most the length of the text times that of the pattern, whatever the pattern.
///
/// Patterns are compiled, for those who keep many: characters stand for themselves, numbers beyond
/// the last character are operations.
namespace LikeProgram {
inline constexpr char32_t star = 0x80000000;
inline constexpr char32_t any = 0x80000001;
inline constexpr char32_t digit = 0x80000002;
/// Followed by the number of ranges, then first and last character of each.
inline constexpr char32_t oneOf = 0x80000003;
inline constexpr char32_t noneOf = 0x80000004;

/// Appends the program of `pattern`; false, and nothing appended, when it has an error.
bool compile(QStringView pattern, std::u32string &program);
bool matches(std::u32string_view program, std::u32string_view text);

/// One number per character; half a surrogate pair is a character of its own.
std::u32string characters(QStringView text);
constexpr bool isCharacter(char32_t code)
{
    return code < star;
}
/// How many numbers of the program the operation or character at its start takes.
std::size_t width(std::u32string_view program);
}
