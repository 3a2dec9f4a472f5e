#include "txtHTML.h"

#include "Clipboard.h"
#include "HtmlColourer.h"
#include "HtmlFixups.h"
#include "HtmlTyping.h"
#include "RichTextBox.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QTimerEvent>

using namespace Qt::StringLiterals;
using HtmlColouring::defaultColours;

namespace {

/// Up to this many characters the text is coloured at once, by way of its document.
constexpr int atOnce = 100'000;
constexpr int sliceMilliseconds = 12;
/// Colouring that typing made useless begins anew once the keys rest.
constexpr int restMilliseconds = 150;
int lastNumber = 0;

}

txtHTML::txtHTML(QWidget *parent)
    : QWidget(parent)
    , m_rtf1(new RichTextBox(this))
    , m_hWnd(++lastNumber)
{
    setObjectName("txtHTML"_L1);
    m_rtf1->setObjectName("rtf1"_L1);
    setFocusProxy(m_rtf1);
    m_rtf1->setKeyPress([this](QChar c) { return HtmlTyping::press(*m_rtf1, c); });
    m_rtf1->setPaste([this] { Paste(); });
    connect(m_rtf1, &RichTextBox::changed, this, &txtHTML::onChanged);
    connect(m_rtf1, &RichTextBox::fileDropped, this, &txtHTML::DropFile);
    connect(m_rtf1, &RichTextBox::mouseClicked, this, [this](Qt::MouseButton button) {
        if (button == Qt::RightButton)
            Q_EMIT RightClick();
        else if (button == Qt::LeftButton)
            Q_EMIT LeftClick();
    });
}

txtHTML::~txtHTML() = default;

void txtHTML::resizeEvent(QResizeEvent *event)
{
    Q_UNUSED(event);
    m_rtf1->setGeometry(rect());
}

bool txtHTML::CanUndo() const
{
    return m_rtf1->canUndo();
}

void txtHTML::Undo()
{
    m_rtf1->undo();
}

void txtHTML::Cut()
{
    Copy();
    m_rtf1->setSelText({});
}

void txtHTML::Copy()
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(m_rtf1->plainSelection());
}

void txtHTML::Paste()
{
    m_rtf1->setSelText(clipboardText());
    m_rtf1->setSelStart(0);
    m_rtf1->setSelLength(m_rtf1->TextLength());
    ColorHTML();
    m_rtf1->setSelStart(1);
}

void txtHTML::SelectAll()
{
    m_rtf1->setSelStart(0);
    m_rtf1->setSelLength(m_rtf1->TextLength());
    m_rtf1->setFocus();
}

void txtHTML::Delete()
{
    m_rtf1->setSelText({});
}

QString txtHTML::fcnGetRTFColor(const QVariant &Color) const
{
    return HtmlColouring::fcnGetRTFColor(Color);
}

QString txtHTML::ReplaceText(const QString &patrn, const QString &replStr,
                             const QString &textStr) const
{
    return HtmlColouring::ReplaceText(patrn, replStr, textStr);
}

void txtHTML::HighlightAll()
{
    if (m_rtf1->TextLength() > atOnce) {
        startColouring(0, m_rtf1->buffer().size());
    } else {
        m_rtf1->selectUnseen(0, m_rtf1->TextLength());
        ColorHTML();
    }
    m_rtf1->selectUnseen(m_rtf1->TextLength(), 0);
}

void txtHTML::Highlight_Selected()
{
    // Hiding the box itself would take the focus from it.
    m_rtf1->setUpdatesEnabled(false);
    ColorHTML();
    m_rtf1->setSelLength(0);
    m_rtf1->setUpdatesEnabled(true);
}

void txtHTML::Un_Highlight()
{
    m_colourTimer.stop();
    m_colourer.reset();
    // Source that looks like rich text must not be taken for it.
    m_rtf1->clearColours();
    reportProgress();
}

void txtHTML::ColorHTML()
{
    if (m_rtf1->SelLength() < 1)
        return;
    const qsizetype from = m_rtf1->selectionStart();
    const qsizetype length = m_rtf1->selectionEnd() - from;
    if (m_rtf1->TextLength() <= atOnce)
        colourThroughDocument();
    else if (length == m_rtf1->buffer().size())
        colourAllSoon(0);
    else
        startColouring(from, length);
}

void txtHTML::colourThroughDocument()
{
    const int start = m_rtf1->SelStart();
    const int length = m_rtf1->SelLength();
    const auto select = [this](int from, int count) { m_rtf1->selectUnseen(from, count); };
    select(0, start);
    const QString before = m_rtf1->SelRTF();
    select(start + length, m_rtf1->TextLength() - start - length);
    const QString after = m_rtf1->SelRTF();
    select(start, length);
    const QString text = m_rtf1->SelText();
    m_rtf1->setTextRTF(HtmlColouring::colouredDocument(text, before, after));
    select(start, length);

    using namespace HtmlFixups;
    for (Range match = nextPlainText(text, 0); match.found();
         match = nextPlainText(text, match.end)) {
        select(start + int(match.start) + 1, int(match.end - match.start) - 2);
        m_rtf1->setSelColor(defaultColours[HtmlColouring::PlainText]);
    }
    for (Range match = nextComment(text, 0); match.found(); match = nextComment(text, match.end)) {
        select(start + int(match.start), int(match.end - match.start));
        m_rtf1->setSelColor(defaultColours[HtmlColouring::Comment]);
    }
}

/// The text has taken its time already, and is to be seen before its colours.
void txtHTML::colourAllSoon(int milliseconds)
{
    m_colourer.reset();
    m_colourTimer.start(milliseconds, this);
}

void txtHTML::startColouring(qsizetype from, qsizetype length)
{
    // Unless all of the text is now to be coloured, what was begun is brought to its end.
    if (length < m_rtf1->buffer().size())
        finish();
    std::array<char, HtmlColouring::slotCount> indexes{};
    for (int slot = 0; slot < HtmlColouring::slotCount; ++slot)
        indexes[slot] = m_rtf1->colourIndex(defaultColours[slot]);
    m_colourer = std::make_unique<HtmlColourer>(m_rtf1->buffer().text().mid(from, length), indexes);
    m_colouredFrom = from;
    m_shown = 0;
    m_colourTimer.start(0, this);
    colourSlice(sliceMilliseconds);
}

/// Goes on colouring for that long; to the end when it is negative.
void txtHTML::colourSlice(int milliseconds)
{
    const bool done = m_colourer->run(QDeadlineTimer(milliseconds));
    const QByteArrayView colours = m_colourer->colours();
    const qsizetype scanned = m_colourer->scanned();
    if (done)
        m_rtf1->setColours(m_colouredFrom, colours);
    else
        m_rtf1->setColours(m_colouredFrom + m_shown, colours.sliced(m_shown, scanned - m_shown));
    m_shown = scanned;
    if (done) {
        m_colourTimer.stop();
        m_colourer.reset();
    }
    reportProgress();
}

void txtHTML::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_colourTimer.timerId())
        QWidget::timerEvent(event);
    else if (m_colourer)
        colourSlice(sliceMilliseconds);
    else
        startColouring(0, m_rtf1->buffer().size());
}

bool txtHTML::isBusy() const
{
    return m_colourTimer.isActive();
}

void txtHTML::finish()
{
    if (!isBusy())
        return;
    if (!m_colourer)
        startColouring(0, m_rtf1->buffer().size());
    if (m_colourer)
        colourSlice(-1);
}

void txtHTML::onChanged()
{
    // The text is no longer the one being coloured: all of it will be.
    if (isBusy())
        colourAllSoon(restMilliseconds);
    Q_EMIT Change();
}

void txtHTML::reportProgress()
{
    if (!isBusy())
        Q_EMIT Progress(100);
    else if (m_colourer)
        Q_EMIT Progress(int(m_colourer->scanned() * 99 / qMax(m_colourer->size(), qsizetype(1))));
}

int txtHTML::SelLength() const
{
    return m_rtf1->SelLength();
}

void txtHTML::setSelLength(int length)
{
    m_rtf1->setSelLength(length);
}

int txtHTML::SelStart() const
{
    return m_rtf1->SelStart();
}

void txtHTML::setSelStart(int position)
{
    m_rtf1->setSelStart(position);
}

QString txtHTML::SelText() const
{
    return m_rtf1->SelText();
}

void txtHTML::setSelText(const QString &text)
{
    const int start = m_rtf1->SelStart();
    m_rtf1->setSelText(text);
    const int end = m_rtf1->SelStart();
    m_rtf1->setSelStart(start);
    m_rtf1->setSelLength(end - start);
    Highlight_Selected();
    m_rtf1->setSelStart(end);
}

QString txtHTML::Text() const
{
    return m_rtf1->Text();
}

void txtHTML::setText(const QString &text)
{
    m_rtf1->setText(text);
    HighlightAll();
}
