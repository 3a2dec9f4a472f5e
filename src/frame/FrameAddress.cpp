#include "FrameAddress.h"

#include "AddressBox.h"
#include "AddressSelection.h"
#include "AddressVisits.h"
#include "Forms.h"
#include "Frame.h"
#include "InnerWindow.h"
#include "MailProgram.h"
#include "MdiArea.h"
#include "TypingKept.h"

#include <QScopedValueRollback>

namespace {
constexpr int keyEnter = 13;
constexpr int keyEscape = 27;
}

FrameAddress::FrameAddress(AddressBox &bar, Frame &frame, const MdiArea &windows)
    : QObject(&bar)
    , m_bar(bar)
    , m_frame(frame)
    , m_windows(windows)
{
    proposeVisits(bar);
    connect(&bar, &AddressBox::clicked, this, &FrameAddress::navigate);
    connect(&bar, &AddressBox::keyDown, this, [this](int &keyCode, int &) {
        if (m_bar.keyIsReleased())
            return;
        if (keyCode == keyEnter)
            navigate();
        else if (keyCode == keyEscape)
            restore();
    });
}

void FrameAddress::navigate()
{
    if (openInMailProgram(m_bar.text())) {
        restore();
        return;
    }
    m_frame.navigateActive(m_bar.text());
    if (InnerWindow *active = activeInner(m_frame))
        active->focusContents();
}

void FrameAddress::restore()
{
    if (const InnerWindow *active = activeInner(m_frame))
        m_bar.setText(active->shownAddress());
}

/// What the user is typing is worth more than what a page has to say.
bool FrameAddress::isUsers() const
{
    return m_keepsTyping || m_bar.hasUnsentEdits();
}

void FrameAddress::setText(const QString &url)
{
    if (isUsers())
        return;
    const AddressSelection selection(m_bar);
    m_bar.setText(url);
}

void FrameAddress::add(const QString &url, bool showText)
{
    const AddressSelection selection(m_bar);
    m_bar.addItem(url, showText && !isUsers());
}

void FrameAddress::keepTyping(const std::function<void()> &change)
{
    {
        const QScopedValueRollback keeps(
            m_keepsTyping, m_keepsTyping || m_bar.isAncestorOf(m_frame.window()->focusWidget()));
        const TypingKept typing(m_windows);
        change();
    }
    // Where nothing was typed, the field tells of the window that is active now.
    if (const InnerWindow *active = activeInner(m_frame))
        setText(active->shownAddress());
}
