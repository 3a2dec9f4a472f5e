#include "CoolBarLayout.h"

#include <algorithm>

namespace {
QList<int> shrunk(const QList<CoolBarLayout::Wish> &wishes, int minimums, int available)
{
    QList<int> widths;
    int left = available;
    for (const auto &wish : wishes) {
        const int width = std::min(left, int(qint64(wish.minimum) * available / minimums));
        widths.append(width);
        left -= width;
    }
    widths.last() += left;
    return widths;
}
}

QList<int> CoolBarLayout::fit(const QList<Wish> &wishes, int available)
{
    if (wishes.isEmpty())
        return {};
    available = std::max(available, 0);
    int minimums = 0;
    for (const Wish &wish : wishes)
        minimums += wish.minimum;
    if (minimums > available)
        return shrunk(wishes, minimums, available);

    QList<int> widths;
    int left = available;
    for (const Wish &wish : wishes) {
        minimums -= wish.minimum; // what the bands after this one need
        const double most = left - minimums;
        const int width = int(std::clamp(wish.width, double(wish.minimum), most));
        widths.append(width);
        left -= width;
    }
    widths.last() += left;
    return widths;
}
