#include "SelectedAddress.h"

#include "ShownText.h"

#include <QRegularExpression>
#include <QUrl>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
/// Characters.
constexpr qsizetype longestAddress = 2000;

QString withoutSigns(const QString &text)
{
    static const QRegularExpression form(uR"(^[\s"'(<\[{]*(.*?)[\s"'>\]}.,;:!]*$)"_s,
                                         QRegularExpression::DotMatchesEverythingOption);
    QString inner = form.match(text).captured(1);
    // "(example.org/wiki/Tree_(plant))"
    while (inner.endsWith(u')') && inner.count(u')') > inner.count(u'('))
        inner.chop(1);
    return inner;
}

bool isWritten(const QString &text)
{
    const QList<uint> characters = text.toUcs4();
    return std::none_of(characters.cbegin(), characters.cend(),
                        [](uint each) { return isUnseen(each) || QChar::isSpace(each); });
}
}

QUrl selectedAddress(const QString &text)
{
    if (text.size() > longestAddress)
        return {};
    const QString address = withoutSigns(text);
    static const QRegularExpression withScheme(u"^https?://[^/?#]"_s,
                                               QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression host(
        uR"(^(?:[\p{L}\p{N}-]+\.)+\p{L}{2,}(?::\d+)?(?:[/?#]|$))"_s);
    if (!isWritten(address))
        return {};
    const bool hasScheme = withScheme.match(address).hasMatch();
    if (!hasScheme && !host.match(address).hasMatch())
        return {};
    const QUrl url(hasScheme ? address : QString("http://"_L1 + address));
    return url.isValid() && !url.host().isEmpty() ? url : QUrl();
}
