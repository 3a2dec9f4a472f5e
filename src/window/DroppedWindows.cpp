#include "DroppedWindows.h"

#include "MsgBox.h"
#include "Texts.h"

#include <QTimer>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {
constexpr int mostUnasked = 15;

void openByTurns(Frame &frame, const QStringList &addresses, Privacy privacy)
{
    if (addresses.isEmpty())
        return;
    QTimer::singleShot(0, frame.window(), [&frame, addresses, privacy] {
        frame.openWindowLike(privacy, addresses.first(), frame.newWindowState());
        openByTurns(frame, addresses.mid(1), privacy);
    });
}
}

/// Somebody who drags a folder's worth of files may have meant one of them.
void openDropped(Frame &frame, const QStringList &addresses, Privacy privacy)
{
    if (addresses.size() <= mostUnasked) {
        openByTurns(frame, addresses, privacy);
        return;
    }
    const QString question =
        Texts<"frmMain">::at<"strOpenMany", "Do you want to open %1 new windows?">().arg(
            addresses.size());
    MsgBox::ask(frame.window(), question, {}, [&frame, addresses, privacy](MsgBox::Answer answer) {
        if (answer == MsgBox::Answer::Yes)
            openByTurns(frame, addresses, privacy);
    });
}
