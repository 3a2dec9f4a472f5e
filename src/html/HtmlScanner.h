#pragma once

#include <QStringView>
#include <algorithm>

/// Finds tags and attributes in source text as these two expressions do, the second run over the
/// result of the first:
///     <[^>]+>
///     ( \w[\w\d\s:_\-\.]* *= *)("[^"]+"|'[^']+'|\d+)
/// in a single pass of linear time, and tells a sink of each piece. The scan can be done in slices.
///
/// Two things follow from the second expression seeing the first one's output: a blank that the
/// first one puts after each tag may begin a name (`tagEnd(true)`), and a name never goes across
/// a carriage return, which is no longer one by then.
///
/// A sink has: text(from, to), tagStart(), tagEnd(bool blankBeginsName), nameStart(),
/// valueStart(), valueEnd(). After tagEnd(true), nameStart() follows.
template <typename Sink> class HtmlScanner {
public:
    /// `separator` is the character that no name goes across: the carriage return, or the line feed
    /// where a line feed alone stands for both.
    explicit HtmlScanner(QStringView text, Sink &sink, char16_t separator = u'\r')
        : m_text(text.utf16())
        , m_size(text.size())
        , m_view(text)
        , m_sink(sink)
        , m_separator(separator)
    {
    }

    /// Goes on to `limit` or a little further; true once the text is done.
    bool run(qsizetype limit)
    {
        limit = std::min(limit, m_size);
        while (m_pos < limit) {
            passBoundaries();
            const qsizetype from = m_pos;
            m_pos = endOfPiece(std::max(limit, from + 1));
            m_sink.text(from, m_pos);
        }
        if (m_pos < m_size)
            return false;
        if (!m_done)
            passBoundaries();
        m_done = true;
        return true;
    }

    qsizetype position() const { return m_pos; }

private:
    static constexpr bool isWord(char16_t c)
    {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9')
            || c == u'_';
    }
    static constexpr bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
    /// May stand inside a name; every white space but the separator may.
    bool isNamePart(char16_t c) const
    {
        return isWord(c) || c == u' ' || c == u':' || c == u'-' || c == u'.'
            || (c >= u'\t' && c <= u'\r' && c != m_separator);
    }

    bool inMatch() const { return m_valueEnd >= 0; }
    bool inTag() const { return m_tagEnd >= 0; }

    /// What begins or ends at the current position, in the order in which it is written.
    void passBoundaries()
    {
        if (m_pos == m_valueEnd) {
            m_valueEnd = -1;
            m_sink.valueEnd();
        }
        if (m_pos == m_tagEnd) {
            m_tagEnd = -1;
            const bool beginsName = !inMatch() && findAttribute(m_pos);
            m_sink.tagEnd(beginsName);
            if (beginsName)
                m_sink.nameStart();
        }
        if (m_pos == m_valueStart) {
            m_valueStart = -1;
            m_sink.valueStart();
        }
        if (m_pos == m_size)
            return;
        const char16_t c = m_text[m_pos];
        if (c == u'<' && !inTag() && findTag(m_pos))
            m_sink.tagStart();
        else if (c == u' ' && !inMatch() && m_pos >= m_nextBlank && findAttribute(m_pos + 1))
            m_sink.nameStart();
    }

    /// The next position after the current one at which something may begin or end.
    qsizetype endOfPiece(qsizetype limit) const
    {
        for (const qsizetype stop : {m_valueStart, m_valueEnd, m_tagEnd}) {
            if (stop > m_pos)
                limit = std::min(limit, stop);
        }
        const bool tags = !inTag();
        const bool blanks = !inMatch();
        qsizetype at = m_pos + 1;
        if (!tags && !blanks)
            return std::max(at, limit);
        for (; at < limit; ++at) {
            const char16_t c = m_text[at];
            if (c > u'<')
                continue;
            if (c == u'<' && tags)
                break;
            if (c == u' ' && blanks && at >= m_nextBlank && at + 1 < m_size
                && isWord(m_text[at + 1]))
                break;
        }
        return at;
    }

    bool findTag(qsizetype at)
    {
        if (m_noGreater || at + 1 >= m_size || m_text[at + 1] == u'>')
            return false;
        const qsizetype end = m_view.indexOf(u'>', at + 1);
        m_noGreater = end < 0;
        if (end >= 0)
            m_tagEnd = end + 1;
        return end >= 0;
    }

    /// Whether a name begins at `name`, its blank before it, with "=" and a value after it.
    bool findAttribute(qsizetype name)
    {
        if (name >= m_size || !isWord(m_text[name]))
            return false;
        qsizetype at = name + 1;
        while (at < m_size && isNamePart(m_text[at]))
            ++at;
        // A later blank in this run would meet the same end of the run, with the same outcome.
        m_nextBlank = at;
        if (at == m_size || m_text[at] != u'=')
            return false;
        ++at;
        while (at < m_size && m_text[at] == u' ')
            ++at;
        const qsizetype end = endOfValue(at);
        if (end < 0)
            return false;
        m_valueStart = at;
        m_valueEnd = end;
        m_nextBlank = end;
        return true;
    }

    qsizetype endOfValue(qsizetype at)
    {
        if (at == m_size)
            return -1;
        const char16_t first = m_text[at];
        if (isDigit(first)) {
            while (++at < m_size && isDigit(m_text[at])) { }
            return at;
        }
        if ((first != u'"' && first != u'\'') || at + 1 == m_size || m_text[at + 1] == first)
            return -1;
        bool &noMore = first == u'"' ? m_noDoubleQuote : m_noSingleQuote;
        if (noMore)
            return -1;
        const qsizetype close = m_view.indexOf(QChar(first), at + 1);
        noMore = close < 0;
        return close < 0 ? -1 : close + 1;
    }

    const char16_t *m_text;
    qsizetype m_size;
    QStringView m_view;
    Sink &m_sink;
    char16_t m_separator;
    qsizetype m_pos = 0;
    // Each is -1 while nothing of its kind is ahead.
    qsizetype m_tagEnd = -1;
    qsizetype m_valueStart = -1;
    qsizetype m_valueEnd = -1;
    /// Blanks before it begin no name.
    qsizetype m_nextBlank = 0;
    // Nothing of the kind follows the place where it was last looked for: looking again and
    // again is what would make the time grow with the square.
    bool m_noGreater = false;
    bool m_noDoubleQuote = false;
    bool m_noSingleQuote = false;
    bool m_done = false;
};
