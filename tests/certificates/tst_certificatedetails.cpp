// What a user is told of a certificate, and what he lets pass.
#include "CertificateDetails.h"
#include "CertificateExceptions.h"
#include "CertificateReason.h"
#include "CertificateText.h"
#include "Language.h"
#include "TestCertificates.h"

#include <QClipboard>
#include <QCryptographicHash>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>

using namespace Qt::StringLiterals;
using TestCertificates::Shape;
using TestCertificates::Signer;

class tst_certificatedetails : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup() { CertificateExceptions::instance().clear(); }
    void linesSayWhatIsInIt();
    void datesAreInTheLanguage();
    void hostileNamesAreEscapedAndCut();
    void thousandNames();
    void namesOfPersonsAreNoSites();
    void hugeChain();
    void chosenOneIsShown();
    void copyTakesAll();
    void copyTakesTheSelection();
    void emptyChain();
    void exceptionIsForHostAndCertificate();
    void exceptionIsForItsFlaws();
    void exceptionsOfStrictSitesAreNotKept();
    void hostIsUnprovenOnAllPorts();
    void datesAreAddedToTheReasons();

private:
    QList<QSslCertificate> chain(const Shape &shape) const
    {
        return TestCertificates::shaped(m_folder.path(), shape).localCertificateChain();
    }
    static QString shownBy(const CertificateDetails &details)
    {
        return details.findChild<QTextEdit *>(u"txtCertificate"_s)->toPlainText();
    }

    QTemporaryDir m_folder;
};

void tst_certificatedetails::initTestCase()
{
    const QString wrong = TestCertificates::make(m_folder.path(), m_folder.path());
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong));
}

void tst_certificatedetails::linesSayWhatIsInIt()
{
    const QSslCertificate own =
        chain({.signer = Signer::Stranger, .subject = u"/O=Firm/CN=localhost"_s}).first();
    CertificateDetails details(u"https://localhost"_s, nullptr);
    details.setChain({own});
    const QString text = shownBy(details).replace(u":\n"_s, u":"_s);
    for (const QString &part :
         {u"CN=localhost, O=Firm"_s, u"CN=Stranger"_s, u"127.0.0.1"_s, u"RSA, 2048 bits"_s,
          u"sha256WithRSAEncryption"_s, QString::fromLatin1(own.serialNumber()),
          QString::fromLatin1(own.digest(QCryptographicHash::Sha256).toHex(':')).toUpper(),
          QString::fromLatin1(own.digest(QCryptographicHash::Sha1).toHex(':')).toUpper(),
          languageLocale().toString(own.expiryDate().toLocalTime(), QLocale::LongFormat)})
        QVERIFY2(text.contains(part), qPrintable(part + u'\n' + text));
    QCOMPARE(details.windowTitle(), u"Certificate of https://localhost"_s);
}

/// Not in that of the desktop, whose country alone counts.
void tst_certificatedetails::datesAreInTheLanguage()
{
    const QLocale desktop;
    const auto back = qScopeGuard([desktop] {
        QLocale::setDefault(desktop);
        setLanguageName(u"English"_s);
    });
    const QSslCertificate own = chain({.signer = Signer::Stranger}).first();
    const auto shown = [&own](const QLocale &locale) {
        const QString date = locale.toString(own.expiryDate().toLocalTime(), QLocale::LongFormat);
        CertificateDetails details(u"https://localhost"_s, nullptr);
        details.setChain({own});
        return shownBy(details).contains(date);
    };
    QLocale::setDefault(QLocale::c());
    QVERIFY(shown(QLocale::c()));
    setLanguageName(u"German"_s);
    QVERIFY(shown(QLocale(QLocale::German)));
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Austria));
    QVERIFY(shown(QLocale(QLocale::German, QLocale::Austria)));
    setLanguageName(u"English"_s);
    QVERIFY(shown(QLocale(QLocale::English, QLocale::Austria)));
}

void tst_certificatedetails::hostileNamesAreEscapedAndCut()
{
    QCOMPARE(CertificateText::safe(u"good\u202Eliv\u200B\nx"_s),
             u"good\\u202Eliv\\u200B\\u000Ax"_s);
    QVERIFY(CertificateText::safe(QString(100000, u'x')).size() < 400);
    // Six letters for each: as many as fit, and none of them halved.
    QCOMPARE(CertificateText::safe(QString(300000, QChar(1))), u"\\u0001"_s.repeated(50) + u'…');
    QCOMPARE(CertificateText::safe(u'x' + QString(300000, QChar(1))),
             u'x' + u"\\u0001"_s.repeated(49) + u'…');
    QCOMPARE(CertificateText::safe(QString(300, u'x')), QString(300, u'x'));
    const QSslCertificate odd = chain({.subject = u"/CN=a\u202Eb"_s}).first();
    QVERIFY(!CertificateText::subject(odd).contains(QChar(0x202e)));
    CertificateDetails details({}, nullptr);
    details.setChain({odd});
    QVERIFY(!shownBy(details).contains(QChar(0x202e)));
}

void tst_certificatedetails::thousandNames()
{
    QStringList names;
    for (int i = 0; i < 1000; ++i)
        names.append(u"DNS:host%1.test"_s.arg(i, 4, 10, QChar(u'0')));
    const QList<QSslCertificate> all = chain({.names = names});
    CertificateDetails details({}, nullptr);
    details.setChain(all);
    QVERIFY(shownBy(details).contains("and 800 more"_L1));
    const CertificateFailure failure(QUrl(u"https://other.test/"_s), CertificateProblem::OtherName,
                                     true, all);
    const QString reason = CertificateReason::reasonsFor(failure).first();
    QVERIFY2(reason.endsWith("and 997 more"_L1), qPrintable(reason));
}

void tst_certificatedetails::namesOfPersonsAreNoSites()
{
    const QList<QSslCertificate> all =
        chain({.names = {u"email:me@mail.test"_s, u"DNS:host.test"_s, u"IP:127.0.0.2"_s}});
    const auto [names, count] = CertificateText::names(all.first(), 5);
    QCOMPARE(names, QStringList({u"127.0.0.2"_s, u"host.test"_s}));
    QCOMPARE(count, 2);
    const CertificateFailure person(QUrl(u"https://x/"_s), CertificateProblem::OtherName, true,
                                    chain({.names = {u"email:me@mail.test"_s}}));
    QCOMPARE(CertificateReason::reasonsFor(person).first(),
             u"Its certificate does not say which site it is for."_s);
}

void tst_certificatedetails::hugeChain()
{
    const QSslCertificate one = chain({}).first();
    CertificateDetails details({}, nullptr);
    details.setChain(QList<QSslCertificate>(1000, one));
    QCOMPARE(details.findChild<QListWidget *>(u"lstChain"_s)->count(), 20);
}

void tst_certificatedetails::chosenOneIsShown()
{
    CertificateDetails details({}, nullptr);
    details.setChain(chain({.signer = Signer::Stranger}));
    QVERIFY(shownBy(details).contains("CN=localhost"_L1));
    details.findChild<QListWidget *>(u"lstChain"_s)->setCurrentRow(1);
    QVERIFY(!shownBy(details).contains("CN=localhost"_L1));
    QVERIFY(shownBy(details).contains("CN=Stranger"_L1));
}

void tst_certificatedetails::copyTakesAll()
{
    CertificateDetails details({}, nullptr);
    details.setChain(chain({}));
    details.findChild<QPushButton *>(u"cmdCopy"_s)->click();
    const QString copied = QApplication::clipboard()->text();
    QVERIFY2(copied.contains("Issued to: CN=localhost\n"_L1), qPrintable(copied));
    QVERIFY2(copied.contains("SHA-256 fingerprint: "_L1), qPrintable(copied));
}

void tst_certificatedetails::copyTakesTheSelection()
{
    CertificateDetails details({}, nullptr);
    details.setChain(chain({}));
    auto *text = details.findChild<QTextEdit *>(u"txtCertificate"_s);
    QVERIFY(text->find(u"CN=localhost"_s));
    details.findChild<QPushButton *>(u"cmdCopy"_s)->click();
    QCOMPARE(QApplication::clipboard()->text(), u"CN=localhost"_s);
}

void tst_certificatedetails::emptyChain()
{
    CertificateDetails details({}, nullptr);
    details.setNote(u"nothing"_s);
    details.setChain({});
    details.findChild<QPushButton *>(u"cmdCopy"_s)->click();
    QVERIFY(shownBy(details).isEmpty());
    const CertificateFailure failure(QUrl(u"https://x/"_s), CertificateProblem::Malformed, true,
                                     {});
    QVERIFY(!failure.isOverridable);
    QVERIFY(!CertificateReason::reasonsFor(failure).first().isEmpty());
}

void tst_certificatedetails::exceptionIsForHostAndCertificate()
{
    CertificateExceptions &exceptions = CertificateExceptions::instance();
    const QList<QSslCertificate> one = chain({.signer = Signer::Stranger});
    const QList<QSslCertificate> other = chain({.signer = Signer::Stranger});
    const auto failureAt = [](const QString &url, const QList<QSslCertificate> &of) {
        return CertificateFailure(QUrl(url), CertificateProblem::UnknownIssuer, true, of);
    };
    exceptions.add(failureAt(u"https://host.test/x"_s, one));
    QVERIFY(exceptions.covers(failureAt(u"https://HOST.test:443/y?z"_s, one)));
    QVERIFY(!exceptions.covers(failureAt(u"https://host.test/x"_s, other)));
    QVERIFY2(exceptions.covers(failureAt(u"https://host.test:8443/x"_s, one)), "all ports");
    QVERIFY(!exceptions.covers(failureAt(u"https://a.host.test/x"_s, one)));
}

void tst_certificatedetails::exceptionIsForItsFlaws()
{
    CertificateExceptions &exceptions = CertificateExceptions::instance();
    const QList<QSslCertificate> one = chain({});
    const QUrl url(u"https://host.test/"_s);
    exceptions.add({url, CertificateProblem::OtherName, true, one});
    QVERIFY(exceptions.covers({url, CertificateProblem::OtherName, true, one}));
    QVERIFY(!exceptions.covers({url, CertificateProblem::UnknownIssuer, true, one}));
}

void tst_certificatedetails::exceptionsOfStrictSitesAreNotKept()
{
    CertificateExceptions &exceptions = CertificateExceptions::instance();
    const QList<QSslCertificate> one = chain({});
    const QUrl url(u"https://host.test/"_s);
    exceptions.add({url, CertificateProblem::OtherName, false, one});
    QVERIFY(exceptions.isEmpty());
    exceptions.add({url, CertificateProblem::OtherName, true, one});
    QVERIFY(!exceptions.covers({url, CertificateProblem::OtherName, false, one}));
}

void tst_certificatedetails::hostIsUnprovenOnAllPorts()
{
    CertificateExceptions &exceptions = CertificateExceptions::instance();
    exceptions.add(
        {QUrl(u"https://bücher.test:8443/"_s), CertificateProblem::OtherName, true, chain({})});
    QVERIFY(exceptions.hasHost(QUrl(u"https://xn--bcher-kva.test/x"_s)));
    QVERIFY(!exceptions.hasHost(QUrl(u"https://test/x"_s)));
}

void tst_certificatedetails::datesAreAddedToTheReasons()
{
    const CertificateFailure failure(QUrl(u"https://x/"_s), CertificateProblem::UnknownIssuer, true,
                                     chain({.from = 1, .until = 2}));
    const QStringList reasons = CertificateReason::reasonsFor(failure);
    QCOMPARE(reasons.size(), 2);
    QVERIFY(reasons.last().contains("not valid before"_L1));
    QVERIFY(reasons.last().contains("clock of this computer"_L1));
}

QTEST_MAIN(tst_certificatedetails)
#include "tst_certificatedetails.moc"
