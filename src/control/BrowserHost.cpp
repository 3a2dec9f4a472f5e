#include "BrowserHost.h"

#include "CertificateNotice.h"
#include "CrashNotice.h"
#include "FullScreenNotice.h"
#include "LeavingFocus.h"
#include "PageFindBar.h"
#include "SleepPicture.h"
#include "WebView.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QWebEngineFullScreenRequest>
#include <QWebEnginePage>

namespace {
/// A window that goes into another hands the focus on to that, but the library tells its widgets of
/// it nowhere: they would count as inactive until the user has been elsewhere.
void makeActive(QWidget &window)
{
    if (QApplication::activeWindow() || QGuiApplication::focusWindow() != window.windowHandle())
        return;
    // Asking the desktop for it is of no use: for that it is active already.
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    QApplication::setActiveWindow(&window);
    QT_WARNING_POP
}
}

BrowserHost::BrowserHost(QWidget *parent)
    : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
}

BrowserHost::~BrowserHost()
{
    // In full screen the view is no child.
    delete m_view;
}

void BrowserHost::setView(WebView *view)
{
    hideFailure();
    m_view = view;
    delete m_findBar;
    setFocusProxy(view);
    placeChildren();
    view->show();
    if (m_picture)
        m_picture->raise();
}

void BrowserHost::placeChildren()
{
    QRect page = rect();
    if (m_findBar && m_findBar->isVisibleTo(this)) {
        const int barHeight = m_findBar->arrangeFor(width());
        page.setBottom(qMax(page.top(), page.bottom() - barHeight));
        m_findBar->setGeometry(0, page.bottom() + 1, width(), barHeight);
    }
    if (m_view && m_view->parentWidget() == this)
        m_view->setGeometry(page);
    if (m_picture)
        m_picture->setGeometry(rect());
    if (m_crash)
        m_crash->setGeometry(rect());
    if (m_failure)
        m_failure->setGeometry(rect());
}

void BrowserHost::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placeChildren();
}

void BrowserHost::answerFullScreen(QWebEngineFullScreenRequest request)
{
    request.accept();
    if (request.toggleOn())
        enterFullScreen(request.origin());
    else
        leaveFullScreen();
}

void BrowserHost::enterFullScreen(const QUrl &origin)
{
    if (!m_view || m_view->parentWidget() != this)
        return;
    if (m_findBar && m_findBar->isVisible())
        m_findBar->dismiss();
    auto *out = new QAction(m_view);
    out->setShortcuts({Qt::Key_Escape, Qt::Key_F11});
    connect(out, &QAction::triggered, this, &BrowserHost::endFullScreen);
    m_view->addAction(out);
    m_view->installEventFilter(this);
    giveUpFocus(*m_view);
    m_view->setParent(nullptr, Qt::Window);
    m_view->showFullScreen();
    m_view->setFocus();
    m_notice = new FullScreenNotice(origin, m_view);
}

void BrowserHost::leaveFullScreen()
{
    if (!isFullScreen())
        return;
    delete m_notice;
    m_view->removeEventFilter(this);
    // Perhaps in one of them.
    for (QAction *action : m_view->actions()) {
        m_view->removeAction(action);
        action->deleteLater();
    }
    m_view->setParent(this, Qt::Widget);
    makeActive(*window());
    m_view->showNormal();
    placeChildren();
    m_view->setFocus();
}

bool BrowserHost::isFullScreen() const
{
    return m_view && m_view->parentWidget() != this;
}

/// The desktop closes what fills the screen as any window.
bool BrowserHost::eventFilter(QObject *watched, QEvent *event)
{
    if (watched != m_view || event->type() != QEvent::Close || !isFullScreen())
        return QWidget::eventFilter(watched, event);
    event->ignore();
    endFullScreen();
    return true;
}

void BrowserHost::endFullScreen()
{
    if (!isFullScreen())
        return;
    m_view->triggerPageAction(QWebEnginePage::ExitFullScreen);
    leaveFullScreen();
}

void BrowserHost::giveUpView()
{
    m_view.clear();
    dropFailure();
}

void BrowserHost::openFindBar()
{
    if (PageFindBar *bar = findBar())
        bar->open();
}

void BrowserHost::findAgain(bool backwards)
{
    if (PageFindBar *bar = findBar())
        bar->again(backwards);
}

/// Null while there is nothing to look through.
PageFindBar *BrowserHost::findBar()
{
    if (!m_view || isFullScreen() || hidesPage())
        return nullptr;
    if (!m_findBar) {
        m_findBar = new PageFindBar(m_view->page(), this);
        connect(m_findBar, &PageFindBar::opened, this, &BrowserHost::placeChildren);
        connect(m_findBar, &PageFindBar::dismissed, this, &BrowserHost::placeChildren);
    }
    return m_findBar;
}

void BrowserHost::showCrash()
{
    if (m_crash)
        return;
    endFullScreen();
    hideFailure();
    m_crash = new CrashNotice(this);
    connect(m_crash, &CrashNotice::reloadPressed, this, &BrowserHost::reloadRequested);
    placeChildren();
    m_crash->show();
}

bool BrowserHost::hidesPage() const
{
    return m_crash || m_failure;
}

/// The view goes out of sight meanwhile: what is behind the notice can neither be pressed nor read.
void BrowserHost::showFailure(const CertificateFailure &failure)
{
    endFullScreen();
    if (!m_view || m_view->parentWidget() != this)
        return;
    const QWidget *focus = QApplication::focusWidget();
    const bool hadFocus = focus && isAncestorOf(focus);
    delete m_findBar;
    delete m_failure;
    m_failure = new CertificateNotice(failure, this);
    connect(m_failure, &CertificateNotice::backPressed, this, &BrowserHost::backRequested);
    connect(m_failure, &CertificateNotice::goOnPressed, this, &BrowserHost::goOnRequested);
    setFocusProxy(m_failure);
    placeChildren();
    m_failure->show();
    if (hadFocus)
        m_failure->setFocus();
    m_view->hide();
}

void BrowserHost::hideFailure()
{
    if (!m_failure)
        return;
    const QWidget *focus = QApplication::focusWidget();
    const bool hadFocus = focus && m_failure->isAncestorOf(focus);
    m_failure->hide();
    m_failure->deleteLater();
    m_failure.clear();
    setFocusProxy(m_view);
    if (!m_view)
        return;
    m_view->show();
    if (hadFocus)
        m_view->setFocus();
}

/// Nothing is hidden or gets the keyboard: the widgets around may be half gone.
void BrowserHost::dropFailure()
{
    if (m_failure)
        setFocusProxy(nullptr);
    delete m_failure;
}

void BrowserHost::showPicture(const QByteArray &picture)
{
    delete m_picture;
    m_picture = new SleepPicture(picture, this);
    connect(m_picture, &SleepPicture::pressed, this, &BrowserHost::wakeRequested,
            Qt::QueuedConnection);
    placeChildren();
    m_picture->show();
}

void BrowserHost::dropPicture()
{
    if (m_picture)
        m_picture->deleteLater();
    m_picture.clear();
}

void BrowserHost::keyPressEvent(QKeyEvent *event)
{
    if (m_picture && !m_view)
        emit wakeRequested();
    QWidget::keyPressEvent(event);
}

void BrowserHost::hideCrash()
{
    if (m_crash)
        m_crash->deleteLater();
    m_crash.clear();
}
