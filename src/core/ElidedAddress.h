#pragma once

#include <QString>

class QFontMetrics;

/// `address`, as a user reads it, in one line of `width` pixels. The end of the host says whose
/// page it is, so what has no room is left out in the rest of the address, by `mode`, and then on
/// the left of the host, by whole labels: a host never seems to end before it does, nor another to
/// begin inside it.
QString elidedAddress(const QString &address, const QFontMetrics &metrics, int width,
                      Qt::TextElideMode mode);
