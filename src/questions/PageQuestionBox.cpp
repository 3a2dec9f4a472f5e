#include "PageQuestionBox.h"

#include "Captioned.h"
#include "ShownAddress.h"

#include <QAccessible>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
/// Pixels.
constexpr int widest = 520;

constexpr Texts<"PageQuestions"> texts;

QLabel *makeIcon(QWidget *parent)
{
    auto *icon = new QLabel(parent);
    icon->setObjectName("lblIcon"_L1);
    const int size = parent->style()->pixelMetric(QStyle::PM_SmallIconSize);
    icon->setPixmap(
        parent->style()->standardIcon(QStyle::SP_MessageBoxQuestion).pixmap(size, size));
    return icon;
}

/// Goes on in the next line wherever it has to: the end of a host says whose it is, and a part of
/// it that fits no line would push that out of sight. A headline has words.
QString breakable(const QString &site)
{
    if (site.contains(u' '))
        return site;
    constexpr QChar mayBreak(0x200b);
    QString result;
    for (const QChar letter : site) {
        if (letter.isLetterOrNumber())
            result += mayBreak;
        result += letter;
    }
    return result;
}

bool isAnswerKey(const QKeyEvent &event)
{
    const int key = event.key();
    return !event.modifiers().testAnyFlags(Qt::ControlModifier | Qt::AltModifier)
        && (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter);
}
}

PageQuestionBox::PageQuestionBox(const PageQuestion &question, bool offersSilence, QWidget *parent)
    : QFrame(parent)
{
    setObjectName("PageQuestion"_L1);
    setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    setAutoFillBackground(true);
    setFocusPolicy(Qt::NoFocus);
    const QString site = shownSite(question.asker);
    setAccessibleName(site.isEmpty() ? question.title : site);
    setAccessibleDescription(question.text);
    new QVBoxLayout(this);
    addHead(question);
    addText(QString(question.text).replace("\r\n"_L1, "\n"_L1));
    if (question.fields) {
        m_fields = question.fields(this);
        layout()->addWidget(m_fields);
    }
    if (question.remember)
        m_remember = addTick(texts.at<"chkRemember", "Remember for this site">);
    if (offersSilence)
        m_silence = addTick(texts.at<"chkNoMore", "No more questions from this page">);
    addButtons(question);
}

/// Who asks, and the headline.
void PageQuestionBox::addHead(const PageQuestion &question)
{
    auto *lines = new QVBoxLayout;
    const auto addLine = [this, lines](const char *name, const QString &line, bool isBold) {
        QLabel *label = addLabel(name, breakable(line));
        label->setAccessibleName(line);
        QFont font = label->font();
        font.setBold(isBold);
        label->setFont(font);
        lines->addWidget(label);
    };
    const QString site = shownSite(question.asker);
    const QString around = shownSite(question.around);
    if (!site.isEmpty())
        addLine("lblAsker", site, true);
    if (!around.isEmpty() && around != site)
        addLine("lblAround", texts.at<"strAround", "inside a page of">() + u' ' + around, false);
    if (!question.title.isEmpty())
        addLine("lblTitle", question.title, true);
    auto *head = new QHBoxLayout;
    if (!question.no.isEmpty() && !question.fields)
        head->addWidget(makeIcon(this));
    head->addLayout(lines, 1);
    static_cast<QVBoxLayout *>(layout())->addLayout(head);
}

QCheckBox *PageQuestionBox::addTick(const Text &caption)
{
    auto *tick = captioned<QCheckBox>(caption, this);
    tick->setAccessibleName(tick->text());
    layout()->addWidget(tick);
    return tick;
}

QLabel *PageQuestionBox::addLabel(const char *name, const QString &text)
{
    auto *label = new QLabel(this);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setText(text);
    return label;
}

void PageQuestionBox::addText(const QString &text)
{
    m_text = addLabel("lblText", text);
    m_text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_scroll = new QScrollArea(this);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidgetResizable(true);
    m_scroll->setWidget(m_text);
    m_scroll->setVisible(!text.isEmpty());
    layout()->addWidget(m_scroll);
}

void PageQuestionBox::addButtons(const PageQuestion &question)
{
    using Answer = PageQuestion::Answer;
    auto *row = new QDialogButtonBox(this);
    const auto add = [this, row](const char *name, const QString &caption, Answer answer) {
        const bool isNo = answer == Answer::No;
        QPushButton *button = row->addButton(
            caption, isNo ? QDialogButtonBox::RejectRole : QDialogButtonBox::AcceptRole);
        button->setObjectName(QLatin1String(name));
        button->setAccessibleName(caption);
        connect(button, &QPushButton::clicked, this, [this, answer] { emit answered(answer); });
        return button;
    };
    m_yes = add("cmdYes", question.yes, Answer::Yes);
    if (!question.other.isEmpty())
        add("cmdOther", question.other, Answer::Other);
    if (!question.no.isEmpty())
        m_no = add("cmdNo", question.no, Answer::No);
    layout()->addWidget(row);
}

void PageQuestionBox::fitInto(const QSize &room)
{
    const int width = qMin(room.width(), widest);
    const QMargins around = layout()->contentsMargins();
    const int textWidth = width - around.left() - around.right() - 2 * frameWidth();
    const int wanted = m_text->heightForWidth(qMax(1, textWidth));
    m_scroll->setFixedHeight(0);
    layout()->activate();
    const int others = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(width)
                                                     : layout()->totalSizeHint().height();
    const int oneLine = m_text->fontMetrics().height();
    m_scroll->setFixedHeight(qBound(oneLine, room.height() - others, qMax(oneLine, wanted)));
    layout()->activate();
    const int height = m_scroll->isVisibleTo(this) ? others + m_scroll->height() : others;
    setGeometry((room.width() - width) / 2, 0, width, height);
}

void PageQuestionBox::takeFocus()
{
    QWidget *first = m_fields ? m_fields : m_yes;
    first->setFocus(Qt::OtherFocusReason);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

bool PageQuestionBox::wantsSilence() const
{
    return m_silence && m_silence->isChecked();
}

bool PageQuestionBox::wantsRemembered() const
{
    return m_remember && m_remember->isChecked();
}

bool PageQuestionBox::event(QEvent *event)
{
    // These keys are menu items' as well.
    if (event->type() == QEvent::ShortcutOverride
        && isAnswerKey(*static_cast<QKeyEvent *>(event))) {
        event->accept();
        return true;
    }
    return QFrame::event(event);
}

void PageQuestionBox::keyPressEvent(QKeyEvent *event)
{
    if (!isAnswerKey(*event)) {
        QFrame::keyPressEvent(event);
        return;
    }
    if (event->isAutoRepeat())
        return;
    if (event->key() != Qt::Key_Escape)
        pressFocused();
    else
        (m_no ? m_no : m_yes)->click();
}

void PageQuestionBox::pressFocused()
{
    auto *focused = qobject_cast<QPushButton *>(focusWidget());
    (focused ? focused : m_yes)->click();
}

bool PageQuestionBox::focusNextPrevChild(bool next)
{
    if (!m_keepsFocus)
        return QFrame::focusNextPrevChild(next);
    QWidget *target = focusWidget() ? focusWidget() : this;
    for (QWidget *start = target;;) {
        target = next ? target->nextInFocusChain() : target->previousInFocusChain();
        if (target == start)
            return true;
        const bool takesTab = (target->focusPolicy() & Qt::TabFocus) && !target->focusProxy();
        if (isAncestorOf(target) && takesTab && target->isVisible() && target->isEnabled())
            break;
    }
    target->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
    return true;
}
