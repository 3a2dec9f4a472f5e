#include "HtmlColouring.h"
#include "Rtf.h"

using namespace Qt::StringLiterals;

namespace {

QString colourTable(const QList<int> &palette)
{
    // The leading empty entry is text's own colour, as it is the palette's first.
    QString table = uR"({\colortbl )"_s;
    for (qsizetype i = 1; i < palette.size(); ++i)
        table += u';' + HtmlColouring::rtfColour(palette.at(i)).chopped(1);
    return table + ";}"_L1;
}

void appendCharacter(QString &out, QChar c)
{
    if (c == u'\n') {
        out += "\\par\r\n"_L1;
    } else if (c == u'\\' || c == u'{' || c == u'}') {
        out += u'\\';
        out += c;
    } else if (c == u'\t' || (c >= u' ' && c <= u'~')) {
        out += c;
    } else {
        out += "\\u"_L1 + QString::number(qint16(c.unicode())) + u'?';
    }
}

}

namespace Rtf {

QString write(QStringView text, QByteArrayView colours, const QList<int> &palette)
{
    QString out = HtmlColouring::documentHead(colourTable(palette));
    out.reserve(out.size() + text.size() * 2);
    char colour = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (colours[i] != colour) {
            colour = colours[i];
            out += "\\cf"_L1 + QString::number(uchar(colour)) + u' ';
        }
        appendCharacter(out, text[i]);
    }
    out += HtmlColouring::documentTail();
    return out;
}

}
