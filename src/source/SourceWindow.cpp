#include "SourceWindow.h"

#include "FindBar.h"
#include "Forms.h"
#include "LineNumbers.h"
#include "MsgBox.h"
#include "NotSaved.h"
#include "PlainCaption.h"
#include "RecoveredText.h"
#include "RichTextBox.h"
#include "ScreenFit.h"
#include "SourceEditor.h"
#include "Texts.h"

#include <QCloseEvent>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int longestSubject = 300;
constexpr QSize comfortableSize(800, 600);
std::function<void(QWidget *)> aboutHandler;

constexpr Texts<"frmSource"> texts;

const QString fileFilter =
    u"HTML Files (*.html)|*.html|HTM Files (*.htm)|*.htm|All Files (*.*)|*.*"_s;

}

SourceWindow::SourceWindow()
    : m_editor(new SourceEditor)
    , m_findBar(nullptr)
{
    setObjectName("frmSource"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    Forms::add(this);
    new PlainCaption(*this);
    auto *area = new QWidget(this);
    auto *column = new QVBoxLayout(area);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_editor->setObjectName("txtHTML1"_L1);
    m_editor->box().setAccessibleName(texts.at<"strSource", "Source">());
    new LineNumbers(&m_editor->box());
    m_findBar = new FindBar(&m_editor->box(), area);
    column->addWidget(m_editor, 1);
    column->addWidget(m_findBar);
    setCentralWidget(area);
    buildMenus();
    buildStatusBar();
    connectEditor();
    setSubject({});
    resizeToScreen(*this, comfortableSize);
    m_editor->setFocus();
}

SourceWindow::~SourceWindow()
{
    keepCopy().leaveToLog();
}

SourceWindow *SourceWindow::openOn(const QString &html, const QString &address, Privacy privacy)
{
    auto *window = new SourceWindow;
    if (privacy == Privacy::Private)
        window->setPrivate();
    window->m_editor->setText(html);
    window->m_editor->setSelStart(0);
    window->setSubject(address);
    window->setEdited(false);
    window->show();
    return window;
}

void SourceWindow::setAboutHandler(const std::function<void(QWidget *)> &handler)
{
    aboutHandler = handler;
}

void SourceWindow::setSubject(const QString &subject)
{
    m_subject = subject;
    const QString caption = texts.at<"Caption", "Document HTML">();
    // A page's address may be as long as the page itself.
    const QString shown = subject.size() > longestSubject
        ? QString(subject.left(longestSubject) + u'\u2026')
        : subject;
    setWindowTitle(shown.isEmpty() ? caption : shown + " - "_L1 + caption);
}

void SourceWindow::connectEditor()
{
    connect(m_editor, &SourceEditor::changed, this, [this] { setEdited(true); });
    connect(m_editor, &SourceEditor::rightClicked, this,
            [this] { findChild<QMenu *>(u"mnuEdit"_s)->popup(QCursor::pos()); });
    connect(m_editor, &SourceEditor::fileDropped, this, &SourceWindow::openFile);
}

void SourceWindow::fileOpen()
{
    m_dialog.setDialogTitle(u"Open an HTML Source File...."_s);
    m_dialog.setFilter(fileFilter);
    if (m_dialog.showOpen(this, 1) != 0)
        openFile(m_dialog.fileName());
}

void SourceWindow::openFile(const QString &file)
{
    if (!QFileInfo::exists(file))
        return;
    // Before the text goes, of which there may be no other copy.
    if (const WriteResult kept = keepCopy(); !kept) {
        NotSaved::tell(this, RecoveredText::folder(), kept);
        return;
    }
    if (!m_editor->openFile(file)) {
        MsgBox::inform(this,
                       texts.at<"strCannotOpen", "The file cannot be read:">() + u'\n' + file);
        return;
    }
    setSubject(file);
    setEdited(false);
}

void SourceWindow::fileSave()
{
    m_dialog.setDialogTitle(u"Save HTML Source File...."_s);
    m_dialog.setFilter(fileFilter);
    if (m_dialog.showSave(this, 1) == 0)
        return;
    if (const WriteResult result = m_editor->saveFile(m_dialog.fileName()); !result) {
        MsgBox::inform(this,
                       texts.at<"strCannotSave", "The file cannot be written:">() + u'\n'
                           + m_dialog.fileName() + u"\n\n"_s + NotSaved::reason(result));
        return;
    }
    setSubject(m_dialog.fileName());
    setEdited(false);
}

void SourceWindow::fileExit()
{
    close();
}

void SourceWindow::helpAbout()
{
    if (aboutHandler)
        aboutHandler(this);
}

void SourceWindow::goToLine()
{
    auto *dialog = new QInputDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setObjectName("GoToLine"_L1);
    dialog->setWindowTitle(texts.at<"cmdGoToLine", "Go To Line">());
    dialog->setLabelText(texts.at<"lblLine", "Line:">());
    dialog->setInputMode(QInputDialog::IntInput);
    RichTextBox &box = m_editor->box();
    dialog->setIntRange(1, box.rows().lineCount());
    dialog->setIntValue(box.rows().lineOf(box.rows().rowAt(box.caret())) + 1);
    connect(dialog, &QInputDialog::intValueSelected, this, [this](int line) {
        RichTextBox &text = m_editor->box();
        const qsizetype start = text.rows().start(text.rows().firstRowOf(line - 1));
        text.select(start, start);
        text.centreCaret();
        text.setFocus();
    });
    dialog->open();
}

void SourceWindow::setPrivate()
{
    m_isPrivate = true;
}

void SourceWindow::setEdited(bool edited)
{
    m_toldOfLoss = false;
    if (edited == m_edited)
        return;
    m_edited = edited;
    // Folders can be long: the tool tip has all of it where the bar has not.
    const QString unsaved = m_isPrivate
        ? texts.at<"strUnsavedPrivate", "Not saved, and gone if closed like this: it is private">()
        : texts.at<"strUnsaved", "Not saved. If closed like this, a copy is kept in %1">().arg(
            RecoveredText::folder());
    m_state->setText(edited ? unsaved : QString());
    m_state->setToolTip(m_state->text());
}

WriteResult SourceWindow::keepCopy() const
{
    return m_edited && !m_isPrivate ? RecoveredText::keep(m_editor->sourceFile()) : WriteResult();
}

void SourceWindow::closeEvent(QCloseEvent *event)
{
    const WriteResult kept = keepCopy();
    // Whoever closes it once more knows what he does.
    if (!kept && !std::exchange(m_toldOfLoss, true)) {
        NotSaved::tell(this, RecoveredText::folder(), kept);
        event->ignore();
        return;
    }
    m_edited = m_edited && !kept;
    // A window that is on its way out is no longer one of the loaded forms.
    Forms::remove(this);
    event->accept();
}
