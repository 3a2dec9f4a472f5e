#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QtTest>

#include "Clipboard.h"

using namespace Qt::StringLiterals;

/// What counts as text on the clipboard, and which text it is.
class tst_Clipboard : public QObject {
    Q_OBJECT

private slots:
    void text_data();
    void text();
    void toolkitsTextComesFirst();
    void nothingIsNoText();
    void encodedTextIsMadePlain();
    void otherKindsAreLeftAsTheyAre();
};

void tst_Clipboard::text_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    const QByteArray utf8 = u"h\u00e9\u6f22"_s.toUtf8();
    const QString words = u"h\u00e9\u6f22"_s;
    QTest::newRow("plain") << u"text/plain"_s << utf8 << words;
    QTest::newRow("charset") << u"text/plain;charset=utf-8"_s << utf8 << words;
    QTest::newRow("upper case") << u"text/plain;charset=UTF-8"_s << utf8 << words;
    QTest::newRow("blank") << u"text/plain; charset=utf-8"_s << utf8 << words;
    QTest::newRow("quotes") << u"text/plain;charset=\"utf-8\""_s << utf8 << words;
    QTest::newRow("latin") << u"text/plain;charset=iso-8859-1"_s << QByteArray("h\xe9")
                           << u"h\u00e9"_s;
    QTest::newRow("utf-16") << u"text/plain;charset=utf-16le"_s << QByteArray("h\0\xe9\0", 4)
                            << u"h\u00e9"_s;
    QTest::newRow("unknown") << u"text/plain;charset=nosuch"_s << utf8 << words;
    QTest::newRow("no charset") << u"text/plain;format=flowed"_s << utf8 << words;
    QTest::newRow("another kind") << u"text/plainer"_s << utf8 << QString();
    QTest::newRow("empty") << u"text/plain;charset=utf-8"_s << QByteArray() << QString();
}

void tst_Clipboard::text()
{
    QFETCH(QString, format);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, expected);
    auto *data = new QMimeData;
    data->setData(format, bytes);
    QGuiApplication::clipboard()->setMimeData(data);
    QCOMPARE(clipboardHasText(), !expected.isEmpty());
    QCOMPARE(clipboardText(), expected);
}

void tst_Clipboard::toolkitsTextComesFirst()
{
    auto *data = new QMimeData;
    data->setData(u"text/plain;charset=iso-8859-1"_s, "one");
    data->setText(u"two"_s);
    QGuiApplication::clipboard()->setMimeData(data);
    QCOMPARE(clipboardText(), u"two"_s);
}

void tst_Clipboard::nothingIsNoText()
{
    QGuiApplication::clipboard()->clear();
    QVERIFY(!clipboardHasText());
    QCOMPARE(clipboardText(), QString());
}

void tst_Clipboard::encodedTextIsMadePlain()
{
    auto *data = new QMimeData;
    data->setData(u"text/plain;charset=UTF-8"_s, "one");
    QGuiApplication::clipboard()->setMimeData(data);
    QVERIFY(!QGuiApplication::clipboard()->mimeData()->hasText());
    makeClipboardTextPlain();
    QVERIFY(QGuiApplication::clipboard()->mimeData()->hasText());
    QCOMPARE(QGuiApplication::clipboard()->text(), u"one"_s);
}

void tst_Clipboard::otherKindsAreLeftAsTheyAre()
{
    auto *data = new QMimeData;
    data->setData(u"text/plain;charset=UTF-8"_s, "one");
    data->setHtml(u"<b>one</b>"_s);
    QGuiApplication::clipboard()->setMimeData(data);
    makeClipboardTextPlain();
    QCOMPARE(QGuiApplication::clipboard()->mimeData(), data);
    QGuiApplication::clipboard()->clear();
    makeClipboardTextPlain();
    QCOMPARE(QGuiApplication::clipboard()->text(), QString());
}

QTEST_MAIN(tst_Clipboard)
#include "tst_clipboard.moc"
