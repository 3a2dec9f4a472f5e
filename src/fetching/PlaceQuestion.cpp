#include "PlaceQuestion.h"

#include "DesktopFileDialog.h"
#include "DownloadList.h"
#include "ShownAddress.h"
#include "Texts.h"

#include <QFileInfo>

namespace {
constexpr Texts<"SaveAs"> texts;

/// Where the user put the last one, of this run.
QString &lastFolder()
{
    static QString folder;
    return folder;
}

/// Whose file it is, which its name does not say.
QString titleFor(const Download &download)
{
    const QString site = download.address.scheme() == QLatin1String("data")
        ? QString()
        : shownSite(download.address);
    return site.isEmpty() ? texts.at<"Caption", "Save As">()
                          : texts.at<"strFrom", "Save As - from %1">().arg(site);
}
}

PlaceQuestion::PlaceQuestion(const QString &id, QWidget *owner, QObject *parent)
    : QObject(parent)
    , m_id(id)
    , m_owner(owner)
{
    // The engine stands still while it tells of a download.
    QMetaObject::invokeMethod(this, &PlaceQuestion::open, Qt::QueuedConnection);
}

/// The dialog may be in the middle of a question of its own.
PlaceQuestion::~PlaceQuestion()
{
    if (!m_dialog)
        return;
    m_dialog->disconnect(this);
    m_dialog->hide();
    m_dialog->deleteLater();
}

void PlaceQuestion::open()
{
    const Download *entry = downloadList().find(m_id);
    if (!entry)
        return;
    FileDialogRequest request;
    request.kind = FileDialogRequest::Kind::Save;
    request.owner = m_owner;
    request.title = titleFor(*entry);
    request.initDir = QFileInfo(lastFolder()).isDir() ? lastFolder() : entry->folder;
    request.fileName = entry->name;
    m_dialog = new DesktopFileDialog(request);
    connect(m_dialog, &QFileDialog::fileSelected, this, &PlaceQuestion::take);
    connect(m_dialog, &QDialog::rejected, this, [this] { end(false); });
    connect(m_dialog, &QObject::destroyed, this, [this] { end(true); });
    m_dialog->show();
}

/// The dialog has asked about a file that is there.
void PlaceQuestion::take(const QString &path)
{
    const QFileInfo file(path);
    lastFolder() = file.absolutePath();
    downloadList().change(m_id, [&file](Download &download) {
        download.folder = file.absolutePath();
        download.name = file.fileName();
        download.place = file.exists() ? Download::Place::Replaced : Download::Place::Chosen;
    });
    end(true);
}

void PlaceQuestion::end(bool isWanted)
{
    if (m_dialog)
        m_dialog->disconnect(this);
    emit answered(isWanted);
}
