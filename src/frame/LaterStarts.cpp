#include "LaterStarts.h"

#include "FrameOpener.h"
#include "MainWindow.h"
#include "StartListener.h"

#include <QList>
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

/// What was taken over, opened one at a time: a window takes its time, a profile more, and all the
/// starts that wait for their answers have them before the next one opens.
class StartQueue : public QObject {
public:
    explicit StartQueue(MainWindow &frame)
        : QObject(&frame)
        , m_frame(frame)
    {
        m_next.setSingleShot(true);
        connect(&m_next, &QTimer::timeout, this, &StartQueue::openNext);
    }

    void add(const StartRequest &request)
    {
        m_requests.append(request);
        if (!m_isOpening)
            m_next.start(0);
    }

private:
    void openNext()
    {
        const StartRequest request = m_requests.takeFirst();
        // A profile lets events run as it opens.
        m_isOpening = true;
        m_frame.opener().openAlso(request.text, request.folder,
                                  request.isPrivate ? Privacy::Private : Privacy::Ordinary);
        m_isOpening = false;
        if (m_frame.isClosed())
            return;
        comeToFront(m_frame, request.activation);
        if (!m_requests.isEmpty())
            m_next.start(0);
    }

    MainWindow &m_frame;
    QList<StartRequest> m_requests;
    QTimer m_next;
    bool m_isOpening = false;
};
}

void followLaterStarts(MainWindow &frame, StartListener &starts)
{
    starts.begin(
        [frame = QPointer(&frame), queue = new StartQueue(frame)](const StartRequest &request) {
            if (!frame || frame->isClosed())
                return false;
            queue->add(request);
            return true;
        });
}
