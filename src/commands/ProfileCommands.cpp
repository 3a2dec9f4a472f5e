#include "ProfileCommands.h"

#include <QApplication>
#include <QMdiSubWindow>
#include <memory>

#include "AppFolder.h"
#include "BrowserWindow.h"
#include "CommonDialog.h"
#include "DraggedUrls.h"
#include "Factory.h"
#include "Forms.h"
#include "MainWindow.h"
#include "MsgBox.h"
#include "NotSaved.h"
#include "ProfilePages.h"
#include "ProfileProgress.h"
#include "Texts.h"
#include "UrlProfile.h"
#include "WebBrowser.h"
#include "Yield.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int firstFilter = 1;
constexpr Texts<"frmProfile"> texts;

/// The addresses of all browser windows, in the order in which they were loaded.
QStringList openAddresses()
{
    QStringList addresses;
    for (const BrowserWindow *window : browserForms()) {
        if (!window->isUnloaded())
            addresses.append(window->browser()->locationUrl());
    }
    return addresses;
}

class ProfileCommands : public QObject {
public:
    explicit ProfileCommands(MainWindow &frame);

private:
    void save();
    void choose();
    bool open(const QString &file, bool quiet);
    void openWindows(const QStringList &addresses);
    CommonDialog &dialog(const Text &title);

    MainWindow &m_frame;
    /// Made at its first use; it remembers the file name for the next one.
    std::unique_ptr<CommonDialog> m_dialog;
    ProfilePages *m_pages;
    ProfileProgress *m_progress;
};

ProfileCommands::ProfileCommands(MainWindow &frame)
    : QObject(&frame)
    , m_frame(frame)
    , m_pages(new ProfilePages(frame, this))
    , m_progress(new ProfileProgress(&frame))
{
    frame.setStatusBar(m_progress);
    frame.handle(u"mnuFileProfilesSave"_s, [this] { save(); });
    frame.handle(u"mnuFileProfiles"_s, [this] { choose(); });
    frame.setProfileOpener([this](const QString &file, bool quiet) { return open(file, quiet); });
    connect(m_pages, &ProfilePages::progress, m_progress, &ProfileProgress::show);
    connect(m_progress, &ProfileProgress::stopped, m_pages, &ProfilePages::stop);
}

CommonDialog &ProfileCommands::dialog(const Text &title)
{
    if (!m_dialog)
        m_dialog = std::make_unique<CommonDialog>();
    m_dialog->setFilter(texts.at<"Caption", "URL Profiles">() + " (*.orp)|*.orp"_L1);
    m_dialog->setInitDir(AppFolder::path() + "/Profiles/"_L1);
    m_dialog->setDialogTitle(title());
    // Names are written as they are typed.
    m_dialog->setDefaultExt(QString());
    return *m_dialog;
}

void ProfileCommands::save()
{
    if (browserForms().isEmpty()) {
        QApplication::beep();
        return;
    }
    CommonDialog &saveDialog = dialog(texts.at<"FrameSave", "Open A URL Profile">);
    const int confirmed = saveDialog.showSave(&m_frame, firstFilter);
    const QString file = saveDialog.fileName();
    if (confirmed == 0 || file.isEmpty())
        return;
    if (const WriteResult result = UrlProfile::save(file, openAddresses()); !result)
        NotSaved::tell(&m_frame, file, result);
}

void ProfileCommands::choose()
{
    CommonDialog &openDialog = dialog(texts.at<"FrameOpen", "Open A URL Profile">);
    if (openDialog.showOpen(&m_frame, firstFilter) != 0)
        open(openDialog.fileName(), false);
}

bool ProfileCommands::open(const QString &file, bool quiet)
{
    if (!isProfileName(file))
        return false;
    const qint32 count = UrlProfile::count(file);
    if (count == 0) {
        if (!quiet)
            MsgBox::inform(&m_frame, u"Error: No URL's In Profile!"_s);
        return false;
    }
    openWindows(UrlProfile::addresses(file, count));
    m_frame.run(u"mnuWindowCascade"_s);
    return true;
}

void ProfileCommands::openWindows(const QStringList &addresses)
{
    // Otherwise each window would come up maximized, only to be cascaded in the end.
    if (QMdiSubWindow *active = m_frame.activeChild(); active && active->isMaximized())
        active->showNormal();
    const int stops = m_pages->stops();
    m_pages->beginOpening(int(addresses.size()));
    SlicedLoop loop;
    for (const QString &address : addresses) {
        m_pages->add(openBrowserWindow(m_frame, address, WindowState::AsOthers, Loading::Later));
        // The user may have ended this, or the program.
        if (loop.yieldWhenDue() && (m_pages->stops() != stops || !m_frame.isVisible()))
            break;
    }
    m_pages->endOpening();
    if (!m_frame.isVisible())
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

}

void registerProfileCommands(MainWindow &frame)
{
    new ProfileCommands(frame);
}
