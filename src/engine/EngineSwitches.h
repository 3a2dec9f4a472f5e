#pragma once

#include <QByteArray>

/// While one lives, the environment holds the switches that this program's engine starts with and
/// that it takes from nowhere else; what the user has set there stays in force. Programs that are
/// started afterwards do not inherit them.
class EngineSwitches {
public:
    EngineSwitches();
    ~EngineSwitches();
    Q_DISABLE_COPY_MOVE(EngineSwitches)

private:
    bool m_wasSet;
    QByteArray m_before;
};
