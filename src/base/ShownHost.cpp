#include "ShownHost.h"

#include "ShownText.h"

#include <QUrl>
#include <algorithm>
#include <memory>
#include <unicode/uchar.h>
#include <unicode/uidna.h>
#include <unicode/uset.h>
#include <unicode/uspoof.h>

using namespace Qt::StringLiterals;

namespace {
constexpr auto encodedPrefix = "xn--"_L1;

bool isAscii(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) { return c.unicode() < 0x80; });
}

const UChar *utf16(const QString &text)
{
    return reinterpret_cast<const UChar *>(text.utf16());
}

int32_t lengthOf(const QString &text)
{
    return static_cast<int32_t>(text.size());
}

/// Runs a function of the library that fills a buffer; empty when it fails.
template <typename Fill> QString filled(Fill fill)
{
    constexpr int32_t room = 512;
    QString result(room, u'\0');
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = fill(reinterpret_cast<UChar *>(result.data()), room, &status);
    if (U_FAILURE(status) || length > room)
        return {};
    result.truncate(length);
    return result;
}

/// Decodes a label as registries do; empty when it breaks their rules.
QString decodedLabel(const QString &label)
{
    static UIDNA *const rules = [] {
        UErrorCode status = U_ZERO_ERROR;
        return uidna_openUTS46(UIDNA_USE_STD3_RULES | UIDNA_CHECK_BIDI | UIDNA_CHECK_CONTEXTJ
                                   | UIDNA_CHECK_CONTEXTO | UIDNA_NONTRANSITIONAL_TO_UNICODE,
                               &status);
    }();
    if (!rules)
        return {};
    UIDNAInfo info = UIDNA_INFO_INITIALIZER;
    const QString decoded = filled([&](UChar *room, int32_t size, UErrorCode *status) {
        return uidna_labelToUnicode(rules, utf16(label), lengthOf(label), room, size, &info,
                                    status);
    });
    return info.errors ? QString() : decoded;
}

/// One script, nothing invisible, only characters in everyday use.
const USpoofChecker *oneScript()
{
    static const USpoofChecker *const checker = [] {
        UErrorCode status = U_ZERO_ERROR;
        USpoofChecker *made = uspoof_open(&status);
        uspoof_setChecks(made,
                         USPOOF_RESTRICTION_LEVEL | USPOOF_INVISIBLE | USPOOF_MIXED_NUMBERS
                             | USPOOF_CHAR_LIMIT,
                         &status);
        uspoof_setRestrictionLevel(made, USPOOF_SINGLE_SCRIPT_RESTRICTIVE);
        const std::unique_ptr<USet, decltype(&uset_close)> allowed(
            uset_cloneAsThawed(uspoof_getRecommendedSet(&status)), uset_close);
        uset_addRange(allowed.get(), '0', '9');
        uset_add(allowed.get(), '-');
        uspoof_setAllowedChars(made, allowed.get(), &status);
        return U_SUCCESS(status) ? made : nullptr;
    }();
    return checker;
}

bool isOneScript(const QString &label)
{
    const USpoofChecker *checker = oneScript();
    UErrorCode status = U_ZERO_ERROR;
    return checker && uspoof_check(checker, utf16(label), lengthOf(label), nullptr, &status) == 0
        && U_SUCCESS(status);
}

/// Nothing in `label` sets it off from ASCII letters for the eye.
bool looksAscii(const QString &label)
{
    const USpoofChecker *checker = oneScript();
    return !checker || isAscii(filled([&](UChar *room, int32_t size, UErrorCode *status) {
        return uspoof_getSkeleton(checker, 0, utf16(label), lengthOf(label), room, size, status);
    }));
}

/// A dot or a line below a letter is lost in an underlined or small text.
bool hasMarkBelow(const QString &label)
{
    constexpr auto below = 220;
    const QString parts = label.normalized(QString::NormalizationForm_D);
    const bool isLatin = std::any_of(parts.begin(), parts.end(),
                                     [](QChar c) { return c.script() == QChar::Script_Latin; });
    return isLatin && std::any_of(parts.begin(), parts.end(), [](QChar c) {
               return c.combiningClass() == below;
           });
}

bool runsToTheLeft(const QString &label)
{
    const QList<uint> characters = label.toUcs4();
    return std::any_of(characters.begin(), characters.end(), [](uint c) {
        const UCharDirection direction = u_charDirection(static_cast<UChar32>(c));
        return direction != U_LEFT_TO_RIGHT && direction != U_EUROPEAN_NUMBER
            && direction != U_EUROPEAN_NUMBER_SEPARATOR && direction != U_DIR_NON_SPACING_MARK;
    });
}

QString shownLabel(const QString &label, bool amongAscii)
{
    if (!label.startsWith(encodedPrefix))
        return label;
    const QString decoded = decodedLabel(label);
    if (decoded.isEmpty() || !isOneScript(decoded) || hasMarkBelow(decoded)
        || runsToTheLeft(decoded) || (amongAscii && looksAscii(decoded)))
        return label;
    return decoded;
}
}

QString shownHost(const QString &host)
{
    const QString encoded = QString::fromLatin1(QUrl::toAce(host));
    if (encoded.isEmpty())
        return escapedText(host);
    QStringList labels = encoded.split(u'.');
    // Under a name of another script words that happen to look like ASCII letters are at home.
    const QString &last = labels.at(
        labels.size() > 1 && labels.last().isEmpty() ? labels.size() - 2 : labels.size() - 1);
    const bool amongAscii = !last.startsWith(encodedPrefix) || labels.size() == 1;
    for (QString &label : labels)
        label = shownLabel(label, amongAscii);
    return labels.join(u'.');
}
