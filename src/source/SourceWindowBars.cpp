#include "Captioned.h"
#include "FieldEdit.h"
#include "FindBar.h"
#include "RichTextBox.h"
#include "SourceEditor.h"
#include "SourceWindow.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

constexpr Texts<"frmSource"> texts;

}

QMenu *SourceWindow::addMenu(const char *name, const QString &caption)
{
    QMenu *menu = menuBar()->addMenu(caption);
    menu->setObjectName(QLatin1String(name));
    menu->menuAction()->setObjectName(QLatin1String(name));
    return menu;
}

QAction *SourceWindow::addItem(QMenu *menu, const char *name, const QString &caption,
                               void (SourceWindow::*handler)())
{
    QAction *action = menu->addAction(caption);
    action->setObjectName(QLatin1String(name));
    connect(action, &QAction::triggered, this, handler);
    return action;
}

void SourceWindow::addEditItem(const char *name, const QString &caption,
                               void (*inText)(SourceEditor &editor),
                               void (*inField)(QLineEdit &field))
{
    QAction *action = m_editMenu->addAction(caption);
    action->setObjectName(QLatin1String(name));
    connect(action, &QAction::triggered, m_editor, [this, inText, inField] {
        if (QLineEdit *field = FieldEdit::focused(*this))
            inField(*field);
        else
            inText(*m_editor);
    });
}

void SourceWindow::addSeparator(QMenu *menu, const char *name)
{
    menu->addSeparator()->setObjectName(QLatin1String(name));
}

void SourceWindow::buildMenus()
{
    QMenu *file = addMenu("mnuFile", u"&File"_s);
    addItem(file, "mnuFileOpen", u"&Open"_s, &SourceWindow::fileOpen)
        ->setShortcut(QKeySequence::Open);
    addItem(file, "mnuFileSave", u"&Save"_s, &SourceWindow::fileSave)
        ->setShortcut(QKeySequence::Save);
    addSeparator(file, "mnuFileBar0");
    addItem(file, "mnuFileExit", u"E&xit"_s, &SourceWindow::fileExit);

    m_editMenu = addMenu("mnuEdit", u"&Edit"_s);
    addEditItem(
        "mnuEditUndo", u"Undo"_s, [](SourceEditor &editor) { editor.undo(); },
        [](QLineEdit &field) { field.undo(); });
    addSeparator(m_editMenu, "mnuEditBar0");
    addEditItem(
        "mnuEditCut", u"Cu&t"_s, [](SourceEditor &editor) { editor.cut(); }, FieldEdit::cut);
    addEditItem(
        "mnuEditCopy", u"&Copy"_s, [](SourceEditor &editor) { editor.copy(); },
        [](QLineEdit &field) { field.copy(); });
    addEditItem(
        "mnuEditPaste", u"&Paste"_s, [](SourceEditor &editor) { editor.paste(); },
        FieldEdit::paste);
    addSeparator(m_editMenu, "mnuEditBar1");
    addEditItem(
        "mnuEditSelectAll", u"Select &All"_s, [](SourceEditor &editor) { editor.selectAll(); },
        [](QLineEdit &field) { field.selectAll(); });

    QMenu *help = addMenu("mnuHelp", u"&Help"_s);
    addItem(help, "mnuHelpAbout", u"&About"_s, &SourceWindow::helpAbout);
}

QAction *SourceWindow::addTool(const Text &caption, const QKeySequence &shortcut)
{
    auto *action = captioned<QAction>(caption, this);
    action->setShortcut(shortcut);
    action->setToolTip(action->text() + " ("_L1 + shortcut.toString(QKeySequence::NativeText)
                       + u')');
    addAction(action);
    auto *button = new QToolButton(this);
    button->setDefaultAction(action);
    button->setAutoRaise(true);
    button->setAccessibleName(action->text());
    statusBar()->addPermanentWidget(button);
    return action;
}

/// What the menus do not have is reached from the status bar and by key.
void SourceWindow::buildStatusBar()
{
    m_state = new QLabel(this);
    m_state->setObjectName("lblState"_L1);
    m_state->setMinimumWidth(1);
    m_state->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    statusBar()->addWidget(m_state, 1);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName("ColouringProgress"_L1);
    m_progress->setAccessibleName(texts.at<"strColouring", "Colouring">());
    m_progress->setMaximumWidth(120);
    m_progress->hide();
    statusBar()->addPermanentWidget(m_progress);
    connect(m_editor, &SourceEditor::progress, this, [this](int percent) {
        m_progress->setValue(percent);
        m_progress->setVisible(percent < 100);
    });

    const QAction *find = addTool(texts.at<"cmdFind", "Find">, QKeySequence::Find);
    connect(find, &QAction::triggered, m_findBar, &FindBar::open);
    const QAction *line = addTool(texts.at<"cmdGoToLine", "Go To Line">, Qt::CTRL | Qt::Key_G);
    connect(line, &QAction::triggered, this, &SourceWindow::goToLine);
    QAction *wrap = addTool(texts.at<"cmdWrap", "Wrap">, Qt::ALT | Qt::Key_Z);
    wrap->setCheckable(true);
    wrap->setChecked(true);
    connect(wrap, &QAction::toggled, this, [this](bool on) { m_editor->box().setWrapping(on); });

    auto *next = new QAction(this);
    next->setShortcut(QKeySequence::FindNext);
    connect(next, &QAction::triggered, m_findBar, &FindBar::findNext);
    addAction(next);
    auto *previous = new QAction(this);
    previous->setShortcut(QKeySequence::FindPrevious);
    connect(previous, &QAction::triggered, m_findBar, &FindBar::findPrevious);
    addAction(previous);
}
