#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// Text files of two bytes per unit, which their byte order mark tells. Every unit comes back as it
/// was read: a text is taken as it stands, half a surrogate pair too.
namespace Utf16Text {
enum class Order { Little, Big };

/// The order that a mark at the start of a file tells; nothing for other files.
std::optional<Order> markedOrder(QByteArrayView bytes);
/// The units of a marked file, without its mark. A last byte that is half a unit is not among them.
QString decode(QByteArrayView bytes, Order order);
/// The last byte of a marked file that has an odd number of them; else nothing.
QByteArray oddByte(QByteArrayView bytes);
/// The bytes of a text, or of a part of one, without a mark.
QByteArray encode(QStringView text, Order order);
QByteArray mark(Order order);
}
