#include "PageFindBar.h"

#include "Captioned.h"
#include "DraggedUrls.h"
#include "TextFinder.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
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
    , m_matchCase(
          addSwitch(texts.at<"chkMatchCase", "&Match case">, TextFinder::last().matchesCase))
    , m_wholeWord(addSwitch(texts.at<"chkWholeWord", "Wh&ole word">, TextFinder::last().isWhole))
    , m_result(new QLabel(this))
    , m_finder(new TextFinder(page, this))
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
    m_close = addButton(texts.at<"cmdFindClose", "Close">);
    connect(m_close, &QPushButton::clicked, this, &PageFindBar::dismiss);
    arrange(false);
    connect(m_text, &QLineEdit::textChanged, this, [this] { find(false); });
    connect(m_finder, &TextFinder::found, this, &PageFindBar::showResult);
    connect(page, &QWebEnginePage::loadFinished, this, [this] {
        if (isVisible())
            findAnew();
    });
    hide();
}

QCheckBox *PageFindBar::addSwitch(const Text &caption, bool isOn)
{
    auto *box = captioned<QCheckBox>(caption, this);
    box->setAccessibleName(nameOf(box->text()));
    box->setChecked(isOn);
    connect(box, &QCheckBox::toggled, this, &PageFindBar::findAnew);
    return box;
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
    m_upper->addWidget(m_wholeWord);
    rest->addWidget(m_close);
    // Else it would have the old height until events have run.
    for (QLayout *each :
         {static_cast<QLayout *>(m_upper), static_cast<QLayout *>(m_lower), layout()})
        each->invalidate();
}

int PageFindBar::arrangeFor(int width)
{
    int others = 0;
    for (const QWidget *each : std::initializer_list<const QWidget *>{
             m_label, m_result, m_previous, m_next, m_matchCase, m_wholeWord, m_close})
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
    if (!proposes && !wasOpen)
        takeLast();
    if (proposes && selected != m_text->text())
        m_text->setText(selected);
    else if (!wasOpen)
        findAnew();
    m_text->selectAll();
}

void PageFindBar::again(bool backwards)
{
    if (!isVisible()) {
        show();
        emit opened();
        takeLast();
    }
    if (m_text->text().isEmpty())
        m_text->setFocus();
    else
        find(backwards);
}

/// The user looks for the same in the next window.
void PageFindBar::takeLast()
{
    const TextFinder::Query &last = TextFinder::last();
    if (last.text.isEmpty())
        return;
    const QSignalBlocker text(m_text);
    const QSignalBlocker matchCase(m_matchCase);
    const QSignalBlocker wholeWord(m_wholeWord);
    m_text->setText(last.text);
    m_matchCase->setChecked(last.matchesCase);
    m_wholeWord->setChecked(last.isWhole);
}

void PageFindBar::dismiss()
{
    m_finder->end();
    // Else the keyboard goes on to the page as by Tab, which leads to its first link or field.
    parentWidget()->setFocus();
    hide();
    emit dismissed();
}

TextFinder::Query PageFindBar::query() const
{
    return {m_text->text(), m_matchCase->isChecked(), m_wholeWord->isChecked()};
}

void PageFindBar::findAnew()
{
    m_finder->findAnew(query());
    if (m_text->text().isEmpty())
        setResult({});
}

void PageFindBar::find(bool backwards)
{
    m_finder->find(query(), backwards);
    if (m_text->text().isEmpty())
        setResult({});
}

void PageFindBar::showResult(int active, int hits, bool isMore)
{
    const QLocale locale;
    if (hits == 0)
        setResult(texts.at<"strNotFound", "Not found">());
    else
        setResult((isMore ? texts.at<"strResultOfMore", "%1 of more than %2">()
                          : texts.at<"strResult", "%1 of %2">())
                      .arg(locale.toString(active), locale.toString(hits)));
}

/// Screen readers tell it while the field has the keyboard.
void PageFindBar::setResult(const QString &text)
{
    m_result->setText(text);
    m_text->setAccessibleDescription(text);
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
