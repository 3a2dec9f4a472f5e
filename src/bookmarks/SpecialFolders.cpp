#include "SpecialFolders.h"
#include "StripNulls.h"

#include <QDir>

using namespace Qt::StringLiterals;

QString specialFolder(int number)
{
    const QString home = QDir::homePath();
    if (number != favoritesFolderNumber || home.isEmpty())
        return {};
    return stripNulls(QDir(home).filePath(u"Favorites"_s));
}
