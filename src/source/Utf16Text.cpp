#include "Utf16Text.h"

#include <QtEndian>

namespace {

constexpr char16_t byteOrderMark = 0xfeff;
constexpr qsizetype unit = sizeof(char16_t);

}

namespace Utf16Text {

std::optional<Order> markedOrder(QByteArrayView bytes)
{
    for (const Order order : {Order::Little, Order::Big}) {
        if (bytes.startsWith(mark(order)))
            return order;
    }
    return {};
}

QString decode(QByteArrayView bytes, Order order)
{
    const QByteArrayView units = bytes.sliced(unit);
    QString text(units.size() / unit, Qt::Uninitialized);
    if (order == Order::Little)
        qFromLittleEndian<char16_t>(units.data(), text.size(), text.data());
    else
        qFromBigEndian<char16_t>(units.data(), text.size(), text.data());
    return text;
}

QByteArray oddByte(QByteArrayView bytes)
{
    return bytes.last(bytes.size() % unit).toByteArray();
}

QByteArray encode(QStringView text, Order order)
{
    QByteArray bytes(text.size() * unit, Qt::Uninitialized);
    if (order == Order::Little)
        qToLittleEndian<char16_t>(text.utf16(), text.size(), bytes.data());
    else
        qToBigEndian<char16_t>(text.utf16(), text.size(), bytes.data());
    return bytes;
}

QByteArray mark(Order order)
{
    return encode(QStringView(&byteOrderMark, 1), order);
}

}
