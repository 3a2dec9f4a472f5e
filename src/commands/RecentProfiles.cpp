#include "RecentProfiles.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QMenu>

#include "DraggedUrls.h"
#include "Frame.h"
#include "IniText.h"
#include "MsgBox.h"
#include "ProfileName.h"
#include "Settings.h"
#include "ShownText.h"
#include "Texts.h"
#include "ToolTipText.h"

using namespace Qt::StringLiterals;

namespace {

/// Longer values are cut when they are read.
constexpr qsizetype longestPath = 999;

bool canBeKept(const QString &file)
{
    return isProfileName(file) && file.size() <= longestPath && IniText::oneLine(file) == file
        && file.trimmed() == file;
}

void keep(const QStringList &files)
{
    QList<IniEntry> entries;
    for (int i = 0; i < RecentProfiles::most; ++i)
        entries.append(Settings::recentProfile.entry(files.value(i), i + 1));
    Settings::write(entries).leaveToLog();
}

/// Of two with one name each says which folder it is in.
QString caption(const QString &file, const QStringList &files)
{
    const QString name = profileName(file);
    const auto alike = std::count_if(files.begin(), files.end(), [&name](const QString &other) {
        return profileName(other).compare(name, Qt::CaseInsensitive) == 0;
    });
    return alike > 1 ? name + u" \u2013 "_s + shownText(QFileInfo(file).path()) : name;
}

}

RecentProfiles::RecentProfiles(QMenu &menu, QObject *parent)
    : QObject(parent)
{
    menu.setToolTipsVisible(true);
    connect(&menu, &QMenu::aboutToShow, this, [this, &menu] { fill(menu); });
}

QStringList RecentProfiles::files()
{
    QStringList files;
    for (int i = 1; i <= most; ++i) {
        const QString file = Settings::recentProfile.read(i);
        if (canBeKept(file) && QFileInfo(file).isAbsolute() && !files.contains(file))
            files.append(file);
    }
    return files;
}

void RecentProfiles::add(const QString &file)
{
    const QString path = QFileInfo(file).absoluteFilePath();
    if (!canBeKept(path))
        return;
    QStringList list = files();
    list.removeAll(path);
    list.prepend(path);
    keep(list.first(std::min<qsizetype>(list.size(), most)));
}

void RecentProfiles::remove(const QString &file)
{
    QStringList list = files();
    if (list.removeAll(file) > 0)
        keep(list);
}

void RecentProfiles::fill(QMenu &menu)
{
    menu.clear();
    const QStringList list = files();
    for (const QString &file : list) {
        QAction *item = menu.addAction(elidedProfileName(caption(file, list), menu));
        item->setToolTip(wrappedToolTip(shownText(file)));
        connect(item, &QAction::triggered, this, [this, file] { emit chosen(file); });
    }
    if (list.isEmpty())
        menu.addAction(Texts<"frmMain">::at<"strNoOpenBrowsers", "(None)">())->setEnabled(false);
}

QStringList RecentProfiles::captions(const QStringList &files)
{
    QStringList captions;
    for (const QString &file : files)
        captions.append(caption(file, files));
    return captions;
}

void RecentProfiles::open(Frame &frame, const QString &file)
{
    if (QFileInfo::exists(file)) {
        frame.openProfile(file, false);
        return;
    }
    remove(file);
    MsgBox::inform(frame.window(),
                   Texts<"frmProfile">::at<"strGone", "This profile is not there any more:">()
                       + u'\n' + QDir::toNativeSeparators(file));
}
