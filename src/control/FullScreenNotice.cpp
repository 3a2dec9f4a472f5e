#include "FullScreenNotice.h"

#include "ShownAddress.h"
#include "Texts.h"

#include <QEvent>
#include <QTimer>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
constexpr auto shownFor = 6s;
/// Pixels.
constexpr int padding = 12;
constexpr int fromTop = 24;
}

FullScreenNotice::FullScreenNotice(const QUrl &origin, QWidget *view)
    : QLabel(view)
{
    setObjectName(u"lblFullScreen"_s);
    setTextFormat(Qt::PlainText);
    const QString text =
        Texts<"frmBrowser">::at<"strFullScreen", "%1 fills the screen. Press Esc to leave.">();
    const QString site = shownSite(origin);
    setText(QString(text).replace("%1"_L1, breakableSite(site)));
    setAccessibleName(QString(text).replace("%1"_L1, site));
    setWordWrap(true);
    setAlignment(Qt::AlignCenter);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setFrameShape(QFrame::Box);
    setMargin(padding);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    view->installEventFilter(this);
    place();
    show();
    QTimer::singleShot(shownFor, this, &QObject::deleteLater);
}

/// The page's own widget may come anew, and then over this one.
bool FullScreenNotice::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize || event->type() == QEvent::ChildAdded)
        place();
    return QLabel::eventFilter(watched, event);
}

void FullScreenNotice::place()
{
    const int around = 2 * (margin() + frameWidth());
    const QSize words = fontMetrics().size(0, text());
    const int most = qMax(1, parentWidget()->width() - 2 * fromTop);
    resize(qMin(words.width() + around + 2, most), 0);
    resize(width(), heightForWidth(width()));
    move((parentWidget()->width() - width()) / 2, fromTop);
    raise();
}
