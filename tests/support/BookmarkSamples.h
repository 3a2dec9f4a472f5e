#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// A small bookmark file of one structure, and what is to be read from it: "Folder{link=address;}".
struct BookmarkSample {
    const char *name = nullptr;
    QByteArray bytes;
    QString text;
};

/// One for each structure that browsers write or wrote.
inline QList<BookmarkSample> bookmarkSamples()
{
    using namespace Qt::StringLiterals;
    QList<BookmarkSample> all;
    const auto add = [&all](const char *name, const QByteArray &bytes, const QString &text) {
        all.append({name, bytes, text});
    };
    add("as written by browsers",
        "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<TITLE>Bookmarks</TITLE>\n<H1>Bookmarks</H1>\n"
        "<DL><p>\n    <DT><H3 ADD_DATE=\"1\">F</H3>\n    <DL><p>\n"
        "        <DT><A HREF=\"http://a/\">A</A>\n    </DL><p>\n"
        "    <DT><A HREF=\"http://b/\">B</A>\n</DL><p>\n",
        u"F{A=http://a/;}B=http://b/;"_s);
    add("every tag closed",
        "<DL><DT><H3>F</H3></DT><DL><DT><A HREF=\"a:\">A</A></DT><DD>x</DD><p></p></DL></DL>",
        u"F{A=a:;}"_s);
    add("titles never closed", "<DL><DT><H3>F<DL><DT><A HREF=\"a:\">A\n<DT><A HREF=\"b:\">B\n</DL>",
        u"F{A=a:;B=b:;}"_s);
    add("rule on the line of the next entry",
        "<DL><HR><DT><A HREF=\"a:\">A</A><HR><A HREF=b:>B</A>", u"A=a:;B=b:;"_s);
    add("lower case", "<dl><dt><h3>F</h3><dl><dt><a href='a:'>A</a></dl></dl>", u"F{A=a:;}"_s);
    add("attributes without value",
        "<DT><H3 FOLDED ADD_DATE=\"1\" X>F</H3><DL><A X HREF=\"a:\" Y>A</A>", u"F{A=a:;}"_s);
    add("no list around all", "<DT><A HREF=\"a:\">A</A><DT><H3>F</H3><DL><A HREF=\"b:\">B</A></DL>",
        u"A=a:;F{B=b:;}"_s);
    add("surplus ends", "</DL><DL></DL></DL><DT><A HREF=\"a:\">A</A></DL><A HREF=\"b:\">B</A>",
        u"A=a:;B=b:;"_s);
    add("missing ends", "<DL><DT><H3>F</H3><DL><DT><H3>G</H3><DL><A HREF=\"a:\">A",
        u"F{G{A=a:;}}"_s);
    add("description over lines",
        "<DL><DT><H3>F</H3><DD>one\ntwo <b>three</b>\n<DL><DT><A HREF=\"a:\">A</A>\n<DD>x\ny\n"
        "<DT><A HREF=\"b:\">B</A></DL>",
        u"F{A=a:;B=b:;}"_s);
    add("folder without list", "<DT><H3>F</H3><DT><H3>G</H3><DT><A HREF=\"a:\">A</A>",
        u"F{}G{}A=a:;"_s);
    add("empty folder", "<DT><H3>F</H3><DL><p></DL><p><DT><A HREF=\"a:\">A</A>", u"F{}A=a:;"_s);
    add("attributes of other browsers",
        "<A FEEDURL=\"f:\" HREF=\"a:\" SHORTCUTURL=\"s\" POST_DATA=\"p=%s\" TAGS=\"x,y\" "
        "PRIVATE=\"1\" LAST_CHARSET=\"UTF-8\">A</A><A FEEDURL=\"f:\">B</A>",
        u"A=a:;B=f:;"_s);
    add("raw and escaped ampersands",
        "<A HREF=\"http://a/?b=1&copy=2&amp;lt=3&lt=4&#38;x&reg;\">A</A>",
        u"A=http://a/?b=1&copy=2&lt=3&lt=4&x&reg;;"_s);
    add("references in titles",
        "<A HREF=\"a:\">&lt;&eacute;&#x2014;&euro;&AMP;&unknown;&#0;&#xd800;&amp</A>",
        u"<é—€&&unknown;&#0;&#xd800;&=a:;"_s);
    add("every name of HTML in titles",
        "<A HREF=\"a:\">|&nbsp;&hellip;&Auml;&NotEqualTilde;&CounterClockwiseContourIntegral;"
        "&fjlig;&zwj;&zopf;|</A>",
        u"|\u00a0…Ä\u2242\u0338\u2233fj\u200d\U0001d56b|=a:;"_s);
    add("names without their end in titles",
        "<A HREF=\"a:\">&copy 1&eacutex&notit;&notin;&hellip&am;&T</A>",
        u"© 1éx¬it;\u2209&hellip&am;&T=a:;"_s);
    add("numbers in titles",
        "<A HREF=\"a:\">&#150;&#x80;&#65B&#x0000000000041;&#8364&#;&#x;&#xg;&#1114112;</A>",
        u"–€ABA€&#;&#x;&#xg;&#1114112;=a:;"_s);
    add("names in addresses", "<A HREF=\"http://a/?x=1&hellip;&copy&#65b&#38;c&apos;\">A</A>",
        u"A=http://a/?x=1&hellip;&copy&#65b&c';"_s);
    add("line ends", "<DT><A\r\nHREF=\"a:\"\r\n>A\r\n  B</A>\r\n", u"A B=a:;"_s);
    add("blanks in titles", "<A HREF=\" a: \">  A  B </A>", u"A  B=a:;"_s);
    add("script", "<A HREF=\"javascript:alert('<a>')\">A</A>", u"A=javascript:alert('<a>');"_s);
    add("empty title", "<A HREF=\"a:\"></A>", u"=a:;"_s);
    add("markup in titles", "<A HREF=\"a:\">A<b>B</b> 1 < 2 <3</A>", u"AB 1 < 2 <3=a:;"_s);
    add("comments",
        "<!-- <A HREF=\"x:\">X</A> --><A HREF=\"a:\">A<!-- no --></A><!-- open <A HREF=b:>B",
        u"A=a:;B=b:;"_s);
    add("tag without end", "<A HREF=\"a:\"\n<DT><A HREF=\"b:\">B</A>", u"=a:;B=b:;"_s);
    add("not UTF-8", "<A HREF=\"a:\">caf\xe9</A>", u"café=a:;"_s);
    add("nothing", "", u""_s);
    add("control characters", QByteArray("<A HREF=\"a\0:\x01\">A\0\x02 B</A>", 24), u"A B=a:;"_s);
    return all;
}

/// What bookmark files are made of, to be put together at random.
inline QList<QByteArray> bookmarkPieces()
{
    return {"<DT>",
            "<A HREF=\"",
            "http://a/?b=c&amp;d",
            "\"",
            "'",
            ">",
            "<",
            "</A>",
            "<H3>",
            "</H3>",
            "<DL><p>",
            "</DL>",
            "<DD>",
            "\n",
            "<!--",
            "-->",
            "<!",
            "ICON=",
            "=",
            " ",
            "&#x41;",
            "&copy",
            "&",
            ";",
            "&#99999999999;",
            "ADD_DATE=\"99999999999999999999\"",
            "/",
            "<HR>",
            "\r\n",
            "FOLDED",
            "<A",
            "place:x",
            "\xff\xfe",
            "\xc3"};
}
