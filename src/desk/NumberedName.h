#pragma once

#include <QByteArrayView>

/// The number n of a name that is `prefix`, in any letter case, and n in plain decimal, from 1 up
/// to the largest 32-bit integer; 0 for other names.
qint32 numberBehind(QByteArrayView prefix, QByteArrayView name);
