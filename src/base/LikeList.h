#pragma once

#include <QStringView>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// Many patterns of the Like operator, in order, kept so that one text is tested against a hundred
/// thousand of them in a few milliseconds: beside its program each pattern has a small summary that
/// rules out nearly all texts it does not match, and all lie in two blocks of memory.
class LikeList {
public:
    /// A pattern with an error takes its place and matches nothing.
    void append(QStringView pattern);
    void clear();
    qsizetype size() const { return static_cast<qsizetype>(m_entries.size()); }

    /// The index of the first pattern that matches the whole text, or -1.
    qsizetype firstMatch(QStringView text) const;

private:
    struct Entry {
        std::uint32_t begin = 0;
        std::uint32_t length = 0;
        /// How many characters a text must have at least.
        std::uint32_t atLeast = 0;
        /// The character that must stand first or last; 0 where any may.
        char32_t first = 0;
        char32_t last = 0;
        /// Hashes of pairs of neighbours that must occur in the text; the same one again where a
        /// pattern has fewer, 0 for all where it has none.
        std::array<std::uint16_t, 4> pairs = {};
    };
    static Entry summary(std::u32string_view program);

    std::u32string m_programs;
    std::vector<Entry> m_entries;
};
