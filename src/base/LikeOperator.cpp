#include "LikeOperator.h"

#include <algorithm>

namespace {
using Text = std::u32string_view;

// Appends the group whose list is `list`, without its brackets; false for a descending range.
bool compileGroup(Text list, std::u32string &program)
{
    if (list.empty())
        return true;
    if (list == U"!") {
        program.push_back(U'!');
        return true;
    }
    const bool negated = list.front() == U'!';
    if (negated)
        list.remove_prefix(1);
    program.push_back(negated ? LikeProgram::noneOf : LikeProgram::oneOf);
    const std::size_t count = program.size();
    program.push_back(0);
    while (!list.empty()) {
        const bool range = list.size() >= 3 && list[1] == U'-';
        const char32_t first = list[0];
        const char32_t last = range ? list[2] : first;
        if (last < first)
            return false;
        program.push_back(first);
        program.push_back(last);
        ++program[count];
        list.remove_prefix(range ? 3 : 1);
    }
    return true;
}

bool compileText(Text pattern, std::u32string &program, std::size_t start)
{
    for (std::size_t at = 0; at < pattern.size(); ++at) {
        const char32_t character = pattern[at];
        if (character == U'*') {
            const bool repeated = program.size() > start && program.back() == LikeProgram::star;
            if (!repeated)
                program.push_back(LikeProgram::star);
        } else if (character == U'?') {
            program.push_back(LikeProgram::any);
        } else if (character == U'#') {
            program.push_back(LikeProgram::digit);
        } else if (character == U'[') {
            const std::size_t end = pattern.find(U']', at);
            if (end == Text::npos || !compileGroup(pattern.substr(at + 1, end - at - 1), program))
                return false;
            at = end;
        } else {
            program.push_back(character);
        }
    }
    return true;
}

bool inGroup(Text program, char32_t character)
{
    for (std::size_t range = 0; range < program[1]; ++range) {
        if (character >= program[2 + 2 * range] && character <= program[3 + 2 * range])
            return true;
    }
    return false;
}

// Whether the operation at the start of `program` (never a star) takes `character`.
bool takes(Text program, char32_t character)
{
    switch (program.front()) {
    case LikeProgram::any:
        return true;
    case LikeProgram::digit:
        return character >= U'0' && character <= U'9';
    case LikeProgram::oneOf:
        return inGroup(program, character);
    case LikeProgram::noneOf:
        return !inGroup(program, character);
    default:
        return program.front() == character;
    }
}
}

namespace LikeProgram {

std::u32string characters(QStringView text)
{
    std::u32string result;
    result.reserve(static_cast<std::size_t>(text.size()));
    for (qsizetype at = 0; at < text.size(); ++at) {
        char32_t code = text[at].unicode();
        if (text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate()) {
            code = QChar::surrogateToUcs4(text[at], text[at + 1]);
            ++at;
        }
        result.push_back(code);
    }
    return result;
}

std::size_t width(std::u32string_view program)
{
    const bool group = program.front() == oneOf || program.front() == noneOf;
    return group ? 2 + 2 * std::size_t(program[1]) : 1;
}

bool compile(QStringView pattern, std::u32string &program)
{
    const std::size_t start = program.size();
    if (compileText(characters(pattern), program, start))
        return true;
    program.resize(start);
    return false;
}

bool matches(std::u32string_view program, std::u32string_view text)
{
    // Only the last star passed is ever tried again: what an earlier one could take more, the
    // later one can take as well. This is what keeps the time from growing with every star.
    std::u32string_view rest = program;
    std::u32string_view afterStar;
    bool starSeen = false;
    std::size_t at = 0;
    std::size_t starTook = 0;
    while (at < text.size()) {
        if (!rest.empty() && rest.front() == star) {
            rest.remove_prefix(1);
            if (rest.empty())
                return true;
            afterStar = rest;
            starSeen = true;
            starTook = at;
        } else if (!rest.empty() && takes(rest, text[at])) {
            rest.remove_prefix(width(rest));
            ++at;
            continue;
        } else if (starSeen) {
            ++starTook;
        } else {
            return false;
        }
        if (isCharacter(afterStar.front()))
            starTook = std::min(text.find(afterStar.front(), starTook), text.size());
        rest = afterStar;
        at = starTook;
    }
    return rest.empty() || (rest.size() == 1 && rest.front() == star);
}

}
