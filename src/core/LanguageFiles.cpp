#include "LanguageFiles.h"

#include <QDir>
#include <algorithm>

#include "AppFolder.h"

using namespace Qt::StringLiterals;

QStringList languageFiles()
{
    const QDir folder(AppFolder::appData(u"Languages"_s));
    QStringList names = folder.entryList({u"*.ini"_s}, QDir::Files, QDir::NoSort);
    for (QString &name : names)
        name.chop(4);
    std::sort(names.begin(), names.end(), [](const QString &left, const QString &right) {
        const int order = left.toUpper().compare(right.toUpper());
        return order != 0 ? order < 0 : left < right;
    });
    return names;
}
