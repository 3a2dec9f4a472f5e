#include "LikeList.h"

#include "LikeOperator.h"

#include <bitset>
#include <limits>

namespace {
constexpr std::size_t hashes = 4096;

// Never 0, which stands for "no pair".
std::uint16_t pairHash(char32_t first, char32_t second)
{
    return static_cast<std::uint16_t>((first * 61 + second) % (hashes - 1) + 1);
}
}

LikeList::Entry LikeList::summary(std::u32string_view program)
{
    Entry entry;
    if (!program.empty() && LikeProgram::isCharacter(program.front()))
        entry.first = program.front();
    std::vector<std::uint16_t> pairs;
    // A number no operation and no character has, so that the first character makes no pair.
    char32_t before = LikeProgram::star;
    while (!program.empty()) {
        const char32_t code = program.front();
        if (code != LikeProgram::star)
            ++entry.atLeast;
        if (LikeProgram::isCharacter(before) && LikeProgram::isCharacter(code))
            pairs.push_back(pairHash(before, code));
        before = code;
        program.remove_prefix(LikeProgram::width(program));
    }
    if (LikeProgram::isCharacter(before))
        entry.last = before;
    if (pairs.empty())
        return entry;
    // Spread over the pattern: its ends are what it shares with most others.
    const std::size_t steps = entry.pairs.size() + 1;
    for (std::size_t i = 0; i < entry.pairs.size(); ++i)
        entry.pairs[i] = pairs[pairs.size() * (i + 1) / steps];
    return entry;
}

void LikeList::append(QStringView pattern)
{
    const std::size_t begin = m_programs.size();
    if (!LikeProgram::compile(pattern, m_programs)) {
        Entry never;
        never.atLeast = std::numeric_limits<std::uint32_t>::max();
        m_entries.push_back(never);
        return;
    }
    Entry entry = summary(std::u32string_view(m_programs).substr(begin));
    entry.begin = static_cast<std::uint32_t>(begin);
    entry.length = static_cast<std::uint32_t>(m_programs.size() - begin);
    m_entries.push_back(entry);
}

void LikeList::clear()
{
    m_programs.clear();
    m_entries.clear();
}

qsizetype LikeList::firstMatch(QStringView text) const
{
    const std::u32string characters = LikeProgram::characters(text);
    std::bitset<hashes> present;
    present.set(0);
    for (std::size_t i = 1; i < characters.size(); ++i)
        present.set(pairHash(characters[i - 1], characters[i]));
    const char32_t first = characters.empty() ? 0 : characters.front();
    const char32_t last = characters.empty() ? 0 : characters.back();

    const std::u32string_view programs = m_programs;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const Entry &entry = m_entries[i];
        const bool possible = characters.size() >= entry.atLeast
            && (entry.first == 0 || entry.first == first) && (entry.last == 0 || entry.last == last)
            && present[entry.pairs[0]] && present[entry.pairs[1]] && present[entry.pairs[2]]
            && present[entry.pairs[3]];
        if (possible
            && LikeProgram::matches(programs.substr(entry.begin, entry.length), characters))
            return static_cast<qsizetype>(i);
    }
    return -1;
}
