#pragma once

#include <QByteArray>

/// One bar of drums, about a second, as the bytes of a wave file: 16 bits, one channel, 44100 Hz.
QByteArray drumsWave();
