#include "DroppedWindows.h"

#include "InnerWindow.h"
#include "MsgBox.h"
#include "Texts.h"

#include <QTimer>
#include <QWidget>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
constexpr int mostUnasked = 15;

/// Windows still to open, one in every turn of the event loop. The user goes on meanwhile: what is
/// in front stays there, with the keyboard.
class Opening : public QObject {
public:
    Opening(Frame &frame, const QStringList &addresses, Privacy privacy, WindowState first)
        : QObject(frame.window())
        , m_frame(frame)
        , m_addresses(addresses)
        , m_privacy(privacy)
        , m_state(first)
    {
        connect(&m_turns, &QTimer::timeout, this, &Opening::openNext);
        m_turns.start(0);
    }

private:
    void openNext()
    {
        // Who has closed all windows meanwhile wants no more of them.
        const bool isUnwanted = m_next > 0 && innerForms().isEmpty();
        if (isUnwanted || m_next == m_addresses.size()) {
            m_turns.stop();
            deleteLater();
            return;
        }
        const QString address = m_addresses.at(m_next++);
        const WindowState state = std::exchange(m_state, WindowState::Behind);
        m_frame.openWindowLike(m_privacy, address,
                               innerForms().isEmpty() ? m_frame.newWindowState() : state);
    }

    Frame &m_frame;
    const QStringList m_addresses;
    const Privacy m_privacy;
    WindowState m_state;
    qsizetype m_next = 0;
    QTimer m_turns;
};

void openByTurns(Frame &frame, const QStringList &addresses, Privacy privacy, WindowState first)
{
    // The frame's, and gone when all are open.
    new Opening(frame, addresses, privacy, first);
}
}

/// Somebody who drags a folder's worth of files may have meant one of them. A page that is busy
/// leaves a drop late.
void openDropped(Frame &frame, const QStringList &addresses, Privacy privacy, WindowState first)
{
    if (addresses.size() <= mostUnasked) {
        openByTurns(frame, addresses, privacy, first);
        return;
    }
    const QString question =
        Texts<"frmMain">::at<"strOpenMany", "Do you want to open %1 new windows?">().arg(
            addresses.size());
    MsgBox::askLate(frame.window(), question,
                    [&frame, addresses, privacy, first](MsgBox::Answer answer) {
                        if (answer == MsgBox::Answer::Yes)
                            openByTurns(frame, addresses, privacy, first);
                    });
}
