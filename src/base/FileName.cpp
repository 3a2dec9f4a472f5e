#include "FileName.h"

#include <QFileInfo>
#include <QMimeDatabase>
#include <QRegularExpression>
#include <QTextBoundaryFinder>
#include <string_view>

using namespace Qt::StringLiterals;

namespace {
/// Longer ones are the end of a sentence. Bytes, with the dot.
constexpr qsizetype longestEnding = 16;
/// What is cut off in the end need not be looked at.
constexpr qsizetype longestLookedAt = 4096;
constexpr int mostNumbers = 100'000;

bool isHidden(char32_t character)
{
    // Parts of words and of pictures in some scripts, though not seen by themselves.
    constexpr char32_t nonJoiner = 0x200c;
    constexpr char32_t joiner = 0x200d;
    if (character == nonJoiner || character == joiner)
        return false;
    switch (QChar::category(character)) {
    case QChar::Other_Control:
        return true;
    case QChar::Other_Format:
        // Flags are written with those further up.
        return character < 0xe0000;
    default:
        return QChar::isNonCharacter(character);
    }
}

bool isLineEnd(char32_t character)
{
    constexpr std::u32string_view ends(U"\t\n\v\f\r\u0085\u2028\u2029");
    return ends.find(character) != std::u32string_view::npos;
}

bool isReserved(QChar character)
{
    constexpr QStringView reserved(u"\\/:*?\"<>|");
    return reserved.contains(character);
}

/// Looks like a blank and is none to a text: in a row they push an ending out of sight.
bool isEmptyLetter(QChar character)
{
    constexpr QStringView empty(u"\u2800\u3164\uffa0");
    return empty.contains(character);
}

bool isEnd(QChar character)
{
    return character == u'.' || character.isSpace();
}

QString trimmed(QStringView name)
{
    while (!name.isEmpty() && isEnd(name.front()))
        name = name.sliced(1);
    while (!name.isEmpty() && isEnd(name.back()))
        name.chop(1);
    return name.toString();
}

/// Without what no file system takes.
QString clean(const QString &text)
{
    QString name = FileName::visible(text.left(longestLookedAt));
    for (QChar &character : name) {
        if (isReserved(character) || isEmptyLetter(character))
            character = u' ';
    }
    return trimmed(name.simplified());
}

/// `base` and `ending`, the base cut to what is left of the limit.
QString joined(const QString &base, const QString &ending, qsizetype limit)
{
    return trimmed(FileName::cut(base, limit - ending.toUtf8().size())) + ending;
}
}

namespace FileName {

QString visible(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const char32_t character : text.toUcs4()) {
        if (isLineEnd(character))
            result += u' ';
        else if (!isHidden(character))
            result += QChar::fromUcs4(character);
    }
    return result;
}

bool isDevice(const QString &name)
{
    // Few names begin like one, and tens of thousands come in a row.
    if (name.isEmpty() || !u"cpanlCPANL"_s.contains(name.front()))
        return false;
    static const QRegularExpression device(u"^(con|prn|aux|nul|com[0-9]|lpt[0-9])\\s*(\\.|$)"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    return device.match(name).hasMatch();
}

QString cut(const QString &name, qsizetype limit)
{
    if (name.toUtf8().size() <= limit)
        return name;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, name);
    qsizetype end = 0;
    qsizetype bytes = 0;
    while (characters.toNextBoundary() > 0) {
        const qsizetype next = characters.position();
        bytes += QStringView(name).sliced(end, next - end).toUtf8().size();
        if (bytes > limit)
            break;
        end = next;
    }
    return name.first(end);
}

QString endingOf(const QString &name)
{
    static const QRegularExpression word(u"^[\\p{L}\\p{N}~_+-]+$"_s,
                                         QRegularExpression::UseUnicodePropertiesOption);
    QString suffix = QMimeDatabase().suffixForFileName(name);
    if (suffix.isEmpty())
        suffix = QFileInfo(name).suffix();
    const bool isEnding = !suffix.isEmpty() && suffix.size() + 1 < name.size()
        && suffix.toUtf8().size() < longestEnding
        && word.match(suffix.section(u'.', -1)).hasMatch();
    return isEnding ? u'.' + suffix : QString();
}

QString from(const QString &text, const QString &ending, const QString &otherwise, qsizetype limit)
{
    QString name = clean(text);
    const QString own = ending.isEmpty() ? endingOf(name) : ending;
    if (name.endsWith(own, Qt::CaseInsensitive)) {
        // As it is written there.
        const QString written = name.last(own.size());
        name = trimmed(QStringView(name).chopped(own.size()));
        if (!name.isEmpty() && ending.isEmpty())
            return joined(isDevice(name + own) ? u'_' + name : name, written, limit);
    }
    if (name.isEmpty())
        name = clean(otherwise);
    if (name.isEmpty() || isDevice(name + own))
        name.prepend(u'_');
    return joined(name, own, limit);
}

bool isFit(const QString &name)
{
    return !name.isEmpty() && clean(name) == name && !isDevice(name)
        && name.toUtf8().size() <= longest;
}

QString numbered(const QString &name, int number, qsizetype limit)
{
    const QString ending = endingOf(name);
    return joined(name.chopped(ending.size()), u" (%1)"_s.arg(number) + ending, limit);
}

QString firstFree(const QString &name, int first,
                  const std::function<bool(const QString &)> &isTaken, qsizetype limit)
{
    QString result = name;
    for (int number = first; number < mostNumbers && isTaken(result); ++number)
        result = numbered(name, number, limit);
    return result;
}

}
