#include "Frame.h"

#include <QAction>

#include "Settings.h"

QAction *Frame::itemOf(const Settings::Switch &setting) const
{
    return menuItem(QString::fromLatin1(setting.menuItem));
}

bool Frame::isOn(const Settings::Switch &setting) const
{
    const QAction *item = itemOf(setting);
    return item && item->isChecked();
}

void Frame::openWindowLike(Privacy privacy, const QString &url, WindowState state)
{
    if (privacy == Privacy::Private)
        openPrivateWindow(url, state);
    else
        openBrowserWindow(url, state);
}
