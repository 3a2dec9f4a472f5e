#include "ProfileCommands.h"

#include <QAction>
#include <QApplication>
#include <QMdiSubWindow>
#include <QMenu>
#include <memory>

#include "AppFolder.h"
#include "BrowserWindow.h"
#include "CommonDialog.h"
#include "DeskFile.h"
#include "DeskPlacer.h"
#include "DeskTaker.h"
#include "DraggedUrls.h"
#include "FrameOpener.h"
#include "MainWindow.h"
#include "MdiArea.h"
#include "MsgBox.h"
#include "NotSaved.h"
#include "OpenProfiles.h"
#include "ProfileName.h"
#include "ProfilePages.h"
#include "ProfileProgress.h"
#include "RecentProfiles.h"
#include "Settings.h"
#include "Texts.h"
#include "UrlProfile.h"
#include "Yield.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int addressesFilter = 1;
constexpr int windowsFilter = 2;
constexpr Texts<"frmProfile"> texts;
constexpr Texts<"frmMain"> menuTexts;
constexpr auto pattern = " (*.orp)|*.orp"_L1;

QString plainKind()
{
    return texts.at<"Caption", "URL Profiles">() + pattern;
}

QList<BrowserWindow *> openWindows()
{
    QList<BrowserWindow *> windows = browserForms();
    windows.removeIf([](const BrowserWindow *window) { return !window->mayBeKept(); });
    return windows;
}

class ProfileCommands : public QObject {
public:
    ProfileCommands(MainWindow &frame, MdiArea &area);

private:
    void saveAs();
    void save();
    void close();
    void closeWindows(const OpenProfile &profile);
    void choose();
    bool open(const QString &file, bool quiet);
    QList<BrowserWindow *> openWindowsOf(const Desk &desk);
    void finish(DeskPlacer &placer);
    void nameItems();
    CommonDialog &dialog(const Text &title, const QString &kinds);

    MainWindow &m_frame;
    MdiArea &m_area;
    /// Made at its first use; it remembers the file name for the next one.
    std::unique_ptr<CommonDialog> m_dialog;
    ProfilePages *m_pages;
    ProfileProgress *m_progress;
    OpenProfiles *m_profiles;
    RecentProfiles *m_recent;
};

ProfileCommands::ProfileCommands(MainWindow &frame, MdiArea &area)
    : QObject(&frame)
    , m_frame(frame)
    , m_area(area)
    , m_pages(new ProfilePages(frame, this))
    , m_progress(new ProfileProgress(&frame))
    , m_profiles(new OpenProfiles(frame, area, this))
    , m_recent(new RecentProfiles(*frame.menuItem(u"mnuFileRecentProfiles"_s)->menu(), this))
{
    frame.setStatusBar(m_progress);
    frame.handle(u"mnuFileProfilesSave"_s, [this] { saveAs(); });
    frame.handle(u"mnuFileProfiles"_s, [this] { choose(); });
    frame.handle(u"mnuFileProfileSave"_s, [this] { save(); });
    frame.handle(u"mnuFileProfileClose"_s, [this] { close(); });
    frame.beforeOpening(u"mnuFile"_s, [this] { nameItems(); });
    frame.opener().setProfileOpener(
        [this](const QString &file, bool quiet) { return open(file, quiet); });
    connect(m_recent, &RecentProfiles::chosen, this,
            [this](const QString &file) { RecentProfiles::open(m_frame, file); });
    connect(m_pages, &ProfilePages::progress, m_progress, &ProfileProgress::show);
    connect(m_progress, &ProfileProgress::stopped, m_pages, &ProfilePages::stop);
}

CommonDialog &ProfileCommands::dialog(const Text &title, const QString &kinds)
{
    if (!m_dialog)
        m_dialog = std::make_unique<CommonDialog>();
    m_dialog->setFilter(kinds);
    m_dialog->setInitDir(AppFolder::path() + "/Profiles/"_L1);
    m_dialog->setDialogTitle(title());
    // Names are written as they are typed.
    m_dialog->setDefaultExt(QString());
    return *m_dialog;
}

/// The items about one profile say which.
void ProfileCommands::nameItems()
{
    const OpenProfile *profile = m_profiles->current();
    QAction *saveItem = m_frame.menuItem(u"mnuFileProfileSave"_s);
    QAction *closeItem = m_frame.menuItem(u"mnuFileProfileClose"_s);
    saveItem->setEnabled(profile);
    closeItem->setEnabled(profile);
    if (!profile) {
        saveItem->setText(menuTexts.at<"mnuFileProfileSave", "Sa&ve Profile">());
        closeItem->setText(menuTexts.at<"mnuFileProfileClose", "Close Pro&file">());
        return;
    }
    const QString name = elidedProfileName(profileName(profile->file), m_frame);
    saveItem->setText(texts.at<"mnuSave", "Sa&ve Profile \"%1\"">().replace("%1"_L1, name));
    closeItem->setText(texts.at<"mnuClose", "Close Pro&file \"%1\"">().replace("%1"_L1, name));
}

void ProfileCommands::saveAs()
{
    if (openWindows().isEmpty()) {
        QApplication::beep();
        return;
    }
    CommonDialog &saveDialog =
        dialog(texts.at<"FrameSave", "Open A URL Profile">,
               plainKind() + u'|' + texts.at<"strWithWindows", "Profile with windows">() + pattern);
    const bool wasWithWindows = Settings::profileWithWindows.read().value_or(false);
    const int confirmed =
        saveDialog.showSave(&m_frame, wasWithWindows ? windowsFilter : addressesFilter);
    const QString file = saveDialog.fileName();
    if (confirmed == 0 || file.isEmpty())
        return;
    const bool withWindows = saveDialog.filterIndex() == windowsFilter;
    const ProfileKind kind = withWindows ? ProfileKind::Windows : ProfileKind::Addresses;
    const QList<BrowserWindow *> windows = openWindows();
    if (const WriteResult result = OpenProfiles::write(file, kind, takeDesk(m_frame, windows));
        !result) {
        NotSaved::tell(&m_frame, file, result);
        return;
    }
    m_profiles->add(file, kind, windows);
    nameItems();
    RecentProfiles::add(file);
    if (withWindows != wasWithWindows)
        Settings::profileWithWindows.write(withWindows).leaveToLog();
}

void ProfileCommands::save()
{
    OpenProfile *profile = m_profiles->current();
    if (!profile)
        return;
    const QString file = profile->file;
    if (const WriteResult result = m_profiles->save(*profile); !result)
        NotSaved::tell(&m_frame, file, result);
}

void ProfileCommands::close()
{
    OpenProfile *profile = m_profiles->current();
    if (!profile)
        return;
    if (const ProfileSaved saved = m_profiles->saveChanged(*profile); !saved.result)
        NotSaved::tell(&m_frame, saved.file, saved.result);
    else
        closeWindows(*profile);
}

/// The active one last: none of the others becomes active, and loads for that, only to close.
void ProfileCommands::closeWindows(const OpenProfile &profile)
{
    QList<BrowserWindow *> windows = OpenProfiles::windowsOf(profile);
    if (BrowserWindow *active = activeBrowser(m_frame); windows.removeOne(active))
        windows.append(active);
    for (BrowserWindow *window : std::as_const(windows))
        window->close();
}

void ProfileCommands::choose()
{
    CommonDialog &openDialog = dialog(texts.at<"FrameOpen", "Open A URL Profile">, plainKind());
    if (openDialog.showOpen(&m_frame, addressesFilter) != 0)
        open(openDialog.fileName(), false);
}

bool ProfileCommands::open(const QString &file, bool quiet)
{
    if (!isProfileName(file))
        return false;
    if (UrlProfile::count(file) == 0) {
        if (!quiet)
            MsgBox::inform(&m_frame, u"Error: No URL's In Profile!"_s);
        return false;
    }
    const Desk desk = DeskFile::load(file).value_or(Desk());
    RecentProfiles::add(file);
    const QList<BrowserWindow *> windows = openWindowsOf(desk);
    // One that was not opened to its end would be saved without the rest.
    if (windows.size() == desk.windows.size())
        m_profiles->add(file, desk.hasPlaces() ? ProfileKind::Windows : ProfileKind::Addresses,
                        windows);
    nameItems();
    if (!desk.hasPlaces())
        m_frame.run(u"mnuWindowCascade"_s);
    return true;
}

/// Only the pages that are in sight come.
void ProfileCommands::finish(DeskPlacer &placer)
{
    placer.finish();
    for (BrowserWindow *window : placer.windows())
        window->waitAsleep(Waking::InSight);
}

/// Those that are there in the end.
QList<BrowserWindow *> ProfileCommands::openWindowsOf(const Desk &desk)
{
    // Otherwise each window would come up maximized, only to be cascaded or placed in the end.
    if (QMdiSubWindow *active = m_frame.activeChild(); active && active->isMaximized())
        active->showNormal();
    const int stops = m_pages->stops();
    m_pages->beginOpening(int(desk.windows.size()));
    DeskPlacer placer(m_frame, m_area, desk);
    SlicedLoop loop;
    for (qsizetype i = 0; i < desk.windows.size(); ++i) {
        BrowserWindow *window = placer.open(i);
        if (!desk.hasPlaces())
            m_pages->add(window);
        // The user may have ended this, or the program.
        if (loop.yieldWhenDue() && (m_pages->stops() != stops || !m_frame.isVisible()))
            break;
    }
    if (desk.hasPlaces() && m_frame.isVisible())
        finish(placer);
    m_pages->endOpening();
    if (!m_frame.isVisible())
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
    return placer.windows();
}

}

void registerProfileCommands(MainWindow &frame)
{
    new ProfileCommands(frame, *frame.findChild<MdiArea *>());
}
