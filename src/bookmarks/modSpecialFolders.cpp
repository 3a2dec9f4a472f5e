#include "modSpecialFolders.h"
#include "StripNulls.h"

#include <QDir>

using namespace Qt::StringLiterals;

QString GetSpecialFolder(int number)
{
    const QString home = QDir::homePath();
    if (number != favoritesFolderNumber || home.isEmpty())
        return {};
    return StripNulls(QDir(home).filePath(u"Favorites"_s));
}
