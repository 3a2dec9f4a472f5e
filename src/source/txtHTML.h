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
class txtHTML : public QWidget {
    Q_OBJECT

public:
    explicit txtHTML(QWidget *parent = nullptr);
    ~txtHTML() override;

    bool CanUndo() const;
    void Undo();
    /// Both empty the clipboard first, also when nothing is selected.
    void Cut();
    void Copy();
    /// Replaces the selection, colours everything and puts the caret after the first character.
    void Paste();
    void SelectAll();
    void Delete();

    QString fcnGetRTFColor(const QVariant &Color) const;
    void HighlightAll();
    void Highlight_Selected();
    void Un_Highlight();
    /// Colours the selection. Long texts get their colours in slices after this returns.
    void ColorHTML();
    QString ReplaceText(const QString &patrn, const QString &replStr, const QString &textStr) const;

    /// Loads a file; its encoding and line ends are kept for saving. False, and the text as it
    /// was, when it cannot be read.
    bool OpenFile(const QString &FileName);
    /// Replaces the file as a whole, or leaves the old one untouched.
    WriteResult SaveFile(const QString &FileName);
    /// What SaveFile() writes.
    SourceFile sourceFile() const;

    /// A number of the editor's own, unique among editors.
    int hWnd() const { return m_hWnd; }
    int SelLength() const;
    void setSelLength(int length);
    int SelStart() const;
    void setSelStart(int position);
    QString SelText() const;
    /// Replaces the selection, colours what was put in and leaves the caret after it.
    void setSelText(const QString &text);
    QString Text() const;
    /// Replaces everything by coloured text.
    void setText(const QString &text);

    RichTextBox &rtf1() const { return *m_rtf1; }
    /// Whether a long text is still coming into view or being coloured.
    bool isBusy() const;
    /// Waits for that.
    void finish();

Q_SIGNALS:
    void RightClick();
    void LeftClick();
    void Change();
    void DropFile(const QString &FileName);
    /// How much of a long text is in view and coloured; 100 when all is done.
    void Progress(int percent);

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

    RichTextBox *m_rtf1;
    int m_hWnd;
    std::unique_ptr<HtmlColourer> m_colourer;
    qsizetype m_colouredFrom = 0;
    qsizetype m_shown = 0;
    QBasicTimer m_colourTimer;

    /// The form of the file that the text was loaded from; its own text is the box's.
    SourceFile m_file;
};
