#include "PageFindBar.h"

#include "Captioned.h"
#include "DraggedUrls.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWebEngineFindTextResult>
#include <QWebEnginePage>

using namespace Qt::StringLiterals;

namespace {
constexpr int longestProposal = 100;
/// Of what is typed, in view; average letters.
constexpr int leastCharacters = 20;

constexpr Texts<"PageFindBar"> texts;

QString nameOf(QString caption)
{
    return caption.remove(u'&').remove(u':');
}
}

PageFindBar::PageFindBar(QWebEnginePage *page, QWidget *parent)
    : QWidget(parent)
    , m_page(page)
    , m_upper(new QHBoxLayout)
    , m_lower(new QHBoxLayout)
    , m_label(new QLabel(texts.at<"lblFind", "F&ind:">(), this))
    , m_text(new QLineEdit(this))
    , m_matchCase(new QCheckBox(texts.at<"chkMatchCase", "&Match case">(), this))
    , m_result(new QLabel(this))
{
    setObjectName("PageFindBar"_L1);
    leaveFilesToTheFrame(*m_text);
    setAutoFillBackground(true);
    auto *rows = new QVBoxLayout(this);
    rows->setContentsMargins(6, 3, 6, 3);
    rows->setSpacing(3);
    rows->addLayout(m_upper);
    rows->addLayout(m_lower);
    m_label->setObjectName("lblFind"_L1);
    m_label->setBuddy(m_text);
    m_text->setObjectName("txtFind"_L1);
    m_text->setAccessibleName(nameOf(m_label->text()));
    m_text->setClearButtonEnabled(true);
    m_result->setObjectName("lblResult"_L1);
    m_result->setMinimumWidth(fontMetrics().horizontalAdvance(u"0000 of 0000"_s));
    m_previous = addButton(texts.at<"cmdFindPrevious", "&Previous">);
    m_next = addButton(texts.at<"cmdFindNext", "&Next">);
    connect(m_previous, &QPushButton::clicked, this, [this] { find(true); });
    connect(m_next, &QPushButton::clicked, this, [this] { find(false); });
    m_matchCase->setObjectName("chkMatchCase"_L1);
    m_matchCase->setAccessibleName(nameOf(m_matchCase->text()));
    m_close = addButton(texts.at<"cmdFindClose", "Close">);
    connect(m_close, &QPushButton::clicked, this, &PageFindBar::dismiss);
    arrange(false);
    connect(m_text, &QLineEdit::textChanged, this, [this] { find(false); });
    connect(m_matchCase, &QCheckBox::toggled, this, &PageFindBar::findAnew);
    connect(page, &QWebEnginePage::loadFinished, this, [this] {
        if (isVisible())
            findAnew();
    });
    hide();
}

QPushButton *PageFindBar::addButton(const Text &caption)
{
    auto *button = captioned<QPushButton>(caption, this);
    button->setAccessibleName(nameOf(button->text()));
    button->setAutoDefault(false);
    return button;
}

void PageFindBar::arrange(bool inTwoRows)
{
    m_inTwoRows = inTwoRows;
    QHBoxLayout *rest = inTwoRows ? m_lower : m_upper;
    // One that is in a row already leaves it.
    m_upper->addWidget(m_label);
    m_upper->addWidget(m_text, 1);
    rest->addWidget(m_result, inTwoRows ? 1 : 0);
    rest->addWidget(m_previous);
    rest->addWidget(m_next);
    m_upper->addWidget(m_matchCase);
    rest->addWidget(m_close);
}

int PageFindBar::arrangeFor(int width)
{
    int others = 0;
    for (const QWidget *each : std::initializer_list<const QWidget *>{m_label, m_result, m_previous,
                                                                      m_next, m_matchCase, m_close})
        others += each->sizeHint().expandedTo(each->minimumSize()).width() + m_upper->spacing();
    const int field = fontMetrics().averageCharWidth() * leastCharacters;
    const QMargins around = layout()->contentsMargins();
    const bool inTwoRows = width < around.left() + others + field + around.right();
    if (inTwoRows != m_inTwoRows)
        arrange(inTwoRows);
    return sizeHint().height();
}

void PageFindBar::open()
{
    const bool wasOpen = isVisible();
    show();
    emit opened();
    m_text->setFocus();
    const QString selected = m_page ? m_page->selectedText().trimmed() : QString();
    const bool proposes =
        !selected.isEmpty() && selected.size() <= longestProposal && !selected.contains(u'\n');
    if (proposes && selected != m_text->text())
        m_text->setText(selected);
    else if (!wasOpen)
        findAnew();
    m_text->selectAll();
}

void PageFindBar::dismiss()
{
    ++m_newest;
    if (m_page)
        m_page->findText({});
    hide();
    emit dismissed();
}

void PageFindBar::findAnew()
{
    if (m_page)
        m_page->findText({});
    find(false);
}

void PageFindBar::find(bool backwards)
{
    const int number = ++m_newest;
    if (!m_page)
        return;
    if (m_text->text().isEmpty()) {
        m_page->findText({});
        m_result->clear();
        return;
    }
    QWebEnginePage::FindFlags flags;
    flags.setFlag(QWebEnginePage::FindBackward, backwards);
    flags.setFlag(QWebEnginePage::FindCaseSensitively, m_matchCase->isChecked());
    m_page->findText(m_text->text(), flags,
                     [bar = QPointer(this), number](const QWebEngineFindTextResult &result) {
                         if (bar && bar->m_newest == number)
                             bar->showResult(result.activeMatch(), result.numberOfMatches());
                     });
}

void PageFindBar::showResult(int active, int hits)
{
    const QLocale locale;
    m_result->setText(hits == 0 ? texts.at<"strNotFound", "Not found">()
                                : texts.at<"strResult", "%1 of %2">().arg(locale.toString(active),
                                                                          locale.toString(hits)));
}

void PageFindBar::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape)
        dismiss();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        find(event->modifiers() & Qt::ShiftModifier);
    else
        QWidget::keyPressEvent(event);
}
