#include "ScriptedPlace.h"

#include <QStringList>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 smallest = 100;
/// Beyond any screen, and far from where the reckoning of widgets ends.
constexpr qint64 farthest = 30'000;

int position(qint64 pixels)
{
    return int(std::clamp(pixels, -farthest, farthest));
}

int extent(qint64 pixels)
{
    return int(std::clamp(pixels, smallest, farthest));
}
}

QRect scriptedPlace(QRect place, const QString &request)
{
    const QStringList parts = request.split(u',');
    if (parts.size() != 3)
        return place;
    bool isNumber[2] = {};
    const qint64 x = parts.at(1).toInt(&isNumber[0]);
    const qint64 y = parts.at(2).toInt(&isNumber[1]);
    if (!isNumber[0] || !isNumber[1])
        return place;
    const QString &what = parts.first();
    if (what == "moveTo"_L1)
        place.moveTo(position(x), position(y));
    else if (what == "moveBy"_L1)
        place.moveTo(position(place.x() + x), position(place.y() + y));
    else if (what == "resizeTo"_L1)
        place.setSize(QSize(extent(x), extent(y)));
    else if (what == "resizeBy"_L1)
        place.setSize(QSize(extent(place.width() + x), extent(place.height() + y)));
    return place;
}
