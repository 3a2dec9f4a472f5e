#include "KeyCommands.h"

#include "AddressBox.h"
#include "KeyTable.h"
#include "KeysDialog.h"
#include "MainWindow.h"
#include "TabStrip.h"
#include "WindowMenu.h"

#include <QLineEdit>

using namespace Qt::StringLiterals;

namespace {

/// False where the address bar is not shown.
bool focusAddress(const AddressBox &bar)
{
    auto *field = bar.findChild<QLineEdit *>();
    if (!field->isVisible())
        return false;
    field->setFocus(Qt::ShortcutFocusReason);
    field->selectAll();
    return true;
}

/// `position` in the strip; the last one where it is -1.
void goToTab(Frame &frame, const TabStrip &strip, int position)
{
    const QStringList keys = strip.keys();
    const QString key = position < 0 ? keys.value(keys.size() - 1) : keys.value(position);
    if (!key.isEmpty())
        activateTab(frame, key);
}

}

void registerKeyCommands(MainWindow &frame)
{
    const auto &bar = *frame.findChild<AddressBox *>(u"brwURL1"_s);
    const auto &strip = *frame.findChild<TabStrip *>();
    frame.handle(u"cmdAddress"_s, [&frame, &bar] {
        if (!focusAddress(bar))
            frame.run(u"mnuFileOpen"_s);
    });
    frame.handle(u"cmdBlankWindow"_s, [&frame, &bar] {
        frame.run(u"mnuFileNewBlankPage"_s);
        focusAddress(bar);
    });
    frame.handle(u"mnuFileNewPrivate"_s, [&frame, &bar] {
        frame.openPrivateWindow({}, frame.newWindowState());
        focusAddress(bar);
    });
    for (const PlainCommand &command : plainCommands()) {
        if (command.number > 0)
            frame.handle(QString::fromLatin1(command.name),
                         [&frame, &strip, &command] { goToTab(frame, strip, command.number - 1); });
    }
    frame.handle(u"cmdLastWindow"_s, [&frame, &strip] { goToTab(frame, strip, -1); });
    frame.handle(u"mnuHelpKeys"_s, [&frame] { KeysDialog::showOver(frame); });
}
