#pragma once

#include "WindowTabs.h"

#include <QObject>
#include <QTimer>

class Listener;
class PageLife;

/// Tells the window whether its page can be heard, at a pace that can be looked at: a page may
/// begin and end to sound a thousand times a second.
class SoundTeller : public QObject {
    Q_OBJECT

public:
    SoundTeller(const PageLife &life, const Listener &listener);

    /// At once; `isMuted` counts while there is no page.
    void tell(bool isMuted);

private:
    const PageLife &m_life;
    const Listener &m_listener;
    QTimer m_pace;
    PageSound m_told = PageSound::None;
};
