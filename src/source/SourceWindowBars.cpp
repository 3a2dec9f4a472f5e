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
#include <functional>

using namespace Qt::StringLiterals;

namespace {

constexpr Texts<"frmSource"> texts;

}

template <auto inText, auto inField> void SourceWindow::edit()
{
    if (QLineEdit *field = FieldEdit::focused(*this))
        std::invoke(inField, *field);
    else
        std::invoke(inText, *m_editor);
}

void SourceWindow::buildMenus()
{
    struct Line {
        const char *name;
        /// Null: a separator.
        const char *caption = nullptr;
        /// Null: a menu, which the lines below are in.
        void (SourceWindow::*act)() = nullptr;
        QKeySequence::StandardKey key = QKeySequence::UnknownKey;
    };
    static constexpr Line lines[] = {
        {"mnuFile", "&File"},
        {"mnuFileOpen", "&Open", &SourceWindow::fileOpen, QKeySequence::Open},
        {"mnuFileSave", "&Save", &SourceWindow::fileSave, QKeySequence::Save},
        {"mnuFileBar0"},
        {"mnuFileExit", "E&xit", &SourceWindow::fileExit},
        {"mnuEdit", "&Edit"},
        {"mnuEditUndo", "Undo", &SourceWindow::edit<&SourceEditor::undo, &QLineEdit::undo>},
        {"mnuEditBar0"},
        {"mnuEditCut", "Cu&t", &SourceWindow::edit<&SourceEditor::cut, FieldEdit::cut>},
        {"mnuEditCopy", "&Copy", &SourceWindow::edit<&SourceEditor::copy, &QLineEdit::copy>},
        {"mnuEditPaste", "&Paste", &SourceWindow::edit<&SourceEditor::paste, FieldEdit::paste>},
        {"mnuEditBar1"},
        {"mnuEditSelectAll", "Select &All",
         &SourceWindow::edit<&SourceEditor::selectAll, &QLineEdit::selectAll>},
        {"mnuHelp", "&Help"},
        {"mnuHelpAbout", "&About", &SourceWindow::helpAbout},
    };
    QMenu *menu = nullptr;
    for (const Line &line : lines) {
        const QString caption = QString::fromLatin1(line.caption);
        QAction *action = nullptr;
        if (line.act) {
            action = menu->addAction(caption);
            connect(action, &QAction::triggered, this, line.act);
            if (line.key != QKeySequence::UnknownKey)
                action->setShortcut(line.key);
        } else if (line.caption) {
            menu = menuBar()->addMenu(caption);
            menu->setObjectName(QLatin1StringView(line.name));
            action = menu->menuAction();
        } else {
            action = menu->addSeparator();
        }
        action->setObjectName(QLatin1StringView(line.name));
    }
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
    auto *close = new QAction(this);
    close->setShortcut(Qt::CTRL | Qt::Key_W);
    close->setAutoRepeat(false);
    connect(close, &QAction::triggered, this, &SourceWindow::fileExit);
    addAction(close);
}
