#include "DocumentFiller.h"
#include "RichTextBox.h"
#include "Twips.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMimeData>

using namespace Qt::StringLiterals;

namespace {

/// The width of a tab in the rich text documents, half an inch.
constexpr int tabTwips = 720;

/// Source is read on white paper in every colour scheme: the colours of its kinds are fixed and
/// made for that.
QPalette paper(QPalette palette)
{
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::Highlight, QColor(0x26, 0x5f, 0xb4));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::PlaceholderText, Qt::darkGray);
    return palette;
}

QString firstLocalFile(const QMimeData *source)
{
    const QList<QUrl> urls = source->urls();
    for (const QUrl &url : urls) {
        if (url.isLocalFile())
            return url.toLocalFile();
    }
    return {};
}

}

RichTextBox::RichTextBox(QWidget *parent)
    : QPlainTextEdit(parent)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setStyleHint(QFont::Monospace);
    setFont(font);
    setPalette(paper(palette()));
    setTabStopDistance(Twips::toPixels(tabTwips));
    setContextMenuPolicy(Qt::DefaultContextMenu);
    connect(document(), &QTextDocument::contentsChange, this, &RichTextBox::documentChanged);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, [this] {
        if (!m_ownChange)
            m_typing.reset();
    });
}

RichTextBox::~RichTextBox() = default;

void RichTextBox::zoom(int steps)
{
    const qreal size = qBound(qreal(smallestFont), font().pointSizeF() + steps, qreal(largestFont));
    QFont larger = font();
    larger.setPointSizeF(size);
    setFont(larger);
}

bool RichTextBox::pressCharacter(const QString &text)
{
    if (text.size() != 1 || (text.front() < u' ' && text.front() != u'\t')
        || text.front() == QChar(0x7f))
        return false;
    if (!m_keyPress || !m_keyPress(text.front()))
        type(text.front());
    return true;
}

void RichTextBox::keyPressEvent(QKeyEvent *event)
{
    // Keys that only move about or modify others need no more of the text than is there.
    if (!event->text().isEmpty())
        finishFilling();
    if (event->matches(QKeySequence::Paste) && m_paste) {
        m_paste();
        event->accept();
        return;
    }
    constexpr auto commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const bool isCommand =
        (event->modifiers() & commands) && !(event->modifiers() & Qt::GroupSwitchModifier);
    // Shift+Tab leaves the box, as it does everywhere.
    if (!isCommand && event->key() != Qt::Key_Backtab && pressCharacter(event->text()))
        event->accept();
    else
        QPlainTextEdit::keyPressEvent(event);
}

void RichTextBox::inputMethodEvent(QInputMethodEvent *event)
{
    finishFilling();
    const bool oneCharacter = event->preeditString().isEmpty() && event->replacementLength() == 0
        && event->commitString().size() == 1;
    if (oneCharacter) {
        QInputMethodEvent ended;
        QPlainTextEdit::inputMethodEvent(&ended);
        if (pressCharacter(event->commitString())) {
            event->accept();
            return;
        }
    }
    QPlainTextEdit::inputMethodEvent(event);
}

void RichTextBox::mousePressEvent(QMouseEvent *event)
{
    m_caretAtEnd = false;
    QPlainTextEdit::mousePressEvent(event);
    Q_EMIT mouseClicked(event->button());
}

void RichTextBox::contextMenuEvent(QContextMenuEvent *event)
{
    // The right button is told by its click; this is the menu key.
    if (event->reason() == QContextMenuEvent::Keyboard)
        Q_EMIT mouseClicked(Qt::RightButton);
    event->accept();
}

void RichTextBox::wheelEvent(QWheelEvent *event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QPlainTextEdit::wheelEvent(event);
        return;
    }
    if (event->angleDelta().y() != 0)
        zoom(event->angleDelta().y() > 0 ? 1 : -1);
    event->accept();
}

bool RichTextBox::canInsertFromMimeData(const QMimeData *source) const
{
    return source->hasText() || !firstLocalFile(source).isEmpty();
}

void RichTextBox::insertFromMimeData(const QMimeData *source)
{
    const QString file = firstLocalFile(source);
    if (!file.isEmpty())
        Q_EMIT fileDropped(file);
    else
        setSelText(source->text());
}

QMimeData *RichTextBox::createMimeDataFromSelection() const
{
    auto *selection = new QMimeData;
    selection->setText(SelText());
    return selection;
}
