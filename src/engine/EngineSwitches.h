#pragma once

#include <QByteArray>

/// While one lives, the environment holds the switches that this program's engine starts with and
/// that it takes from nowhere else; what the user has set there stays in force. Programs that are
/// started afterwards do not inherit them.
class EngineSwitches {
public:
    /// What pages are told of the colours that their user wants.
    enum class Pages { AsEngine, Dark, Light };

    explicit EngineSwitches(Pages pages = Pages::AsEngine);
    ~EngineSwitches();
    Q_DISABLE_COPY_MOVE(EngineSwitches)

private:
    bool m_wasSet;
    QByteArray m_before;
};
