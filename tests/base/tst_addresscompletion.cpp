#include "AddressCompletion.h"

#include <QDir>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;

class tst_addresscompletion : public QObject {
    Q_OBJECT

private slots:
    void completes_data();
    void completes();
    void homeFolder();
};

void tst_addresscompletion::completes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("address");
    const auto row = [](const char *name, const QString &text, const QString &address) {
        QTest::newRow(name) << text << address;
    };
    row("host", u"example.com"_s, u"http://example.com"_s);
    row("host and path", u"example.com/a b"_s, u"http://example.com/a%20b"_s);
    row("blanks around", u"  example.com  "_s, u"http://example.com"_s);
    row("wrapped", u"http://example.com/a\r\nb"_s, u"http://example.com/ab"_s);
    row("port", u"localhost:8080"_s, u"http://localhost:8080"_s);
    row("port and path", u"localhost:8080/x?y"_s, u"http://localhost:8080/x?y"_s);
    row("dotted host and port", u"example.com:81"_s, u"http://example.com:81"_s);
    row("ipv4 and port", u"127.0.0.1:81/a"_s, u"http://127.0.0.1:81/a"_s);
    row("ipv6 in brackets", u"[::1]:8080/x"_s, u"http://[::1]:8080/x"_s);
    row("ipv6 bare", u"::1"_s, u"http://[::1]/"_s);
    row("non-ascii host", u"b\u00fccher.example"_s, u"http://xn--bcher-kva.example"_s);
    row("non-ascii path", u"http://example.com/\u00e4?\u00f6"_s,
        u"http://example.com/%C3%A4?%C3%B6"_s);
    row("encoded stays", u"http://example.com/a%20b?c=%C3%A4"_s,
        u"http://example.com/a%20b?c=%C3%A4"_s);
    row("lone percent", u"http://example.com/100%"_s, u"http://example.com/100%25"_s);
    row("blank page", u"About:Blank"_s, u"about:blank"_s);
    row("blank page, shouted", u"ABOUT:BLANK"_s, u"about:blank"_s);
    row("scheme in upper case", u"HTTP://Example.com/A"_s, u"http://example.com/A"_s);
    row("no slashes", u"http:example.com"_s, u"http://example.com"_s);
    row("backslashes", u"http:\\\\example.com"_s, u"http://example.com"_s);
    row("two slashes", u"//example.com/x"_s, u"http://example.com/x"_s);
    row("local path", u"/etc/a b#1"_s, u"file:///etc/a%20b%231"_s);
    row("local address", u"file:///etc/x"_s, u"file:///etc/x"_s);
    row("data", u"data:text/html,<p>x"_s, u"data:text/html,%3Cp%3Ex"_s);
    row("mail", u"mailto:a@b.example"_s, u"mailto:a@b.example"_s);
    row("empty", QString(), QString());
    row("only blanks", u"   "_s, QString());
    row("only line breaks", u"\r\n"_s, QString());
    row("no host", u"http:///"_s, QString());
    row("no host, secure", u"https://"_s, QString());
    row("script", u"javascript:alert(1)"_s, QString());
    row("script in any case", u" JavaScript:alert(1)"_s, QString());
    row("script after a line break", u"java\nscript:alert(1)"_s, QString());
    row("script with a number", u"javascript:1"_s, QString());
    row("words", u"hello world"_s, QString());
}

void tst_addresscompletion::completes()
{
    QFETCH(QString, text);
    QFETCH(QString, address);
    QCOMPARE(QString::fromLatin1(completeAddress(text).toEncoded()), address);
}

void tst_addresscompletion::homeFolder()
{
    QCOMPARE(completeAddress(u"~/x.html"_s), QUrl::fromLocalFile(QDir::homePath() + "/x.html"_L1));
}

QTEST_MAIN(tst_addresscompletion)
#include "tst_addresscompletion.moc"
