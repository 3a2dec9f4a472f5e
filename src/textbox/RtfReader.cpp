#include "HtmlColouring.h"
#include "Rtf.h"
#include "TextEncoding.h"

using namespace Qt::StringLiterals;

namespace {

/// What a group may change and its end restores.
struct Group {
    char colour = 0;
    /// How many characters stand after \uN for readers that know no Unicode.
    int substitutes = 1;
    /// A destination that holds no text: fonts, a style sheet, a picture.
    bool ignored = false;
    bool isDocument = false;
    /// The palette indexes of this document's colour table.
    QList<char> table;
};

class Reader {
public:
    explicit Reader(QStringView document)
        : m_in(document)
    {
        m_result.text.reserve(document.size());
        m_result.colours.reserve(document.size());
    }

    ColouredText read()
    {
        while (m_pos < m_in.size() && !m_finished)
            step();
        return std::move(m_result);
    }

private:
    void step();
    void plainRun();
    void openGroup();
    void closeGroup();
    void escape();
    void controlWord();
    void apply(QStringView word, int number, bool hasNumber);
    void colourTable();
    void put(QChar c);
    bool skipKnownSequences();

    QStringView m_in;
    qsizetype m_pos = 0;
    bool m_finished = false;
    int m_toSkip = 0;
    Group m_group;
    QList<Group> m_outer;
    ColouredText m_result;
};

bool isLetter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isAsciiDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

void Reader::step()
{
    switch (m_in[m_pos].unicode()) {
    case u'{':
        openGroup();
        break;
    case u'}':
        closeGroup();
        break;
    case u'\\':
        if (!skipKnownSequences())
            escape();
        break;
    case u'\r':
    case u'\n':
        ++m_pos;
        break;
    default:
        plainRun();
    }
}

void Reader::plainRun()
{
    qsizetype end = m_pos + 1;
    if (m_toSkip > 0) {
        --m_toSkip;
        m_pos = end;
        return;
    }
    for (; end < m_in.size(); ++end) {
        const QChar c = m_in[end];
        if (c == u'\\' || c == u'{' || c == u'}' || c == u'\r' || c == u'\n')
            break;
    }
    if (!m_group.ignored) {
        m_result.text += m_in.sliced(m_pos, end - m_pos);
        m_result.colours.append(end - m_pos, m_group.colour);
    }
    m_pos = end;
}

void Reader::openGroup()
{
    m_outer.append(m_group);
    m_group.isDocument = false;
    ++m_pos;
    if (m_in.sliced(m_pos).startsWith("\\*"_L1)) {
        m_group.ignored = true;
        m_pos += 2;
    }
}

void Reader::closeGroup()
{
    ++m_pos;
    m_toSkip = 0;
    if (!m_outer.isEmpty())
        m_group = m_outer.takeLast();
    // What follows the outermost group is no part of the document.
    m_finished = m_outer.isEmpty();
}

/// The two things known of documents made here.
bool Reader::skipKnownSequences()
{
    const QStringView rest = m_in.sliced(m_pos);
    const QStringView tail = HtmlColouring::documentTail();
    if (rest.startsWith(tail)) {
        m_pos += tail.size() - 1;
        return true;
    }
    if (rest.startsWith(uR"(\cf0\plain\f2\fs17\cf2  )")) {
        m_pos += 4;
        apply(u"cf", 0, true);
        // The control words that follow are read as ever; their delimiter is the blank that the
        // first switch lost, and the next one the name's.
        controlWord();
        controlWord();
        controlWord();
        controlWord();
        ++m_pos;
        return true;
    }
    return false;
}

void Reader::escape()
{
    const QChar next = m_pos + 1 < m_in.size() ? m_in[m_pos + 1] : QChar(u' ');
    if (isLetter(next)) {
        controlWord();
    } else if (next == u'\'') {
        bool ok = false;
        const int code = m_in.mid(m_pos + 2, 2).toInt(&ok, 16);
        const char byte = char(code);
        m_pos = qMin(m_pos + 4, m_in.size());
        if (m_toSkip > 0)
            --m_toSkip;
        else if (ok)
            put(TextEncoding::decodePart(QByteArrayView(&byte, 1),
                                         TextEncoding::Encoding::Windows1252)
                    .front());
    } else {
        m_pos = qMin(m_pos + 2, m_in.size());
        if (next == u'~')
            put(QChar(QChar::Nbsp));
        else if (next == u'\r' || next == u'\n')
            put(u'\n');
        else if (next == u'\\' || next == u'{' || next == u'}')
            put(next);
    }
}

void Reader::controlWord()
{
    qsizetype at = m_pos + 1;
    while (at < m_in.size() && isLetter(m_in[at]))
        ++at;
    const QStringView word = m_in.sliced(m_pos + 1, at - m_pos - 1);
    const qsizetype numberStart = at;
    if (at + 1 < m_in.size() && m_in[at] == u'-' && isAsciiDigit(m_in[at + 1]))
        ++at;
    while (at < m_in.size() && isAsciiDigit(m_in[at]))
        ++at;
    bool hasNumber = false;
    const int number = m_in.sliced(numberStart, at - numberStart).toInt(&hasNumber);
    if (at < m_in.size() && m_in[at] == u' ')
        ++at;
    m_pos = at;
    apply(word, number, hasNumber);
}

void Reader::apply(QStringView word, int number, bool hasNumber)
{
    if (word == "rtf"_L1) {
        m_group.isDocument = true;
        m_group.table.clear();
        m_group.colour = 0;
    } else if (word == "colortbl"_L1) {
        colourTable();
        m_group.ignored = true;
    } else if (word == "fonttbl"_L1 || word == "stylesheet"_L1 || word == "info"_L1
               || word == "pict"_L1) {
        m_group.ignored = true;
    } else if (word == "plain"_L1) {
        m_group.colour = 0;
    } else if (word == "cf"_L1) {
        m_group.colour = m_group.table.value(number, 0);
    } else if (word == "par"_L1 || word == "line"_L1) {
        put(u'\n');
    } else if (word == "tab"_L1) {
        put(u'\t');
    } else if (word == "uc"_L1) {
        m_group.substitutes = qMax(0, number);
    } else if (word == "u"_L1 && hasNumber) {
        put(QChar(char16_t(number)));
        m_toSkip = m_group.substitutes;
    }
}

/// Reads the entries up to the group's end and gives the table to the document around it.
void Reader::colourTable()
{
    const qsizetype close = m_in.indexOf(u'}', m_pos);
    const QStringView entries = m_in.sliced(m_pos, (close < 0 ? m_in.size() : close) - m_pos);
    QList<char> table;
    bool first = true;
    for (const QStringView entry : entries.split(u';')) {
        int parts[3] = {0, 0, 0};
        bool empty = true;
        for (const QStringView part : entry.split(u'\\', Qt::SkipEmptyParts)) {
            const QStringView word = part.trimmed();
            const int which = word.startsWith("red"_L1) ? 0
                : word.startsWith("green"_L1)           ? 1
                : word.startsWith("blue"_L1)            ? 2
                                                        : -1;
            if (which < 0)
                continue;
            empty = false;
            parts[which] = word.sliced(which == 0 ? 3 : which == 1 ? 5 : 4).toInt() & 0xff;
        }
        if (!empty)
            table.append(m_result.indexOf(parts[0] | parts[1] << 8 | parts[2] << 16));
        else if (first)
            table.append(0);
        first = false;
    }
    m_pos += entries.size();
    if (!m_outer.isEmpty())
        m_outer.last().table = table;
}

void Reader::put(QChar c)
{
    if (m_group.ignored)
        return;
    m_result.text += c;
    m_result.colours += m_group.colour;
}

}

namespace Rtf {

bool isRtf(QStringView document)
{
    return document.startsWith("{\\rtf"_L1);
}

ColouredText read(QStringView document)
{
    return Reader(document).read();
}

}
