#include "LikeList.h"
#include "LikeOperator.h"

#include <QTest>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// Nothing for a pattern with an error.
std::optional<bool> like(const QString &pattern, const QString &text)
{
    std::u32string program;
    if (!LikeProgram::compile(pattern, program))
        return {};
    return LikeProgram::matches(program, LikeProgram::characters(text));
}

}

class tst_likeoperator : public QObject {
    Q_OBJECT

private slots:
    void matches_data();
    void matches();
    void errors_data();
    void errors();
    void manyStarsCostLittle();
    void firstOfTheList();
    void emptyListAndEmptyText();
    void listOfAHundredThousand();
};

void tst_likeoperator::matches_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char16_t *pattern, const char16_t *text, bool expected) {
        const QString p = QString::fromUtf16(pattern);
        const QString t = QString::fromUtf16(text);
        QTest::addRow("'%s' on '%s'", qPrintable(p), qPrintable(t)) << p << t << expected;
    };
    row(u"", u"", true);
    row(u"", u"a", false);
    row(u"abc", u"abc", true);
    row(u"abc", u"ABC", false);
    row(u"abc", u"abcd", false);
    row(u"bc", u"abc", false);
    row(u"*", u"", true);
    row(u"*", u"http://www.example.com/", true);
    row(u"**", u"", true);
    row(u"a*", u"a", true);
    row(u"a*", u"ba", false);
    row(u"*a", u"bba", true);
    row(u"*a", u"ab", false);
    row(u"*ab*", u"xxaabxx", true);
    row(u"*ab*", u"a b", false);
    row(u"a*b*c", u"a1b2b3c", true);
    row(u"a*b*c", u"acb", false);
    row(u"*ab", u"aab", true);
    row(u"*aab", u"aaaab", true);
    row(u"http://*.example.com/*", u"http://ads.example.com/x?y=1", true);
    row(u"http://*.example.com/*", u"http://example.com/", false);
    row(u"?", u"", false);
    row(u"?", u"a", true);
    row(u"?", u"ab", false);
    row(u"?", u"\U0001F600", true);
    row(u"??", u"\U0001F600", false);
    row(u"*?", u"\U0001F600", true);
    row(u"*??", u"\U0001F600", false);
    row(u"a?c", u"abc", true);
    row(u"a?c*", u"abcdef", true);
    row(u"#", u"7", true);
    row(u"#", u"a", false);
    row(u"#", u"\u0661", false);
    row(u"##-#", u"12-3", true);
    row(u"*#", u"abc1", true);
    row(u"[abc]", u"b", true);
    row(u"[abc]", u"d", false);
    row(u"[abc]", u"", false);
    row(u"[a-c]x", u"bx", true);
    row(u"[a-c]", u"B", false);
    row(u"[a-cx-z]", u"y", true);
    row(u"[a-cx-z]", u"m", false);
    row(u"[a-a]", u"a", true);
    row(u"[!abc]", u"d", true);
    row(u"[!abc]", u"a", false);
    row(u"[!abc]", u"", false);
    row(u"[!a-c]", u"b", false);
    row(u"[!a-c]", u"\U0001F600", true);
    row(u"[\U0001F600-\U0001F602]", u"\U0001F601", true);
    row(u"*[0-9].html", u"page12.html", true);
    row(u"*[!0-9].html", u"page12.html", false);
    // Characters that mean nothing where they stand.
    row(u"a]b", u"a]b", true);
    row(u"]", u"]", true);
    row(u"a-b!c", u"a-b!c", true);
    row(u"[*]", u"*", true);
    row(u"[*]", u"a", false);
    row(u"[?]", u"?", true);
    row(u"[?]", u"a", false);
    row(u"[#]", u"#", true);
    row(u"[#]", u"1", false);
    row(u"[[]", u"[", true);
    row(u"[[]x]", u"[x]", true);
    row(u"[a!]", u"!", true);
    row(u"[-a]", u"-", true);
    row(u"[-a]", u"a", true);
    row(u"[a-]", u"-", true);
    row(u"[a-]", u"b", false);
    row(u"[!-a]", u"-", false);
    row(u"[!a-]", u"-", false);
    row(u"[!a-]", u"b", true);
    row(u"[-]", u"-", true);
    row(u"[a-c-]", u"-", true);
    row(u"[]", u"", true);
    row(u"[]", u"a", false);
    row(u"a[]b", u"ab", true);
    row(u"a[]b", u"a[]b", false);
    row(u"*[]*", u"x", true);
    row(u"[!]", u"!", true);
    row(u"[!]", u"a", false);
    row(u"[]]", u"]", true);
    row(u"a[*]", u"a*", true);
    row(u" a ", u"a", false);
    row(u"\u00e9*", u"\u00e9x", true);
}

void tst_likeoperator::matches()
{
    QFETCH(const QString, pattern);
    QFETCH(const QString, text);
    QFETCH(const bool, expected);
    QCOMPARE(like(pattern, text), std::optional(expected));
    LikeList list;
    list.append(pattern);
    QCOMPARE(list.firstMatch(text), expected ? 0 : -1);
}

void tst_likeoperator::errors_data()
{
    QTest::addColumn<QString>("pattern");
    for (const char *pattern :
         {"[", "a[", "[abc", "*[", "[!", "[z-a]", "[!z-a]", "[a-cz-x]", "*[b-a]*", "[a]["})
        QTest::newRow(pattern) << QString::fromLatin1(pattern);
}

void tst_likeoperator::errors()
{
    QFETCH(const QString, pattern);
    QVERIFY(!like(pattern, u"a"_s));
    LikeList list;
    list.append(u"xyz"_s);
    list.append(pattern);
    list.append(u"zzz"_s);
    QCOMPARE(list.size(), 3);
    for (const QString &text : {QString(), pattern, u"a"_s, u"["_s}) {
        QCOMPARE(list.firstMatch(text), -1);
    }
    QCOMPARE(list.firstMatch(u"zzz"_s), 2);
}

void tst_likeoperator::manyStarsCostLittle()
{
    // Trying every split of the text among the stars would not end within the test's time limit.
    const QString text(2000, u'a');
    QCOMPARE(like(u"*a*a*a*a*a*b"_s, text), std::optional(false));
    QCOMPARE(like(u"*a*a*a*a*a*b"_s, text + u'b'), std::optional(true));
    QCOMPARE(like(u"*a"_s.repeated(900) + u"*b"_s, text), std::optional(false));
    QCOMPARE(like(u"*[ab]?"_s.repeated(300) + u"*#"_s, text), std::optional(false));
    QCOMPARE(like(u'*' + QString(1000, u'a') + u"b*"_s, text), std::optional(false));
    QCOMPARE(like(u"*"_s.repeated(100'000), text), std::optional(true));
}

void tst_likeoperator::firstOfTheList()
{
    LikeList list;
    for (const char16_t *pattern : {u"http://b.*", u"[", u"http://a.*", u"http://*", u"", u"*"})
        list.append(QString::fromUtf16(pattern));
    QCOMPARE(list.firstMatch(u"http://a.example.com/"_s), 2);
    QCOMPARE(list.firstMatch(u"http://c.example.com/"_s), 3);
    QCOMPARE(list.firstMatch(u""_s), 4);
    QCOMPARE(list.firstMatch(u"HTTP://a."_s), 5);
    list.clear();
    QCOMPARE(list.size(), 0);
    QCOMPARE(list.firstMatch(u"http://a.example.com/"_s), -1);
}

void tst_likeoperator::emptyListAndEmptyText()
{
    LikeList list;
    QCOMPARE(list.firstMatch(u"a"_s), -1);
    QCOMPARE(list.firstMatch(QString()), -1);
    list.append(u"a"_s);
    QCOMPARE(list.firstMatch(QString()), -1);
    list.append(QString());
    QCOMPARE(list.firstMatch(QString()), 1);
}

void tst_likeoperator::listOfAHundredThousand()
{
    LikeList list;
    for (int i = 0; i < 100'000; ++i)
        list.append(u"http://ads%1.example.com/*"_s.arg(i));
    QCOMPARE(list.firstMatch(u"http://ads99999.example.com/banner"_s), 99'999);
    QCOMPARE(list.firstMatch(u"http://ads0.example.com/"_s), 0);
    QCOMPARE(list.firstMatch(u"http://ads100000.example.com/"_s), -1);
}

QTEST_GUILESS_MAIN(tst_likeoperator)
#include "tst_likeoperator.moc"
