#include "ColouredText.h"

char ColouredText::indexOf(int colour)
{
    constexpr qsizetype most = 256;
    qsizetype index = palette.indexOf(colour);
    if (index < 0 && palette.size() < most) {
        index = palette.size();
        palette.append(colour);
    }
    return char(qMax(index, qsizetype(0)));
}
