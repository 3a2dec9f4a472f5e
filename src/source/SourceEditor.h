#pragma once

#include "SourceFile.h"
#include "WriteResult.h"

#include <QBasicTimer>
#include <QWidget>
#include <memory>

class HtmlColourer;
class RichTextBox;

/// An editor for HTML source: text files in and out, the clipboard, undoing, and colours for tags,
/// attributes and comments. Positions and lengths count a line break as two.
class SourceEditor : public QWidget {
    Q_OBJECT

public:
    explicit SourceEditor(QWidget *parent = nullptr);
    ~SourceEditor() override;

    bool canUndo() const;
    void undo();
    /// Both empty the clipboard first, also when nothing is selected.
    void cut();
    void copy();
    /// Replaces the selection, colours everything and puts the caret after the first character.
    void paste();
    void selectAll();
    void deleteSelection();

    QString rtfColour(const QVariant &Color) const;
    void highlightAll();
    void highlightSelected();
    void removeHighlight();
    /// Colours the selection. Long texts get their colours in slices after this returns.
    void colourHtml();
    QString replaceText(const QString &pattern, const QString &replacement,
                        const QString &text) const;

    /// Loads a file; its encoding and line ends are kept for saving. False, and the text as it
    /// was, when it cannot be read.
    bool openFile(const QString &FileName);
    /// Replaces the file as a whole, or leaves the old one untouched.
    WriteResult saveFile(const QString &FileName);
    /// What saveFile() writes.
    SourceFile sourceFile() const;

    /// A number of the editor's own, unique among editors.
    int hWnd() const { return m_hWnd; }
    int selLength() const;
    void setSelLength(int length);
    int selStart() const;
    void setSelStart(int position);
    QString selText() const;
    /// Replaces the selection, colours what was put in and leaves the caret after it.
    void setSelText(const QString &text);
    QString text() const;
    /// Replaces everything by coloured text.
    void setText(const QString &text);

    RichTextBox &box() const { return *m_box; }
    /// Whether a long text is still coming into view or being coloured.
    bool isBusy() const;
    /// Waits for that.
    void finish();

Q_SIGNALS:
    void rightClicked();
    void leftClicked();
    void changed();
    void fileDropped(const QString &FileName);
    /// How much of a long text is in view and coloured; 100 when all is done.
    void progress(int percent);

protected:
    void resizeEvent(QResizeEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void colourThroughDocument();
    void colourAllSoon(int milliseconds);
    void startColouring(qsizetype from, qsizetype length);
    void colourSlice(int milliseconds);
    void onChanged();
    void reportProgress();

    RichTextBox *m_box;
    int m_hWnd;
    std::unique_ptr<HtmlColourer> m_colourer;
    qsizetype m_colouredFrom = 0;
    qsizetype m_shown = 0;
    QBasicTimer m_colourTimer;

    /// The form of the file that the text was loaded from; its own text is the box's.
    SourceFile m_file;
};
