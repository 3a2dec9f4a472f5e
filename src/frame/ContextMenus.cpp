#include "ContextMenus.h"

#include "BrowserWindow.h"
#include "CommandTable.h"
#include "ContextCommand.h"
#include "ContextTable.h"
#include "ContextTarget.h"
#include "Frame.h"
#include "Texts.h"
#include "WindowMenu.h"

#include <QApplication>
#include <QMenu>

using namespace Qt::StringLiterals;

ContextMenus::ContextMenus(Frame &frame, CommandTable &commands, QObject *parent)
    : QObject(parent)
    , m_frame(frame)
    , m_commands(commands)
{
}

void ContextMenus::follow(BrowserWindow &window)
{
    connect(&window, &BrowserWindow::menuWanted, this,
            [this, &window](const ContextTarget &target) { open(window, target); });
    const auto isOver = [this, &window] {
        if (m_window == &window)
            close();
    };
    connect(&window, &BrowserWindow::menuOver, this, isOver);
    connect(&window, &QObject::destroyed, this, isOver);
}

void ContextMenus::close()
{
    m_window = nullptr;
    if (QMenu *menu = m_menu) {
        m_menu.clear();
        menu->close();
    }
}

void ContextMenus::open(BrowserWindow &window, const ContextTarget &target)
{
    close();
    m_window = &window;
    // A page that fills the screen is a window of its own, and above the frame.
    QWidget *above = QApplication::activeWindow();
    m_menu = new QMenu(above ? above : m_frame.window());
    m_menu->setObjectName("mnuPage"_L1);
    m_menu->setAttribute(Qt::WA_DeleteOnClose);
    bool isGap = false;
    for (const ContextEntry &entry : contextTable()) {
        if (entry.item.kind == MenuEntry::Kind::Separator) {
            isGap = !m_menu->isEmpty();
        } else if (entry.stands(target)) {
            if (isGap)
                m_menu->addSeparator();
            isGap = false;
            addLine(*m_menu, entry, window, target);
        }
    }
    if (m_menu->isEmpty())
        delete m_menu;
    else
        m_menu->popup(target.place);
}

void ContextMenus::addLine(QMenu &menu, const ContextEntry &entry, BrowserWindow &window,
                           const ContextTarget &target)
{
    const QString name = QString::fromLatin1(entry.item.name);
    const ContextCommand command = m_commands.commandAt(name);
    const ContextCommand::Place at{window, target};
    const QString caption = Texts<"PageMenu">::named(name, QString::fromUtf8(entry.item.caption));
    const QStringList captions =
        command.captions ? command.captions(at, caption) : QStringList{caption};
    for (qsizetype choice = 0; choice < captions.size(); ++choice) {
        QAction *line = menu.addAction(captions.at(choice));
        line->setObjectName(name);
        line->setEnabled((!entry.works || entry.works(target))
                         && (!command.isEnabled || command.isEnabled(at)));
        if (entry.item.kind == MenuEntry::Kind::Check) {
            line->setCheckable(true);
            line->setChecked(entry.isMarked ? entry.isMarked(target)
                                            : command.isMarked && command.isMarked(at));
        }
        connect(line, &QAction::triggered, this,
                [this, run = command.run, window = QPointer(&window), target, choice] {
                    if (!window || window->isUnloaded())
                        return;
                    // Another window may have come in front of it meanwhile.
                    if (!window->isActiveChild())
                        activateTab(m_frame, window->tabKey());
                    run({*window, target}, int(choice));
                });
    }
}
