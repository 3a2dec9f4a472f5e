#include "MdiArea.h"

#include "CoveredWindows.h"
#include "Forms.h"
#include "StateWalk.h"
#include "Texts.h"
#include "TitleBarStyle.h"

#include <QAction>
#include <QEvent>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMoveEvent>
#include <QPainter>
#include <QScrollBar>
#include <QShortcut>
#include <QStyle>
#include <algorithm>

using namespace Qt::StringLiterals;

MdiArea::MdiArea(QWidget *parent)
    : QMdiArea(parent)
    , m_titleBarStyle(new TitleBarStyle)
{
    m_titleBarStyle->setParent(this);
    setActivationOrder(QMdiArea::CreationOrder);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setFrameShape(QFrame::NoFrame);
    updateBackground();
    for (const Key &key : keys())
        addShortcut(key);
    connect(this, &QMdiArea::subWindowActivated, this, &MdiArea::noteActive);
}

MdiArea::~MdiArea()
{
    // The base class reports the going of its children; nobody is to hear of it.
    disconnect(this, nullptr, this, nullptr);
    // Its own list leaves out those that are closing.
    const auto children = viewport()->findChildren<QMdiSubWindow *>(Qt::FindDirectChildrenOnly);
    for (QMdiSubWindow *child : children)
        disconnect(child, nullptr, viewport(), nullptr);
}

/// The shortcuts belong to the whole frame, so they work from the bars and from a page as well.
void MdiArea::addShortcut(const Key &key)
{
    auto *shortcut = new QShortcut(QKeySequence(QLatin1StringView(key.key)), this);
    shortcut->setContext(Qt::WindowShortcut);
    shortcut->setAutoRepeat(key.act != Key::Close);
    connect(shortcut, &QShortcut::activated, this, [this, act = key.act] {
        if (act == Key::Close)
            closeActive();
        else if (act == Key::Next)
            goOn(1);
        else
            goOn(-1);
    });
}

std::span<const MdiArea::Key> MdiArea::keys()
{
    static constexpr Key all[] = {
        {Key::Close, "Ctrl+F4"},
        {Key::Next, "Ctrl+Tab"},
        {Key::Next, "Ctrl+F6"},
        {Key::Next, "Ctrl+PgDown"},
        {Key::Previous, "Ctrl+Shift+Tab"},
        {Key::Previous, "Ctrl+Shift+F6"},
        {Key::Previous, "Ctrl+PgUp"},
    };
    return all;
}

void MdiArea::adopt(QMdiSubWindow *child)
{
    const bool placed = child->testAttribute(Qt::WA_Resized) || child->testAttribute(Qt::WA_Moved);
    addSubWindow(child);
    child->setStyle(m_titleBarStyle);
    if (!placed)
        child->setGeometry(cascadePlace(m_adopted++));
    notePlace(child);
    connect(child, &QMdiSubWindow::windowStateChanged, viewport(), [this, child] {
        QWidget *buttons = child->maximizedButtonsWidget();
        if (buttons && buttons->style() != m_titleBarStyle)
            buttons->setStyle(m_titleBarStyle);
        noteActiveSoon();
    });
    // The system menu's own keys would make those of the frame's menus ambiguous.
    if (QMenu *menu = child->systemMenu()) {
        for (QAction *item : menu->actions())
            item->setShortcuts(QList<QKeySequence>());
    }
    // The base class cuts all connections from a leaving child to itself.
    connect(child, &QObject::destroyed, viewport(), [this](QObject *gone) {
        m_places.remove(gone);
        m_reportedIsGone = m_reportedIsGone || gone == m_reported;
        viewport()->update();
        noteActiveSoon();
    });
    CoveredWindows::follow(*child);
    child->installEventFilter(this);
    emit adopted(child);
}

QMdiSubWindow *MdiArea::activeChild() const
{
    if (QMdiSubWindow *current = currentSubWindow(); current && !current->isHidden())
        return current;
    return m_active && !m_active->isHidden() ? m_active.data() : nullptr;
}

QList<QMdiSubWindow *> MdiArea::childWindows() const
{
    QList<QMdiSubWindow *> result = subWindowList(QMdiArea::CreationOrder);
    result.removeIf([](const QMdiSubWindow *child) { return child->isHidden(); });
    return result;
}

QList<QMdiSubWindow *> MdiArea::orderedWindows() const
{
    const QList<QWidget *> forms = Forms::all();
    const auto placeOf = [&forms](QMdiSubWindow *child) {
        const qsizetype place = forms.indexOf(child);
        return place < 0 ? forms.size() : place;
    };
    QList<QMdiSubWindow *> result = childWindows();
    std::stable_sort(result.begin(), result.end(),
                     [&placeOf](auto *one, auto *other) { return placeOf(one) < placeOf(other); });
    return result;
}

void MdiArea::goOn(int step)
{
    const QList<QMdiSubWindow *> children = orderedWindows();
    if (children.isEmpty())
        return;
    const qsizetype now = children.indexOf(activeChild());
    const qsizetype count = children.size();
    setActiveSubWindow(children.at(now < 0 ? 0 : (now + step + count) % count));
}

void MdiArea::noteActive()
{
    QMdiSubWindow *now = activeChild();
    if (now == m_reported && !m_reportedIsGone)
        return;
    m_active = now;
    m_reported = now;
    m_reportedIsGone = false;
    emit activeChildChanged(now);
}

void MdiArea::takeFocus()
{
    QWidget *target = this;
    const QMdiSubWindow *child = activeChild();
    if (child && child->widget()) {
        target = child->widget();
        while (target->focusProxy())
            target = target->focusProxy();
    }
    (target->isVisible() ? target : this)->setFocus();
}

/// The keyboard of the area is the active child's as soon as that can be seen.
void MdiArea::keepFocus()
{
    const QMdiSubWindow *child = activeChild();
    const QWidget *focus = window()->focusWidget();
    const bool isOurs = !focus || focus == this || isAncestorOf(focus);
    const bool isInside = child && focus && focus != child && child->isAncestorOf(focus);
    if (child && isOurs && !(isInside && focus->isVisible()))
        takeFocus();
}

/// The base class has its successor ready only when it is through with a child that goes, and puts
/// a child that is restored in sight only when it has told of it.
void MdiArea::noteActiveSoon()
{
    QMetaObject::invokeMethod(
        this,
        [this] {
            noteActive();
            keepFocus();
        },
        Qt::QueuedConnection);
}

bool MdiArea::eventFilter(QObject *watched, QEvent *event)
{
    const bool places = event->type() == QEvent::Move || event->type() == QEvent::Resize;
    if (places)
        notePlace(qobject_cast<QMdiSubWindow *>(watched));
    // The base class reckons the scroll bars anew, from all children.
    if (m_walking && places)
        return false;
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide) {
        viewport()->update();
        noteActiveSoon();
    }
    return QMdiArea::eventFilter(watched, event);
}

void MdiArea::closeActive()
{
    if (QMdiSubWindow *child = activeChild())
        child->close();
}

/// In the order given; the last one whose state changes is active then.
void MdiArea::setStates(const QList<QWidget *> &forms, Qt::WindowStates state)
{
    const auto wanted = [state](const QWidget *form) {
        return (form->windowState() & ~(Qt::WindowMinimized | Qt::WindowMaximized)) | state;
    };
    QList<QMdiSubWindow *> changed;
    for (QWidget *form : forms) {
        auto *child = qobject_cast<QMdiSubWindow *>(form);
        if (child && child->windowState() != wanted(child))
            changed.append(child);
    }
    if (changed.isEmpty()) {
        arrangeIcons();
        return;
    }
    // Otherwise each child activated on the way would be maximized in place of the last one.
    const bool kept = testOption(DontMaximizeSubWindowOnActivation);
    setOption(DontMaximizeSubWindowOnActivation, true);
    changeStates(changed, wanted);
    setActiveSubWindow(changed.last());
    setOption(DontMaximizeSubWindowOnActivation, kept);
    arrangeIcons();
    keepFocus();
}

void MdiArea::changeStates(const QList<QMdiSubWindow *> &children, const WantedState &wanted)
{
    m_walking = true;
    {
        const StateWalk walk(*this, children);
        // The base class lines up the minimized ones at each change. What leaves the end of the
        // line, or joins it there, does not move the others.
        if (wanted(children.first()) & Qt::WindowMinimized) {
            for (QMdiSubWindow *child : children)
                child->setWindowState(wanted(child));
        } else {
            for (qsizetype at = children.size() - 1; at >= 0; --at)
                children.at(at)->setWindowState(wanted(children.at(at)));
        }
        for (QMdiSubWindow *child : children)
            child->raise();
    }
    m_walking = false;
    QMoveEvent moved(children.last()->pos(), children.last()->pos());
    QMdiArea::eventFilter(children.last(), &moved);
}

void MdiArea::minimizeAll(const QList<QWidget *> &forms)
{
    setStates(forms, Qt::WindowMinimized);
}

void MdiArea::restoreAll(const QList<QWidget *> &forms)
{
    setStates(forms, Qt::WindowNoState);
}

void MdiArea::restore(QMdiSubWindow *child)
{
    QList<QWidget *> forms{child};
    for (QMdiSubWindow *other : childWindows()) {
        if (other->isMaximized())
            forms.append(other);
    }
    setStates(forms, Qt::WindowNoState);
}

QPoint MdiArea::scrolled() const
{
    return {horizontalScrollBar()->value(), verticalScrollBar()->value()};
}

/// A child takes on another state before it moves to the place of that.
void MdiArea::notePlace(const QMdiSubWindow *child)
{
    if (child && !child->isMinimized() && !child->isMaximized())
        m_places.insert(child, normalPlace(child));
}

QRect MdiArea::normalPlace(const QMdiSubWindow *child) const
{
    const bool isNormal = !child->isMinimized() && !child->isMaximized();
    return isNormal ? child->geometry().translated(scrolled()) : m_places.value(child);
}

void MdiArea::putBack(const QList<QMdiSubWindow *> &children,
                      const QList<QMdiSubWindow *> &minimized, QMdiSubWindow *active,
                      bool isMaximized)
{
    if (!minimized.isEmpty())
        changeStates(minimized, [](const QWidget *child) {
            return child->windowState() | Qt::WindowMinimized;
        });
    setActiveSubWindow(active);
    if (isMaximized)
        active->showMaximized();
    // Last: a minimized child that is no longer active goes behind the others.
    viewport()->setUpdatesEnabled(false);
    for (QMdiSubWindow *child : children)
        child->raise();
    viewport()->setUpdatesEnabled(true);
    arrangeIcons();
    keepFocus();
}

void MdiArea::resizeEvent(QResizeEvent *event)
{
    QMdiArea::resizeEvent(event);
    arrangeIcons();
    CoveredWindows::refresh(this);
}

void MdiArea::changeEvent(QEvent *event)
{
    QMdiArea::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        updateBackground();
}

/// A shade beside the colour of the windows, in light and in dark.
void MdiArea::updateBackground()
{
    const QColor window = palette().color(QPalette::Window);
    const QColor shade = window.lightness() > 127 ? window.darker(115) : window.lighter(130);
    if (background().color() != shade)
        setBackground(shade);
}

void MdiArea::paintEvent(QPaintEvent *event)
{
    QMdiArea::paintEvent(event);
    if (!childWindows().isEmpty())
        return;
    QPainter painter(viewport());
    QColor ink = palette().color(QPalette::WindowText);
    ink.setAlphaF(0.55F);
    painter.setPen(ink);
    const QString key = QKeySequence(Qt::CTRL | Qt::Key_N).toString(QKeySequence::NativeText);
    painter.drawText(
        viewport()->rect().adjusted(20, 20, -20, -20), int(Qt::AlignCenter) | int(Qt::TextWordWrap),
        Texts<"frmMain">::at<"strNoWindow", "Type an address, or press %1 for a new window">()
            .replace("%1"_L1, key));
}
