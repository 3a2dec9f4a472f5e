#include "FrameOpener.h"

#include "CommandLine.h"
#include "DraggedUrls.h"
#include "Frame.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QTimer>
#include <QWidget>

FrameOpener::FrameOpener(Frame &frame)
    : QObject(frame.window())
    , m_frame(frame)
{
    frame.window()->setAcceptDrops(true);
    frame.window()->installEventFilter(this);
}

void FrameOpener::openFirst(const QString &text, Privacy privacy)
{
    const QString address = startAddress(unquoted(text), QDir::currentPath());
    const bool hasDesk = m_deskOpener && m_deskOpener();
    if (!hasDesk || !address.isEmpty() || privacy == Privacy::Private)
        open(address, hasDesk ? m_frame.newWindowState() : WindowState::Maximized, privacy);
}

void FrameOpener::openAlso(const QString &text, const QString &folder, Privacy privacy)
{
    open(startAddressElsewhere(unquoted(text), folder), m_frame.newWindowState(), privacy);
}

void FrameOpener::open(const QString &address, WindowState state, Privacy privacy)
{
    if (privacy == Privacy::Private)
        m_frame.openPrivateWindow(address, state);
    else if (!isProfileName(address))
        m_frame.openBrowserWindow(address, state);
    else if (!m_frame.openProfile(address, true)
             || (m_frame.window()->isVisible() && !m_frame.activeChild()))
        // Also for a profile that counts addresses and holds none: the frame would stay empty.
        m_frame.openBrowserWindow(address, WindowState::AsOthers);
}

bool FrameOpener::openProfile(const QString &file, bool quiet) const
{
    return m_profileOpener && m_profileOpener(file, quiet);
}

bool FrameOpener::eventFilter(QObject *, QEvent *event)
{
    // Anything else was offered to what lies under the pointer first.
    if (event->type() == QEvent::DragEnter) {
        auto &enter = *static_cast<QDropEvent *>(event);
        if (isProfileDragged(*enter.mimeData()))
            acceptAsCopy(enter);
        return true;
    }
    if (event->type() != QEvent::Drop)
        return false;
    drop(*static_cast<QDropEvent *>(event));
    return true;
}

void FrameOpener::drop(QDropEvent &event)
{
    const QString file = firstDraggedFile(*event.mimeData());
    if (file.isEmpty() || QFileInfo(file).isDir())
        return;
    acceptAsCopy(event);
    // Opening takes its time, and the program the file comes from waits for the drop to end.
    QTimer::singleShot(0, this, [this, file] {
        if (!m_frame.openProfile(file, false))
            QApplication::beep();
    });
}
