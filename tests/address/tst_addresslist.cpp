#include "AddressList.h"

#include <QTest>
#include <random>

using namespace Qt::StringLiterals;

class tst_AddressList : public QObject {
    Q_OBJECT

private slots:
    void keepsNewestFirst();
    void movesEqualEntryToTheTop();
    void keepsEntriesThatDifferInCase();
    void completesWithTheTopmost();
    void completesOverTheScheme();
    void clearForgetsCompletions();
    void agreesWithWalkingTheList();
};

namespace {
void put(AddressList &list, const QString &text)
{
    const int row = list.find(text);
    if (row >= 0)
        list.takeForTop(row);
    list.addOnTop(text);
}

AddressList listOf(const QStringList &oldestFirst)
{
    AddressList list;
    for (const QString &text : oldestFirst)
        put(list, text);
    return list;
}

QStringList rows(const AddressList &list)
{
    QStringList result;
    for (int i = 0; i < list.count(); ++i)
        result.append(list.at(i));
    return result;
}
}

void tst_AddressList::keepsNewestFirst()
{
    QCOMPARE(rows(listOf({u"a"_s, u"b"_s, u"c"_s})), (QStringList{u"c"_s, u"b"_s, u"a"_s}));
}

void tst_AddressList::movesEqualEntryToTheTop()
{
    AddressList list = listOf({u"a"_s, u"b"_s, u"c"_s, u"d"_s});
    QCOMPARE(list.find(u"b"_s), 2);
    put(list, u"b"_s);
    QCOMPARE(rows(list), (QStringList{u"b"_s, u"d"_s, u"c"_s, u"a"_s}));
    QCOMPARE(list.find(u"b"_s), 0);
    QCOMPARE(list.find(u"e"_s), -1);
}

void tst_AddressList::keepsEntriesThatDifferInCase()
{
    AddressList list = listOf({u"http://a/X"_s, u"http://a/x"_s});
    QCOMPARE(list.count(), 2);
    QCOMPARE(list.completion(u"HTTP://A/"_s), u"http://a/x"_s);
    put(list, u"http://a/X"_s);
    QCOMPARE(list.completion(u"http://a/x"_s), u"http://a/X"_s);
}

void tst_AddressList::completesWithTheTopmost()
{
    AddressList list = listOf({u"example.org/one"_s, u"example.org/two"_s, u"example.net"_s});
    QCOMPARE(list.completion(u"exam"_s), u"example.net"_s);
    QCOMPARE(list.completion(u"example.o"_s), u"example.org/two"_s);
    QCOMPARE(list.completion(u"example.org/ONE"_s), u"example.org/one"_s);
    QCOMPARE(list.completion(u"example.org/one/"_s), QString());
    QCOMPARE(list.completion(u"xample"_s), QString());
    put(list, u"example.org/one"_s);
    QCOMPARE(list.completion(u"e"_s), u"example.org/one"_s);
}

void tst_AddressList::completesOverTheScheme()
{
    const AddressList list = listOf({u"http://example.org/"_s});
    QCOMPARE(list.completion(u"exa"_s), QString());
    QCOMPARE(list.completion(u"EXA"_s, u"http://"_s), u"http://example.org/"_s);
    QCOMPARE(list.completion(u"xyz"_s, u"http://"_s), QString());
}

void tst_AddressList::clearForgetsCompletions()
{
    AddressList list = listOf({u"example.org"_s});
    list.clear();
    QCOMPARE(list.count(), 0);
    QCOMPARE(list.find(u"example.org"_s), -1);
    QCOMPARE(list.completion(u"e"_s), QString());
    put(list, u"else"_s);
    QCOMPARE(list.completion(u"e"_s), u"else"_s);
}

void tst_AddressList::agreesWithWalkingTheList()
{
    std::mt19937 random(4711);
    const auto word = [&random](int longest) {
        const QString letters = u"aAbÄäЖж"_s;
        QString result;
        for (int n = int(random() % (longest + 1)); n > 0; --n)
            result += letters.at(int(random() % letters.size()));
        return result;
    };
    AddressList list;
    QStringList walked;
    for (int round = 0; round < 3000; ++round) {
        const QString text = word(6);
        put(list, text);
        walked.removeAll(text);
        walked.prepend(text);
        const QString typed = word(4);
        QString expected;
        for (const QString &entry : std::as_const(walked)) {
            if (entry.startsWith(typed, Qt::CaseInsensitive)) {
                expected = entry;
                break;
            }
        }
        QCOMPARE(list.completion(typed), expected);
    }
    QCOMPARE(rows(list), walked);
}

QTEST_APPLESS_MAIN(tst_AddressList)
#include "tst_addresslist.moc"
