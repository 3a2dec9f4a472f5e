#include "SourceEditor.h"

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

SourceEditor::SourceEditor(QWidget *parent)
    : QWidget(parent)
    , m_box(new RichTextBox(this))
    , m_hWnd(++lastNumber)
{
    setObjectName("txtHTML"_L1);
    m_box->setObjectName("rtf1"_L1);
    setFocusProxy(m_box);
    m_box->setKeyPress([this](QChar c) { return HtmlTyping::press(*m_box, c); });
    m_box->setPaste([this] { paste(); });
    connect(m_box, &RichTextBox::changed, this, &SourceEditor::onChanged);
    connect(m_box, &RichTextBox::fileDropped, this, &SourceEditor::fileDropped);
    connect(m_box, &RichTextBox::mouseClicked, this, [this](Qt::MouseButton button) {
        if (button == Qt::RightButton)
            Q_EMIT rightClicked();
        else if (button == Qt::LeftButton)
            Q_EMIT leftClicked();
    });
}

SourceEditor::~SourceEditor() = default;

void SourceEditor::resizeEvent(QResizeEvent *event)
{
    Q_UNUSED(event);
    m_box->setGeometry(rect());
}

bool SourceEditor::canUndo() const
{
    return m_box->canUndo();
}

void SourceEditor::undo()
{
    m_box->undo();
}

void SourceEditor::cut()
{
    copy();
    m_box->setSelText({});
}

void SourceEditor::copy()
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->clear();
    clipboard->setText(m_box->plainSelection());
}

void SourceEditor::paste()
{
    m_box->setSelText(clipboardText());
    m_box->setSelStart(0);
    m_box->setSelLength(m_box->textLength());
    colourHtml();
    m_box->setSelStart(1);
}

void SourceEditor::selectAll()
{
    m_box->setSelStart(0);
    m_box->setSelLength(m_box->textLength());
    m_box->setFocus();
}

void SourceEditor::deleteSelection()
{
    m_box->setSelText({});
}

QString SourceEditor::rtfColour(const QVariant &Color) const
{
    return HtmlColouring::rtfColour(Color);
}

QString SourceEditor::replaceText(const QString &pattern, const QString &replacement,
                                  const QString &text) const
{
    return HtmlColouring::replaceText(pattern, replacement, text);
}

void SourceEditor::highlightAll()
{
    if (m_box->textLength() > atOnce) {
        startColouring(0, m_box->buffer().size());
    } else {
        m_box->selectUnseen(0, m_box->textLength());
        colourHtml();
    }
    m_box->selectUnseen(m_box->textLength(), 0);
}

void SourceEditor::highlightSelected()
{
    // Hiding the box itself would take the focus from it.
    m_box->setUpdatesEnabled(false);
    colourHtml();
    m_box->setSelLength(0);
    m_box->setUpdatesEnabled(true);
}

void SourceEditor::removeHighlight()
{
    m_colourTimer.stop();
    m_colourer.reset();
    // Source that looks like rich text must not be taken for it.
    m_box->clearColours();
    reportProgress();
}

void SourceEditor::colourHtml()
{
    if (m_box->selLength() < 1)
        return;
    const qsizetype from = m_box->selectionStart();
    const qsizetype length = m_box->selectionEnd() - from;
    if (m_box->textLength() <= atOnce)
        colourThroughDocument();
    else if (length == m_box->buffer().size())
        colourAllSoon(0);
    else
        startColouring(from, length);
}

void SourceEditor::colourThroughDocument()
{
    const int start = m_box->selStart();
    const int length = m_box->selLength();
    const auto select = [this](int from, int count) { m_box->selectUnseen(from, count); };
    select(0, start);
    const QString before = m_box->selRtf();
    select(start + length, m_box->textLength() - start - length);
    const QString after = m_box->selRtf();
    select(start, length);
    const QString text = m_box->selText();
    m_box->setTextRtf(HtmlColouring::colouredDocument(text, before, after));
    select(start, length);

    using namespace HtmlFixups;
    for (Range match = nextPlainText(text, 0); match.found();
         match = nextPlainText(text, match.end)) {
        select(start + int(match.start) + 1, int(match.end - match.start) - 2);
        m_box->setSelColor(defaultColours[HtmlColouring::PlainText]);
    }
    for (Range match = nextComment(text, 0); match.found(); match = nextComment(text, match.end)) {
        select(start + int(match.start), int(match.end - match.start));
        m_box->setSelColor(defaultColours[HtmlColouring::Comment]);
    }
}

/// The text has taken its time already, and is to be seen before its colours.
void SourceEditor::colourAllSoon(int milliseconds)
{
    m_colourer.reset();
    m_colourTimer.start(milliseconds, this);
}

void SourceEditor::startColouring(qsizetype from, qsizetype length)
{
    // Unless all of the text is now to be coloured, what was begun is brought to its end.
    if (length < m_box->buffer().size())
        finish();
    std::array<char, HtmlColouring::slotCount> indexes{};
    for (int slot = 0; slot < HtmlColouring::slotCount; ++slot)
        indexes[slot] = m_box->colourIndex(defaultColours[slot]);
    m_colourer = std::make_unique<HtmlColourer>(m_box->buffer().text().mid(from, length), indexes);
    m_colouredFrom = from;
    m_shown = 0;
    m_colourTimer.start(0, this);
    colourSlice(sliceMilliseconds);
}

/// Goes on colouring for that long; to the end when it is negative.
void SourceEditor::colourSlice(int milliseconds)
{
    const bool done = m_colourer->run(QDeadlineTimer(milliseconds));
    const QByteArrayView colours = m_colourer->colours();
    const qsizetype scanned = m_colourer->scanned();
    if (done)
        m_box->setColours(m_colouredFrom, colours);
    else
        m_box->setColours(m_colouredFrom + m_shown, colours.sliced(m_shown, scanned - m_shown));
    m_shown = scanned;
    if (done) {
        m_colourTimer.stop();
        m_colourer.reset();
    }
    reportProgress();
}

void SourceEditor::timerEvent(QTimerEvent *event)
{
    if (event->timerId() != m_colourTimer.timerId())
        QWidget::timerEvent(event);
    else if (m_colourer)
        colourSlice(sliceMilliseconds);
    else
        startColouring(0, m_box->buffer().size());
}

bool SourceEditor::isBusy() const
{
    return m_colourTimer.isActive();
}

void SourceEditor::finish()
{
    if (!isBusy())
        return;
    if (!m_colourer)
        startColouring(0, m_box->buffer().size());
    if (m_colourer)
        colourSlice(-1);
}

void SourceEditor::onChanged()
{
    // The text is no longer the one being coloured: all of it will be.
    if (isBusy())
        colourAllSoon(restMilliseconds);
    Q_EMIT changed();
}

void SourceEditor::reportProgress()
{
    if (!isBusy())
        Q_EMIT progress(100);
    else if (m_colourer)
        Q_EMIT progress(int(m_colourer->scanned() * 99 / qMax(m_colourer->size(), qsizetype(1))));
}

int SourceEditor::selLength() const
{
    return m_box->selLength();
}

void SourceEditor::setSelLength(int length)
{
    m_box->setSelLength(length);
}

int SourceEditor::selStart() const
{
    return m_box->selStart();
}

void SourceEditor::setSelStart(int position)
{
    m_box->setSelStart(position);
}

QString SourceEditor::selText() const
{
    return m_box->selText();
}

void SourceEditor::setSelText(const QString &text)
{
    const int start = m_box->selStart();
    m_box->setSelText(text);
    const int end = m_box->selStart();
    m_box->setSelStart(start);
    m_box->setSelLength(end - start);
    highlightSelected();
    m_box->setSelStart(end);
}

QString SourceEditor::text() const
{
    return m_box->text();
}

void SourceEditor::setText(const QString &text)
{
    m_box->setText(text);
    highlightAll();
}
