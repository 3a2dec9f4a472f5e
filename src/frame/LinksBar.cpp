#include "LinksBar.h"

#include <QDeadlineTimer>
#include <QDropEvent>
#include <chrono>

#include "DraggedUrls.h"
#include "Frame.h"
#include "LinksFolder.h"
#include "MsgBox.h"
#include "Texts.h"
#include "ThemedIcon.h"
#include "ToolBar.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
/// Long enough for the first page to be on its way.
constexpr auto startDelay = 250ms;
/// Of reading and adding at a time; the layout that follows takes about as long again.
constexpr auto pieceTime = 10ms;
}

LinksBar::LinksBar(Frame &frame, ToolBar &bar, QObject *parent)
    : QObject(parent)
    , m_frame(frame)
    , m_bar(bar)
{
    connect(&m_bar, &ToolBar::buttonClicked, this,
            [this](const QString &, int index) { m_frame.navigateActive(m_bar.toolTip(index)); });
    m_bar.setAcceptDrops(true);
    m_bar.installEventFilter(this);
    m_start.setSingleShot(true);
    m_start.setInterval(startDelay);
    connect(&m_start, &QTimer::timeout, this, [this] {
        if (m_isShown())
            fillIfEmpty();
    });
    connect(&m_piece, &QTimer::timeout, this, &LinksBar::addSome);
}

LinksBar::~LinksBar() = default;

bool LinksBar::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    auto &drop = *static_cast<QDropEvent *>(event);
    const QString url = draggedAddresses(drop).value(0);
    if (url.isEmpty())
        return false;
    acceptAsCopy(drop);
    if (event->type() == QEvent::Drop) {
        // Where it comes from waits for the drop to end.
        QTimer::singleShot(0, this, [this, url, title = draggedTitle(*drop.mimeData())] {
            addDropped(url, title);
        });
    }
    return true;
}

void LinksBar::addDropped(const QString &url, const QString &title)
{
    if (addFavoriteLink(url, title))
        rebuild(true);
    else
        MsgBox::inform(m_frame.window(),
                       Texts<"LinksBar">::at<"strNotAdded",
                                             "The link could not be added to the Favorites.">());
}

int LinksBar::rebuild(bool shown)
{
    stop();
    m_bar.clear();
    if (!shown)
        return 0;
    m_reading = std::make_unique<LinksReading>();
    const int seen = m_reading->seen();
    m_piece.start(0ms);
    addSome();
    return seen;
}

void LinksBar::stop()
{
    m_start.stop();
    m_piece.stop();
    m_reading.reset();
    m_bar.setEmptyText({});
}

void LinksBar::addSome()
{
    const QIcon icon = themedIcon(u"link"_s);
    const QDeadlineTimer end(pieceTime);
    while (!m_reading->atEnd() && !end.hasExpired()) {
        const auto link = m_reading->readNext();
        if (!link)
            continue;
        m_bar.addButton({}, link->url, icon, ToolBar::Style::Push, link->caption);
        m_bar.addSeparator();
    }
    if (!m_reading->atEnd())
        return;
    stop();
    if (m_bar.buttonCount() == 0)
        m_bar.setEmptyText(
            Texts<"LinksBar">::at<"strEmpty", "Favorites in the folder Links are shown here">());
}

void LinksBar::fillIfEmpty()
{
    if (m_bar.buttonCount() == 0)
        rebuild(true);
}

void LinksBar::rebuildSoon(const std::function<bool()> &isShown)
{
    stop();
    m_bar.clear();
    m_isShown = isShown;
    m_start.start();
}
