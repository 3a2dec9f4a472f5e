#include "LaterStarts.h"

#include "MainWindow.h"
#include "StartListener.h"

#include <QPointer>
#include <QTimer>

namespace {
constexpr char tokenVariable[] = "XDG_ACTIVATION_TOKEN";

/// Where a compositor decides who comes to the front, whoever started the program lends his right
/// to it; the toolkit looks for that in the environment, as for a start of its own.
void comeToFront(MainWindow &frame, const QString &activation)
{
    if (!activation.isEmpty())
        qputenv(tokenVariable, activation.toUtf8());
    frame.comeToFront();
    qunsetenv(tokenVariable);
}
}

void followLaterStarts(MainWindow &frame, StartListener &starts)
{
    starts.begin([frame = QPointer(&frame)](const StartRequest &request) {
        if (!frame || frame->isClosed())
            return false;
        // A profile may take its time, and the start waits for its answer.
        QTimer::singleShot(0, frame, [frame, request] {
            frame->openAlso(request.text, request.folder);
            if (!frame->isClosed())
                comeToFront(*frame, request.activation);
        });
        return true;
    });
}
