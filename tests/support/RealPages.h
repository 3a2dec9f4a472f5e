#pragma once

#include <QStringList>

/// HTML pages that this machine's documentation folders hold.
namespace RealPages {
/// Up to `most` files of up to 200 kB from all over the folders, in a fixed order.
QStringList find(int most);
/// The page as text; empty when it cannot be read.
QString read(const QString &file);
}
