#include "NumberedName.h"

#include <algorithm>

qint32 numberBehind(QByteArrayView prefix, QByteArrayView name)
{
    if (name.size() <= prefix.size()
        || name.first(prefix.size()).compare(prefix, Qt::CaseInsensitive) != 0)
        return 0;
    const QByteArrayView digits = name.sliced(prefix.size());
    const bool plain = digits.front() != '0'
        && std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; });
    return plain ? digits.toInt() : 0;
}
