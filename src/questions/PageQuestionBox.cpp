#include "PageQuestionBox.h"

#include "Captioned.h"
#include "FlowRows.h"
#include "QuestionAccessible.h"
#include "ShownAddress.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QStyleOptionButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
/// Of the grid; the buttons stand in a column of their own, or in the last one.
constexpr int headRow = 0;
constexpr int textRow = 1;
constexpr int fieldsRow = 2;
constexpr int ticksRow = 3;

constexpr Texts<"PageQuestions"> texts;

/// Styles show the keyboard only where a key brought it, but Return presses in any case.
class AnswerButton : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    void initStyleOption(QStyleOptionButton *option) const override
    {
        QPushButton::initStyleOption(option);
        if (hasFocus())
            option->state |= QStyle::State_KeyboardFocusChange;
    }
};

QLabel *makeIcon(QWidget *parent)
{
    auto *icon = new QLabel(parent);
    icon->setObjectName("lblIcon"_L1);
    const int size = parent->style()->pixelMetric(QStyle::PM_SmallIconSize);
    icon->setPixmap(
        parent->style()->standardIcon(QStyle::SP_MessageBoxQuestion).pixmap(size, size));
    return icon;
}

/// A headline has words.
QString breakable(const QString &text)
{
    return text.contains(u' ') ? text : breakableSite(text);
}

/// Where the one who asks is a frame of another site.
QString aroundLine(const PageQuestion &question)
{
    const QString around = shownSite(question.around);
    if (around.isEmpty() || around == shownSite(question.asker))
        return {};
    return texts.at<"strAround", "inside a page of">() + u' ' + around;
}

bool isAnswerKey(const QKeyEvent &event)
{
    const int key = event.key();
    return !event.modifiers().testAnyFlags(Qt::ControlModifier | Qt::AltModifier)
        && (key == Qt::Key_Escape || key == Qt::Key_Return || key == Qt::Key_Enter);
}

QScrollArea *makeView(QWidget *parent, QWidget *body)
{
    auto *view = new QScrollArea(parent);
    view->setObjectName("scrAll"_L1);
    view->setFrameShape(QFrame::NoFrame);
    view->setFocusPolicy(Qt::NoFocus);
    view->setWidget(body);
    return view;
}

/// Side by side, in as many rows as it takes.
QWidget *makeRows(QWidget *parent)
{
    auto *rows = new QWidget(parent);
    rows->setLayout(new FlowRows);
    rows->layout()->setContentsMargins({});
    return rows;
}
}

PageQuestionBox::PageQuestionBox(const PageQuestion &question, bool offersSilence, QWidget *parent)
    : QFrame(parent)
    , m_shape(question.shape)
    , m_sight(this, [this] { return vital(); })
    , m_body(new QWidget)
    , m_view(makeView(this, m_body))
    , m_grid(new QGridLayout(m_body))
{
    QuestionAccessible::install();
    setObjectName("PageQuestion"_L1);
    setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    setAutoFillBackground(true);
    setAttribute(Qt::WA_NoMousePropagation);
    nameFor(question);
    m_grid->setColumnStretch(0, 1);
    addHead(question);
    addText(QString(question.text).replace("\r\n"_L1, "\n"_L1));
    if (question.fields) {
        m_fields = question.fields(m_body);
        m_grid->addWidget(m_fields, fieldsRow, 0);
    }
    addButtons(question);
    addTicks(question, offersSilence);
    placeButtons(false);
    setAnswerable(false);
    connect(&m_sight, &SteadySight::changed, this, &PageQuestionBox::setAnswerable);
    for (const QScrollBar *each : {m_view->verticalScrollBar(), m_view->horizontalScrollBar()})
        connect(each, &QScrollBar::valueChanged, &m_sight, &SteadySight::beginAnew);
}

/// All of a strip's text is its name.
void PageQuestionBox::nameFor(const PageQuestion &question)
{
    const bool isStrip = m_shape == PageQuestion::Shape::Strip;
    QStringList lines{shownSite(question.asker), question.title, aroundLine(question)};
    if (isStrip)
        lines.append(QString(question.text).replace("\r\n"_L1, "\n"_L1));
    else
        setAccessibleDescription(question.text);
    lines.removeAll(QString());
    setAccessibleName(lines.join(u'\n'));
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
        return label;
    };
    const QString site = shownSite(question.asker);
    const QString around = aroundLine(question);
    if (!site.isEmpty())
        m_asker = addLine("lblAsker", site, true);
    if (!question.title.isEmpty()) {
        QLabel *title = addLine("lblTitle", question.title, true);
        m_asker = m_asker ? m_asker : title;
    }
    if (!around.isEmpty())
        addLine("lblAround", around, false);
    auto *head = new QHBoxLayout;
    if (!question.no.isEmpty() && !question.fields)
        head->addWidget(makeIcon(m_body), 0, Qt::AlignTop);
    head->addLayout(lines, 1);
    m_grid->addLayout(head, headRow, 0);
}

QLabel *PageQuestionBox::addLabel(const char *name, const QString &text)
{
    auto *label = new QLabel(m_body);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setText(text);
    return label;
}

void PageQuestionBox::addText(const QString &text)
{
    m_text = addLabel("lblText", text);
    m_text->setAccessibleName(text);
    m_text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_scroll = new QScrollArea(m_body);
    m_scroll->setObjectName("scrText"_L1);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setWidgetResizable(true);
    m_scroll->setWidget(m_text);
    m_scroll->setVisible(!text.isEmpty());
    m_grid->addWidget(m_scroll, textRow, 0);
}

void PageQuestionBox::addButtons(const PageQuestion &question)
{
    using Answer = PageQuestion::Answer;
    m_buttons = makeRows(m_body);
    const auto add = [this](const char *name, const QString &caption, Answer given) {
        auto *button = new AnswerButton(QString(caption).replace(u'&', "&&"_L1), m_buttons);
        button->setObjectName(QLatin1String(name));
        button->setAccessibleName(caption);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this,
                [this, given, button] { answer(given, button); });
        m_buttons->layout()->addWidget(button);
        return button;
    };
    m_yes = add("cmdYes", question.yes, Answer::Yes);
    if (!question.other.isEmpty())
        add("cmdOther", question.other, Answer::Other);
    if (!question.no.isEmpty())
        m_no = add("cmdNo", question.no, Answer::No);
}

void PageQuestionBox::addTicks(const PageQuestion &question, bool offersSilence)
{
    m_ticks = makeRows(m_body);
    const auto add = [this](const Text &caption) {
        auto *tick = captioned<QCheckBox>(caption, m_ticks);
        tick->setAccessibleName(tick->text());
        m_ticks->layout()->addWidget(tick);
        return tick;
    };
    if (question.remember)
        m_remember = add(texts.at<"chkRemember", "Remember for this site">);
    if (offersSilence)
        m_silence = add(texts.at<"chkNoMore", "No more questions from this page">);
    m_ticks->setVisible(m_remember || m_silence);
    m_grid->addWidget(m_ticks, ticksRow, 0);
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
        // Who types on has not seen it yet, and a blank among that would press the button.
        if (!isAnswerable())
            m_sight.beginAnew();
        QFrame::keyPressEvent(event);
        return;
    }
    if (event->isAutoRepeat() || !isAnswerable())
        return;
    if (event->key() != Qt::Key_Escape)
        pressFocused();
    else
        emit answered(m_no ? PageQuestion::Answer::No : PageQuestion::Answer::Yes);
}

void PageQuestionBox::pressFocused()
{
    if (auto *focused = qobject_cast<QPushButton *>(focusWidget()))
        focused->click();
    else if (m_shape == PageQuestion::Shape::Box || m_fields)
        m_yes->click();
}

/// What the user does not see he is shown first.
void PageQuestionBox::answer(PageQuestion::Answer answer, QWidget *button)
{
    if (!isAnswerable())
        return;
    if (m_isScrolled && !isInView(button))
        m_view->ensureWidgetVisible(button, 0, 0);
    else
        emit answered(answer);
}

/// A button that is out of use gives the keyboard away: then the question itself has it.
void PageQuestionBox::setAnswerable(bool on)
{
    QWidget *focus = QApplication::focusWidget();
    if (!on && m_buttons->isAncestorOf(focus)) {
        m_focusLater = focus;
        setFocus();
    }
    setFocusPolicy(on ? Qt::NoFocus : Qt::TabFocus);
    const QList<QPushButton *> buttons = m_buttons->findChildren<QPushButton *>();
    for (QPushButton *each : buttons)
        each->setEnabled(on);
    if (on && hasFocus())
        (m_focusLater ? m_focusLater.data() : m_yes)->setFocus(Qt::OtherFocusReason);
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
