#include "StageName.h"

#include <QDir>
#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr auto beginning = ".orvane-"_L1;
constexpr auto letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"_L1;
constexpr int letterCount = 6;
}

namespace StageName {

QString make(const QString &folder)
{
    QString name = beginning;
    for (int i = 0; i < letterCount; ++i)
        name += letters.at(QRandomGenerator::system()->bounded(int(letters.size())));
    return QDir(folder).filePath(name);
}

bool matches(const QString &name)
{
    if (!name.startsWith(beginning) || name.size() != beginning.size() + letterCount)
        return false;
    const QStringView end = QStringView(name).last(letterCount);
    return std::all_of(end.cbegin(), end.cend(), [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
    });
}

}
