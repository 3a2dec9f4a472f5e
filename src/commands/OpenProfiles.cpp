#include "OpenProfiles.h"

#include "DeskFile.h"
#include "DeskTaker.h"
#include "FileUpdate.h"
#include "Frame.h"
#include "MdiArea.h"
#include "UrlProfile.h"

#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isThere(const QPointer<BrowserWindow> &window)
{
    return window && !window->isUnloaded();
}

QStringList addressesOf(const Desk &desk)
{
    QStringList addresses;
    for (const DeskWindow &window : desk.windows)
        addresses.append(window.address);
    return addresses;
}

bool isSame(ProfileKind kind, const Desk &a, const Desk &b)
{
    // Where the frame is on the screen is of no account.
    return kind == ProfileKind::Windows ? a.windows == b.windows && a.active == b.active
                                        : addressesOf(a) == addressesOf(b);
}

ProfileSaved keepOld(const QString &file)
{
    const std::optional<QByteArray> old = FileUpdate::readAll(file);
    if (!old)
        return {WriteResult(WriteResult::Failure::Unreadable), file};
    const QString kept = file + u'~';
    // Nobody named the file that a link there leads to.
    if (QFileInfo(kept).isSymLink())
        return {WriteResult(WriteResult::Failure::NotAllowed), kept};
    return {FileUpdate::replace(kept, *old), kept};
}

}

OpenProfiles::OpenProfiles(Frame &frame, MdiArea &area, QObject *parent)
    : QObject(parent)
    , m_frame(frame)
{
    connect(&area, &MdiArea::adopted, this, [this](QMdiSubWindow *child) {
        if (auto *window = qobject_cast<BrowserWindow *>(child))
            join(window);
    });
}

/// The window that comes is not active yet.
void OpenProfiles::join(BrowserWindow *window)
{
    const BrowserWindow *active = activeBrowser(m_frame);
    OpenProfile *profile = active && !window->isPrivate() ? find(active) : nullptr;
    if (profile)
        profile->windows.append(window);
}

OpenProfile *OpenProfiles::find(const BrowserWindow *window)
{
    const auto found =
        std::find_if(m_profiles.begin(), m_profiles.end(), [window](const OpenProfile &profile) {
            return profile.windows.contains(window);
        });
    return found == m_profiles.end() ? nullptr : &*found;
}

void OpenProfiles::forgetClosed()
{
    for (OpenProfile &profile : m_profiles)
        profile.windows.removeIf(std::not_fn(isThere));
    m_profiles.remove_if([](const OpenProfile &profile) { return profile.windows.isEmpty(); });
}

void OpenProfiles::add(const QString &file, ProfileKind kind, const QList<BrowserWindow *> &windows)
{
    OpenProfile added{QFileInfo(file).absoluteFilePath(), kind, {}, {}};
    for (BrowserWindow *window : windows) {
        if (OpenProfile *old = find(window))
            old->windows.removeAll(window);
        added.windows.append(window);
    }
    added.kept = deskOf(added);
    m_profiles.push_back(added);
    forgetClosed();
}

OpenProfile *OpenProfiles::current()
{
    forgetClosed();
    const BrowserWindow *active = activeBrowser(m_frame);
    if (OpenProfile *profile = active ? find(active) : nullptr)
        return profile;
    return m_profiles.empty() ? nullptr : &m_profiles.back();
}

QList<BrowserWindow *> OpenProfiles::windowsOf(const OpenProfile &profile)
{
    QList<BrowserWindow *> windows = browserForms();
    windows.removeIf([&profile](BrowserWindow *window) {
        return !window->mayBeKept() || !profile.windows.contains(window);
    });
    return windows;
}

Desk OpenProfiles::deskOf(const OpenProfile &profile) const
{
    return takeDesk(m_frame, windowsOf(profile));
}

WriteResult OpenProfiles::write(const QString &file, ProfileKind kind, const Desk &desk)
{
    return kind == ProfileKind::Windows ? DeskFile::save(file, desk)
                                        : UrlProfile::save(file, addressesOf(desk));
}

WriteResult OpenProfiles::save(OpenProfile &profile)
{
    const Desk now = deskOf(profile);
    const WriteResult result = write(profile.file, profile.kind, now);
    if (result)
        profile.kept = now;
    return result;
}

ProfileSaved OpenProfiles::saveChanged(OpenProfile &profile)
{
    const bool isThere = QFileInfo::exists(profile.file);
    if (isThere && isSame(profile.kind, profile.kept, deskOf(profile)))
        return {};
    if (isThere) {
        if (const ProfileSaved kept = keepOld(profile.file); !kept.result)
            return kept;
    }
    return {save(profile), profile.file};
}
