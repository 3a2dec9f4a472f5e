#include "CertificateReason.h"

#include "CertificateFailure.h"
#include "CertificateText.h"
#include "Language.h"
#include "Texts.h"

#include <QDateTime>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int mostNames = 3;

constexpr Texts<"Certificate"> texts;

using Problem = CertificateProblem;

QString dateText(const QDateTime &when)
{
    return languageLocale().toString(when.toLocalTime(), QLocale::ShortFormat);
}

/// The certificate whose date is wrong need not be the server's own.
template <typename IsWrong>
QSslCertificate firstOf(const QList<QSslCertificate> &chain, IsWrong isWrong)
{
    const auto found = std::find_if(chain.begin(), chain.end(), isWrong);
    return found == chain.end() ? chain.value(0) : *found;
}

/// The user has to see at once whether it is his own clock.
QString withClock(const QString &sentence)
{
    return sentence + u' '
        + texts.at<"strClock", "The clock of this computer says %1.">().arg(
            dateText(QDateTime::currentDateTime()));
}

QString otherName(const CertificateFailure &failure)
{
    const auto [names, count] = CertificateText::names(failure.chain.value(0), mostNames);
    if (names.isEmpty())
        return texts.at<"strNoName", "Its certificate does not say which site it is for.">();
    QString all = names.join(u", "_s);
    if (count > names.size())
        all += u' ' + texts.at<"strMoreNames", "and %1 more">().arg(count - names.size());
    return texts.at<"strOtherName", "Its certificate is for another site: %1">().arg(all);
}

QString ofIssuer(const CertificateFailure &failure)
{
    const QSslCertificate own = failure.chain.value(0);
    // By its names alone: whether it has signed itself is not told.
    if (own.isSelfSigned())
        return texts.at<"strSelfSigned",
                        "Its certificate names itself as its issuer: nobody known here says whose "
                        "it is.">();
    return texts
        .at<"strUnknownIssuer", "Its certificate was issued by %1, which is not known here.">()
        .arg(CertificateText::issuer(own));
}

QString ofDate(const CertificateFailure &failure, Problem problem)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (problem == Problem::Expired) {
        const QSslCertificate expired = firstOf(
            failure.chain, [&now](const QSslCertificate &each) { return each.expiryDate() < now; });
        return withClock(texts.at<"strExpired", "Its certificate expired on %1.">().arg(
            dateText(expired.expiryDate())));
    }
    const QSslCertificate early = firstOf(
        failure.chain, [&now](const QSslCertificate &each) { return each.effectiveDate() > now; });
    return withClock(texts.at<"strNotYetValid", "Its certificate is not valid before %1.">().arg(
        dateText(early.effectiveDate())));
}

QString weakness(const CertificateFailure &failure)
{
    const QSslCertificate own = failure.chain.value(0);
    QStringList parts{CertificateText::key(own), CertificateText::signature(own)};
    parts.removeAll(QString());
    return texts
        .at<"strWeak", "Its certificate is too weakly protected (%1) and could be forged.">()
        .arg(parts.join(u", "_s));
}

QString reasonFor(const CertificateFailure &failure, Problem problem)
{
    switch (problem) {
    case Problem::UnknownIssuer:
        return ofIssuer(failure);
    case Problem::DistrustedIssuer:
        return texts.at<"strDistrusted",
                        "Its certificate was issued by somebody who is not trusted any longer.">();
    case Problem::Expired:
    case Problem::NotYetValid:
        return ofDate(failure, problem);
    case Problem::Dates:
        return withClock(texts.at<"strDates", "Its certificate is not valid at this time.">());
    case Problem::OtherName:
        return otherName(failure);
    case Problem::Revoked:
        return texts.at<"strRevoked", "Its certificate was revoked by its issuer.">();
    case Problem::RevocationUnknown:
        return texts.at<"strRevocationUnknown",
                        "Whether its certificate was revoked could not be found out.">();
    case Problem::Weak:
        return weakness(failure);
    case Problem::OldEncryption:
        return texts.at<"strOldEncryption", "It offers only an encryption that is out of date.">();
    case Problem::NotPinned:
        return texts
            .at<"strNotPinned", "Its certificate is none of those that this site is known by.">();
    case Problem::Unlisted:
        return texts.at<"strUnlisted",
                        "Its certificate is missing from the public lists of certificates.">();
    case Problem::Malformed:
        break;
    }
    return texts.at<"strMalformed", "Its certificate has errors.">();
}

/// Flaws that engines let a user pass over where the site does not forbid it.
bool isPassable(Problem problem)
{
    return problem != Problem::Revoked && problem != Problem::NotPinned
        && problem != Problem::Malformed && problem != Problem::DistrustedIssuer;
}
}

namespace CertificateReason {

QStringList reasonsFor(const CertificateFailure &failure)
{
    QStringList result{reasonFor(failure, failure.problem)};
    for (const Problem also : {Problem::Expired, Problem::NotYetValid}) {
        if (also != failure.problem && failure.problems.contains(also))
            result.append(reasonFor(failure, also));
    }
    return result;
}

QString causeOf(const CertificateFailure &failure)
{
    switch (failure.problem) {
    case Problem::NotYetValid:
        return texts.at<"strCauseEarly",
                        "Most likely that clock is wrong: set it, and open the page again.">();
    case Problem::Expired:
    case Problem::Dates:
        return texts.at<"strCauseDates",
                        "If that clock is right, the site's owner may have forgotten to renew it. "
                        "It may also be an old certificate in the wrong hands.">();
    case Problem::OtherName:
        return texts.at<"strCauseName",
                        "The site may be set up wrongly, or want a sign-in to the network first. "
                        "It may also be another server that wants to be taken for it, and could "
                        "read what you enter.">();
    case Problem::UnknownIssuer:
        return texts.at<"strCauseIssuer",
                        "Devices and servers of your own network often have such certificates. On "
                        "the internet somebody may stand between you and the site, and could read "
                        "and change what you see and enter.">();
    default:
        return texts.at<"strCauseOther",
                        "Somebody may stand between you and the site, and could read and change "
                        "what you see and enter.">();
    }
}

QString whyNoWay(const CertificateFailure &failure)
{
    if (failure.isOverridable)
        return {};
    if (isPassable(failure.problem))
        return texts.at<"strStrict",
                        "This site has asked to be opened only over connections that are proven, "
                        "so you cannot go on.">();
    return texts.at<"strNoWay", "With this fault you cannot go on.">();
}

}
