// Where the question in turn is seen, and when it has the keyboard.
#include "PageQuestionBox.h"
#include "PageQuestions.h"

#include <QApplication>
#include <QEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QPainter>
#include <QTimer>
#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// Dims a page that stands still, and takes the clicks that would reach it later.
class Cover : public QWidget {
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter(this).fillRect(rect(), QColor(0, 0, 0, 60));
    }
    void mousePressEvent(QMouseEvent *) override { }
    void mouseReleaseEvent(QMouseEvent *) override { }
    void mouseDoubleClickEvent(QMouseEvent *) override { }
    void wheelEvent(QWheelEvent *) override { }
    void contextMenuEvent(QContextMenuEvent *) override { }
};

bool isBehindDialog(const QWidget *frame)
{
    if (!QApplication::activeModalWidget())
        return false;
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [frame](const QWidget *each) {
        if (each == frame || !each->isModal() || !each->isVisible())
            return false;
        const QWidget *owner = each->parentWidget();
        while (owner && owner->window() != frame)
            owner = owner->window()->parentWidget();
        return owner || each->windowModality() == Qt::ApplicationModal;
    });
}
}

PageQuestionBox *PageQuestions::shownBox() const
{
    return m_entries.isEmpty() ? nullptr : m_entries.constFirst().box.data();
}

void PageQuestions::showFirst()
{
    PageQuestionBox *box = shownBox();
    for (const Entry &each : std::as_const(m_entries)) {
        if (each.box && each.box != box)
            each.box->hide();
    }
    if (!box)
        setStripHeight(0);
    const bool covers = box && m_entries.constFirst().waits;
    if (!covers)
        delete m_cover;
    if (!box || box->isVisibleTo(m_client))
        return;
    if (covers && !m_cover) {
        m_cover = new Cover(m_client);
        m_cover->show();
    }
    emit shown();
    box->show();
    placeBox();
    const QSize least = box->leastRoom();
    if (least.width() > m_client->width() || least.height() > m_client->height())
        emit roomNeeded(least);
    box->announce();
    m_owesFocus = wantsKeyboard();
    const QWidget *window = m_client->parentWidget();
    const QWidget *now = QApplication::focusWidget();
    if (m_owesFocus && isInFront() && (!now || (window && window->isAncestorOf(now))))
        takeFocusHere();
}

void PageQuestions::placeBox()
{
    if (m_cover) {
        m_cover->setGeometry(m_client->rect());
        m_cover->raise();
    }
    if (PageQuestionBox *box = shownBox()) {
        box->fitInto(m_client->size());
        box->raise();
        const bool isStrip = m_entries.constFirst().question.shape == PageQuestion::Shape::Strip;
        setStripHeight(isStrip ? box->height() : 0);
    }
}

void PageQuestions::setStripHeight(int height)
{
    if (std::exchange(m_stripHeight, height) != height)
        emit stripChanged();
}

QWidget *PageQuestions::shownQuestion() const
{
    PageQuestionBox *box = shownBox();
    return box && box->isVisible() ? box : nullptr;
}

/// What stands above the page must not take what is typed into it.
bool PageQuestions::wantsKeyboard() const
{
    const PageQuestionBox *box = shownBox();
    return box
        && (box->hasFields() || m_entries.constFirst().question.shape == PageQuestion::Shape::Box);
}

void PageQuestions::giveFocusBack()
{
    const bool isThere = m_focusBefore && m_focusBefore->isVisible() && m_focusBefore->isEnabled();
    (isThere ? m_focusBefore.data() : m_client)->setFocus();
    m_focusBefore.clear();
}

void PageQuestions::takeFocusHere()
{
    m_owesFocus = false;
    if (PageQuestionBox *box = shownBox())
        box->takeFocus();
}

/// The keyboard comes to the window, and so to the question: always where the page could not use
/// it, else from elsewhere in the program, but not with a click into the page.
void PageQuestions::followFocus(QWidget *old, QWidget *now)
{
    PageQuestionBox *box = shownBox();
    if (!box || !now)
        return;
    const bool isInside = now == box || box->isAncestorOf(now);
    // A menu bar has it for as long as its user is there, and gives it on by itself.
    const bool isMenu = qobject_cast<const QMenuBar *>(old);
    if (isInside && old && !isMenu && old != box && !box->isAncestorOf(old))
        m_focusBefore = old;
    if (isInside || !m_client->isAncestorOf(now) || !wantsKeyboard())
        return;
    const bool clicked = QApplication::mouseButtons() != Qt::NoButton;
    const bool comes = old ? !m_client->isAncestorOf(old) : m_owesFocus;
    if (!m_entries.constFirst().waits && (clicked || !comes))
        return;
    QTimer::singleShot(0, this, [this] {
        const QWidget *focus = QApplication::focusWidget();
        if (isInFront() && focus && m_client->isAncestorOf(focus))
            takeFocusHere();
    });
}

bool PageQuestions::isInFront() const
{
    const auto *window = qobject_cast<const QMdiSubWindow *>(m_client->parentWidget());
    const QMdiArea *area = window ? window->mdiArea() : nullptr;
    return area && area->currentSubWindow() == window && window->isVisible()
        && !window->isMinimized() && !window->window()->isMinimized()
        && !isBehindDialog(window->window());
}

bool PageQuestions::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_client && event->type() == QEvent::Resize)
        placeBox();
    return QObject::eventFilter(watched, event);
}
