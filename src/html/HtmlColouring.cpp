#include "HtmlColouring.h"

#include "HtmlScanner.h"
#include "Log.h"
#include "RegExpText.h"

#include <QRegularExpression>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView headText = uR"({\rtf1\ansi\ansicpg1252\deff0\deftab720)"
                                 uR"({\fonttbl{\f0\fswiss MS Sans Serif;})"
                                 uR"({\f1\froman\fcharset2 Symbol;}{\f2\fswiss MS Sans Serif;}})";
constexpr QStringView paragraphStart = uR"(\deflang1033\pard\plain\f0\fs17 )";
constexpr QStringView tailText = u"\\par \\plain\\f2\\fs17\\cf0\r\n\\par }";

int hexDigit(const QString &text, qsizetype at)
{
    if (at >= text.size())
        return 0;
    return int("0123456789ABCDEF"_L1.indexOf(text.at(at), 0, Qt::CaseInsensitive));
}

/// Writes the document's body as a scan goes on.
class DocumentSink {
public:
    DocumentSink(QStringView source, QStringView head)
        : m_source(source.utf16())
    {
        m_out.resize(head.size() + source.size() * 2 + 1024);
        append(head);
    }

    void text(qsizetype from, qsizetype to)
    {
        makeRoom(to - from);
        char16_t *out = m_data + m_used;
        for (qsizetype i = from; i < to; ++i) {
            const char16_t c = m_source[i];
            const bool special = c == u'\\' || c == u'{' || c == u'}' || c == u'\r';
            if (!special) {
                *out++ = c;
                continue;
            }
            m_used = out - m_data;
            appendSpecial(c);
            makeRoom(to - i);
            out = m_data + m_used;
        }
        m_used = out - m_data;
    }

    void tagStart() { append(uR"(\plain\f2\fs17\cf1 )"); }
    void tagEnd(bool blankBeginsName)
    {
        append(uR"(\plain\f2\fs17\cf0)");
        m_blankOwed = blankBeginsName;
        if (!blankBeginsName)
            append(u" ");
    }
    void nameStart()
    {
        append(uR"(\plain\f2\fs17\cf2 )");
        if (m_blankOwed)
            append(u" ");
        m_blankOwed = false;
    }
    void valueStart() { append(uR"(\plain\f2\fs17\cf3 )"); }
    void valueEnd() { append(uR"(\plain\f2\fs17\cf1 )"); }

    void append(QStringView piece)
    {
        makeRoom(piece.size());
        if (piece.isEmpty())
            return;
        std::memcpy(m_data + m_used, piece.utf16(), size_t(piece.size()) * sizeof(char16_t));
        m_used += piece.size();
    }

    QString take()
    {
        m_out.truncate(m_used);
        return std::move(m_out);
    }

private:
    void appendSpecial(char16_t c)
    {
        if (c == u'\r') {
            append(u"\\par \\r");
        } else {
            const char16_t escaped[] = {u'\\', c};
            append(QStringView(escaped, 2));
        }
    }

    void makeRoom(qsizetype more)
    {
        if (m_used + more > m_out.size())
            m_out.resize((m_used + more) * 3 / 2);
        m_data = reinterpret_cast<char16_t *>(m_out.data());
    }

    const char16_t *m_source;
    QString m_out;
    char16_t *m_data = nullptr;
    qsizetype m_used = 0;
    /// The blank after the last tag is the next name's first character.
    bool m_blankOwed = false;
};

}

namespace HtmlColouring {

QString rtfColour(const QVariant &Color)
{
    int red = 0;
    int green = 0;
    int blue = 0;
    if (Color.typeId() == QMetaType::Int) {
        const int value = Color.toInt();
        red = value % 256;
        green = value % 65536 / 256;
        blue = value / 65536;
    } else if (Color.typeId() == QMetaType::QString) {
        const QString digits = Color.toString().right(6);
        red = 16 * hexDigit(digits, 0) + hexDigit(digits, 1);
        green = 16 * hexDigit(digits, 2) + hexDigit(digits, 3);
        blue = 16 * hexDigit(digits, 4) + hexDigit(digits, 5);
    } else {
        qFatal("fcnGetRTFColor: a colour is an integer or a text");
    }
    return uR"(\red%1\green%2\blue%3;)"_s.arg(red).arg(green).arg(blue);
}

QString replaceText(const QString &pattern, const QString &replacement, const QString &text)
{
    const QRegularExpression expression(pattern, QRegularExpression::CaseInsensitiveOption);
    if (!expression.isValid()) {
        qCWarning(lcFiles) << "not a regular expression:" << pattern;
        return text;
    }
    return RegExpText::replaceAll(expression, replacement, text);
}

QString documentHead(const std::array<int, slotCount> &colours)
{
    QStringList entries;
    for (const int colour : colours)
        entries.append(rtfColour(colour));
    return documentHead(uR"({\colortbl)"_s + entries.join(u';') + ";}"_L1);
}

QString documentHead(const QString &colourTable)
{
    return headText.toString() + "\r\n"_L1 + colourTable + "\r\n"_L1 + paragraphStart.toString();
}

QStringView documentTail()
{
    return tailText;
}

QString colouredDocument(QStringView text, const QString &before, const QString &after)
{
    DocumentSink sink(text, documentHead() + before);
    HtmlScanner scanner(text, sink);
    scanner.run(text.size());
    sink.append(uR"(\plain\f2\fs17\cf0 )");
    sink.append(after);
    sink.append(tailText);
    return sink.take();
}

}
