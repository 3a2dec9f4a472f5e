#include "LanguageKeys.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

QString sourceOf(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? QString::fromUtf8(source.readAll()) : QString();
}

/// Two literals side by side in the source are one text.
QString joined(QString literals)
{
    static const QRegularExpression seam(uR"("(?:_s)?\s+u?")"_s);
    return literals.remove(seam);
}

void addPairs(LanguageKeys &keys, const QString &source, const QString &section)
{
    // A call with a key and an English text, whatever the helper is called, or a line of a table.
    static const QRegularExpression pair(
        uR"re([({]\s*(?:[\w*]+,\s*)?u?"(\w+)"(?:_s)?,\s*(u"[^"]*"(?:_s)?(?:\s*u?"[^"]*"(?:_s)?)*))re"_s);
    static const QRegularExpression name(
        uR"(^((cmd|chk|opt|lbl|str|txt|lst|Frame|alert)[A-Z]|s[A-Z]|Caption$))"_s);
    static const QRegularExpression quotes(uR"(^u"|"(_s)?$)"_s);
    for (auto found = pair.globalMatch(source); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        if (name.match(match.captured(1)).hasMatch())
            keys.insert(section + u'/' + match.captured(1),
                        joined(match.captured(2)).remove(quotes));
    }
}

/// What is named like a message is one, however it comes to its look-up.
void addLiterals(LanguageKeys &keys, const QString &source, const QString &section)
{
    static const QRegularExpression message(uR"re("((?:str|alert)[A-Z]\w*)")re"_s);
    for (auto found = message.globalMatch(source); found.hasNext();) {
        const QString key = found.next().captured(1);
        const bool isOfAnother = source.contains("_s, u\""_L1 + key + "\"_s"_L1);
        if (!isOfAnother && !keys.contains(section + u'/' + key))
            keys.insert(section + u'/' + key, {});
    }
}

void addFile(LanguageKeys &keys, const QString &source)
{
    static const QRegularExpression direct(
        uR"re(languageText\(\s*u"([\w-]+)"_s,\s*u"(\w+)"_s,\s*(u"[^"]*"(?:_s)?(?:\s*u?"[^"]*"(?:_s)?)*)?)re"_s);
    static const QRegularExpression helper(uR"re(languageText\(\s*u"([\w-]+)"_s,\s*[^u])re"_s);
    static const QRegularExpression quotes(uR"(^u"|"(_s)?$)"_s);
    for (auto found = direct.globalMatch(source); found.hasNext();) {
        const QRegularExpressionMatch match = found.next();
        keys.insert(match.captured(1) + u'/' + match.captured(2),
                    joined(match.captured(3)).remove(quotes));
    }
    const QRegularExpressionMatch own = helper.match(source);
    if (own.hasMatch())
        addLiterals(keys, source, own.captured(1));
    // The frame's captions and tool tips come from tables, not from literals.
    if (own.hasMatch() && !own.captured(1).startsWith("frmMain"_L1))
        addPairs(keys, source, own.captured(1));
}

}

LanguageKeys languageKeysOf(const QString &folder)
{
    LanguageKeys keys;
    QDirIterator files(folder, {u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        addFile(keys, sourceOf(files.next()));
    return keys;
}
