#include "StageName.h"

#include <QDir>
#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr auto letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"_L1;

struct Shape {
    QLatin1StringView beginning;
    int letterCount;
};

Shape shapeOf(StageName::Kind kind)
{
    return kind == StageName::Kind::Download ? Shape{".orvane-download-"_L1, 8}
                                             : Shape{".orvane-"_L1, 6};
}
}

namespace StageName {

QString make(const QString &folder, Kind kind)
{
    const Shape shape = shapeOf(kind);
    QString name = shape.beginning;
    for (int i = 0; i < shape.letterCount; ++i)
        name += letters.at(QRandomGenerator::system()->bounded(int(letters.size())));
    return QDir(folder).filePath(name);
}

bool matches(const QString &name, Kind kind)
{
    const Shape shape = shapeOf(kind);
    if (!name.startsWith(shape.beginning)
        || name.size() != shape.beginning.size() + shape.letterCount)
        return false;
    const QStringView end = QStringView(name).last(shape.letterCount);
    return std::all_of(end.cbegin(), end.cend(), [](QChar c) {
        return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
    });
}

}
