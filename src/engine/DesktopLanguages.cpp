#include "DesktopLanguages.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace {
/// As many as pages need to choose from; more would only tell one user from another.
constexpr qsizetype most = 6;

void add(QStringList &languages, const QString &language)
{
    if (!languages.contains(language))
        languages.append(language);
}
}

QString DesktopLanguages::list()
{
    return fromTags(QLocale::system().uiLanguages());
}

QString DesktopLanguages::fromTags(const QStringList &tags)
{
    QStringList languages;
    QString before;
    for (const QString &tag : tags) {
        const QLocale locale(tag);
        if (locale.language() == QLocale::C)
            continue;
        const QString language = QLocale::languageToCode(locale.language());
        // The languages alone follow behind all of their countries.
        if (!before.isEmpty() && before != language)
            add(languages, before);
        before = language;
        // A tag without a country means none, though the locale names the greatest.
        if (tag.contains(u'-'))
            add(languages, language + u'-' + QLocale::territoryToCode(locale.territory()));
    }
    if (!before.isEmpty())
        add(languages, before);
    // What pages are written in mostly, where the desktop names no language or has others only.
    if (languages.isEmpty())
        add(languages, u"en-US"_s);
    add(languages, u"en"_s);
    return languages.mid(0, most).join(u',');
}
