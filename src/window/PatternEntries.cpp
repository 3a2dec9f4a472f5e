#include "PatternEntries.h"

#include "LikeOperator.h"

#include <algorithm>

void PatternEntries::append(const QString &entry)
{
    ++m_counts[entry];
    m_texts.push_back(LikeProgram::characters(entry));
}

void PatternEntries::removeAt(qsizetype row)
{
    const auto text = m_texts.begin() + row;
    const QString entry = QString::fromUcs4(text->data(), qsizetype(text->size()));
    if (--m_counts[entry] <= 0)
        m_counts.remove(entry);
    m_texts.erase(text);
}

bool PatternEntries::isAnyCoveredBy(const QString &pattern) const
{
    std::u32string program;
    if (!LikeProgram::compile(pattern, program))
        return false;
    if (std::all_of(program.begin(), program.end(), LikeProgram::isCharacter))
        return m_counts.contains(QString::fromUcs4(program.data(), qsizetype(program.size())));
    return std::any_of(m_texts.begin(), m_texts.end(), [&program](const std::u32string &text) {
        return LikeProgram::matches(program, text);
    });
}
