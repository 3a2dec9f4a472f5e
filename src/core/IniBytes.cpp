#include "IniBytes.h"

#include "TextEncoding.h"

#include <algorithm>
#include <cstring>

namespace {
bool isBlank(char byte)
{
    return byte == ' ' || byte == '\t' || byte == '\r';
}
}

namespace IniBytes {

qsizetype skipBlanks(QByteArrayView file, qsizetype begin, qsizetype end)
{
    while (begin < end && isBlank(file[begin]))
        ++begin;
    return begin;
}

qsizetype dropBlanks(QByteArrayView file, qsizetype begin, qsizetype end)
{
    while (end > begin && isBlank(file[end - 1]))
        --end;
    return end;
}

qsizetype seek(QByteArrayView file, char byte, qsizetype begin, qsizetype end)
{
    if (begin >= end)
        return end;
    const void *found =
        std::memchr(file.data() + begin, byte, static_cast<std::size_t>(end - begin));
    return found ? static_cast<const char *>(found) - file.data() : end;
}

qsizetype afterMark(QByteArrayView file)
{
    return file.startsWith(TextEncoding::mark()) ? TextEncoding::mark().size() : 0;
}

QString withoutBlanks(const QString &name)
{
    const auto blank = [](QChar character) {
        return character == u' ' || character == u'\t' || character == u'\r';
    };
    const auto begin = std::find_if_not(name.cbegin(), name.cend(), blank);
    const auto end = std::find_if_not(name.crbegin(), std::make_reverse_iterator(begin), blank);
    return QString(begin, end.base() - begin);
}

char lowerAscii(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + ('a' - 'A')) : byte;
}

QByteArray lowerAscii(QByteArrayView name)
{
    QByteArray lower(name.size(), Qt::Uninitialized);
    std::transform(name.begin(), name.end(), lower.begin(),
                   [](char byte) { return lowerAscii(byte); });
    return lower;
}

}
