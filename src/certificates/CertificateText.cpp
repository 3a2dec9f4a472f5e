#include "CertificateText.h"

#include "Language.h"
#include "ShownText.h"
#include "Texts.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QSslCertificate>
#include <QSslKey>

using namespace Qt::StringLiterals;

namespace {
/// UTF-16 units of a value, what is not seen in it written out.
constexpr qsizetype longestValue = 300;
/// Values of one attribute, of which a certificate may have any number.
constexpr qsizetype mostValues = 5;
constexpr int mostNames = 200;

constexpr Texts<"Certificate"> texts;

using Values = QStringList (*)(const QSslCertificate &, QSslCertificate::SubjectInfo);

QStringList subjectValues(const QSslCertificate &certificate, QSslCertificate::SubjectInfo what)
{
    return certificate.subjectInfo(what);
}

QStringList issuerValues(const QSslCertificate &certificate, QSslCertificate::SubjectInfo what)
{
    return certificate.issuerInfo(what);
}

/// From the name down to the country, with the letters by which the libraries know them.
QString wholeName(const QSslCertificate &certificate, Values values)
{
    constexpr std::pair<QSslCertificate::SubjectInfo, const char *> parts[] = {
        {QSslCertificate::CommonName, "CN"},
        {QSslCertificate::Organization, "O"},
        {QSslCertificate::OrganizationalUnitName, "OU"},
        {QSslCertificate::LocalityName, "L"},
        {QSslCertificate::StateOrProvinceName, "ST"},
        {QSslCertificate::CountryName, "C"},
    };
    QStringList result;
    for (const auto &[what, letters] : parts) {
        const QStringList all =
            values(certificate, what).first(qMin(mostValues, values(certificate, what).size()));
        for (const QString &value : all)
            result.append(QLatin1StringView(letters) + u'=' + CertificateText::safe(value));
    }
    return result.join(u", "_s);
}

QString shortName(const QSslCertificate &certificate, Values values)
{
    for (const auto what : {QSslCertificate::CommonName, QSslCertificate::Organization,
                            QSslCertificate::OrganizationalUnitName}) {
        const QStringList all = values(certificate, what);
        if (!all.isEmpty() && !all.first().trimmed().isEmpty())
            return CertificateText::safe(all.first());
    }
    return texts.at<"strNameless", "(without a name)">();
}

QString dateText(const QDateTime &when)
{
    return when.isValid() ? languageLocale().toString(when.toLocalTime(), QLocale::LongFormat)
                          : texts.at<"strUnknown", "Not known">();
}

QString fingerprint(const QSslCertificate &certificate, QCryptographicHash::Algorithm algorithm)
{
    return QString::fromLatin1(certificate.digest(algorithm).toHex(':')).toUpper();
}

/// Between two characters, one that is written out being one.
QString cut(const QString &text)
{
    constexpr qsizetype longestEscape = 6;
    QString result = text.first(longestValue);
    const qsizetype escape = result.lastIndexOf(u'\\');
    if (escape > longestValue - longestEscape)
        result.truncate(escape);
    if (!result.isEmpty() && result.back().isHighSurrogate())
        result.chop(1);
    return result;
}

QString namesText(const QSslCertificate &certificate)
{
    const auto [names, count] = CertificateText::names(certificate, mostNames);
    if (count <= names.size())
        return names.join(u'\n');
    return names.join(u'\n') + u'\n'
        + texts.at<"strMoreNames", "and %1 more">().arg(count - names.size());
}
}

namespace CertificateText {

QString safe(const QString &value)
{
    const QString text = escapedText(value.first(qMin(longestValue, value.size())));
    const QString shown = text.size() > longestValue ? cut(text) : text;
    return value.size() > longestValue || text.size() > longestValue ? shown + u'…' : shown;
}

QString subject(const QSslCertificate &certificate)
{
    return shortName(certificate, subjectValues);
}

QString issuer(const QSslCertificate &certificate)
{
    return shortName(certificate, issuerValues);
}

std::pair<QStringList, qsizetype> names(const QSslCertificate &certificate, int most)
{
    const auto all = certificate.subjectAlternativeNames();
    QStringList result;
    qsizetype count = 0;
    // Persons' names are there, too.
    for (auto each = all.begin(); each != all.end(); ++each) {
        if (each.key() == QSsl::EmailEntry)
            continue;
        if (++count <= most)
            result.append(safe(each.value()));
    }
    result.sort();
    return {result, count};
}

QString key(const QSslCertificate &certificate)
{
    const QSslKey key = certificate.publicKey();
    const auto called = [&key](QLatin1StringView name) {
        return key.length() > 0 ? texts.at<"strKey", "%1, %2 bits">().arg(name).arg(key.length())
                                : QString(name);
    };
    switch (key.algorithm()) {
    case QSsl::Rsa:
        return called("RSA"_L1);
    case QSsl::Dsa:
        return called("DSA"_L1);
    case QSsl::Ec:
        return called("EC"_L1);
    case QSsl::Dh:
        return called("DH"_L1);
    default:
        return texts.at<"strUnknown", "Not known">();
    }
}

QString signature(const QSslCertificate &certificate)
{
    constexpr auto mark = "Signature Algorithm:"_L1;
    const QString all = certificate.toText();
    const qsizetype at = all.indexOf(mark);
    if (at < 0)
        return {};
    const QStringView rest = QStringView(all).mid(at + mark.size());
    return safe(rest.left(rest.indexOf(u'\n')).trimmed().toString());
}

QList<std::pair<QString, QString>> lines(const QSslCertificate &certificate)
{
    QList<std::pair<QString, QString>> result{
        {texts.at<"lblSubject", "Issued to:">(), wholeName(certificate, subjectValues)},
        {texts.at<"lblNames", "For the names:">(), namesText(certificate)},
        {texts.at<"lblIssuer", "Issued by:">(), wholeName(certificate, issuerValues)},
        {texts.at<"lblFrom", "Valid from:">(), dateText(certificate.effectiveDate())},
        {texts.at<"lblUntil", "Valid until:">(), dateText(certificate.expiryDate())},
        {texts.at<"lblSerial", "Serial number:">(),
         safe(QString::fromLatin1(certificate.serialNumber()))},
        {texts.at<"lblSha256", "SHA-256 fingerprint:">(),
         fingerprint(certificate, QCryptographicHash::Sha256)},
        {texts.at<"lblSha1", "SHA-1 fingerprint:">(),
         fingerprint(certificate, QCryptographicHash::Sha1)},
        {texts.at<"lblKey", "Key:">(), key(certificate)},
        {texts.at<"lblSignature", "Signature:">(), signature(certificate)},
    };
    result.removeIf([](const auto &line) { return line.second.isEmpty(); });
    return result;
}

}
