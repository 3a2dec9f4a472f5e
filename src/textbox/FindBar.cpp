#include "FindBar.h"

#include "Captioned.h"
#include "RichTextBox.h"

#include <QDeadlineTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QStringMatcher>

using namespace Qt::StringLiterals;

namespace {

constexpr int recountMilliseconds = 150;
/// Counting in a long text pauses after this long, and says "more than" meanwhile.
constexpr int countingMilliseconds = 20;
/// Texts up to this long are counted at once.
constexpr qsizetype atOnce = 1'000'000;

constexpr Texts<"frmSource"> texts;

}

FindBar::FindBar(RichTextBox *box, QWidget *parent)
    : QWidget(parent)
    , m_box(box)
    , m_text(new QLineEdit(this))
    , m_count(new QLabel(this))
{
    setObjectName("FindBar"_L1);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 2);
    auto *label = captioned<QLabel>(texts.at<"lblFind", "F&ind:">, this);
    label->setBuddy(m_text);
    row->addWidget(label);
    m_text->setObjectName("txtFind"_L1);
    m_text->setAccessibleName(label->text().remove(u'&').remove(u':'));
    m_text->setClearButtonEnabled(true);
    row->addWidget(m_text, 1);
    addButton(texts.at<"cmdFindPrevious", "&Previous">, &FindBar::findPrevious);
    addButton(texts.at<"cmdFindNext", "&Next">, &FindBar::findNext);
    m_count->setObjectName("lblCount"_L1);
    row->addWidget(m_count);
    addButton(texts.at<"cmdFindClose", "Close">, &FindBar::dismiss);
    m_recount.setSingleShot(true);
    m_recount.setInterval(recountMilliseconds);
    connect(&m_recount, &QTimer::timeout, this, &FindBar::count);
    connect(&m_counting, &QTimer::timeout, this, &FindBar::countSlice);
    connect(box, &RichTextBox::changed, this, [this] {
        m_counting.stop();
        if (isVisible())
            m_recount.start();
    });
    connect(m_text, &QLineEdit::textChanged, this, [this] {
        find(false, true);
        count();
    });
    hide();
}

void FindBar::addButton(const Text &caption, void (FindBar::*action)())
{
    auto *button = captioned<QPushButton>(caption, this);
    button->setAccessibleName(button->text().remove(u'&'));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, action);
    layout()->addWidget(button);
}

void FindBar::open()
{
    show();
    const QString selected = m_box->selText();
    if (!selected.isEmpty() && !selected.contains(u'\n'))
        m_text->setText(selected);
    m_text->selectAll();
    m_text->setFocus();
    count();
}

void FindBar::dismiss()
{
    hide();
    m_box->setFocus();
}

void FindBar::findNext()
{
    find(false, false);
}

void FindBar::findPrevious()
{
    find(true, false);
}

void FindBar::select(qsizetype at, qsizetype length)
{
    m_box->select(at, at + length);
    m_box->centreCaret();
}

void FindBar::find(bool backwards, bool fromSelectionStart)
{
    const QString wanted = m_text->text();
    if (wanted.isEmpty())
        return;
    const QString &all = m_box->buffer().text();
    qsizetype at = -1;
    if (backwards) {
        const qsizetype from = m_box->selectionStart() - 1;
        if (from >= 0)
            at = all.lastIndexOf(wanted, from, Qt::CaseInsensitive);
        if (at < 0) {
            const qsizetype after = qMax(from + 1, qsizetype(0));
            at = QStringView(all).sliced(after).lastIndexOf(wanted, -1, Qt::CaseInsensitive);
            at = at < 0 ? -1 : at + after;
        }
    } else {
        const qsizetype from = fromSelectionStart ? m_box->selectionStart() : m_box->selectionEnd();
        at = all.indexOf(wanted, from, Qt::CaseInsensitive);
        if (at < 0)
            at = QStringView(all)
                     .left(from + wanted.size() - 1)
                     .indexOf(wanted, 0, Qt::CaseInsensitive);
    }
    if (at >= 0)
        select(at, wanted.size());
}

/// Counts the hits anew; in a long text the number follows.
void FindBar::count()
{
    m_counting.stop();
    m_hits = 0;
    m_countedTo = 0;
    if (m_text->text().isEmpty())
        m_count->clear();
    else if (m_box->buffer().size() <= atOnce)
        countSlice();
    else
        m_counting.start();
}

void FindBar::countSlice()
{
    const QDeadlineTimer deadline(countingMilliseconds);
    const QString wanted = m_text->text();
    const QString &all = m_box->buffer().text();
    const QStringMatcher matcher(wanted, Qt::CaseInsensitive);
    constexpr qsizetype piece = 200'000;
    while (m_countedTo < all.size() && !deadline.hasExpired()) {
        // Pieces overlap by what a hit may reach into the next one.
        const QStringView part = QStringView(all).mid(m_countedTo, piece + wanted.size() - 1);
        qsizetype at = matcher.indexIn(part);
        qsizetype end = 0;
        for (; at >= 0; at = matcher.indexIn(part, end)) {
            ++m_hits;
            end = at + wanted.size();
        }
        m_countedTo += qMax(qMin(piece, part.size()), end);
    }
    const bool more = m_countedTo < all.size();
    if (!more)
        m_counting.stop();
    const QString number = QLocale().toString(m_hits);
    m_count->setText(more ? texts.at<"strMoreThan", "more than %1 found">().arg(number)
                          : texts.at<"strFound", "%1 found">().arg(number));
}

void FindBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        dismiss();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        find(event->modifiers() & Qt::ShiftModifier, false);
    else
        QWidget::keyPressEvent(event);
}
