#include "DesktopFileDialog.h"

#include "Texts.h"

#include <QLineEdit>
#include <QMessageBox>

using namespace Qt::StringLiterals;

namespace {

/// A filter as QFileDialog reads it. Every name matches "*.*" where this system comes from, also
/// one without a dot.
QString nameFilter(const FileDialogRequest::Filter &filter)
{
    QStringList patterns = filter.patterns.split(u';', Qt::SkipEmptyParts);
    for (QString &pattern : patterns) {
        pattern = pattern.trimmed();
        if (pattern == "*.*"_L1)
            pattern = u"*"_s;
    }
    QString description = filter.description.trimmed();
    const QString shown = u'(' + filter.patterns + u')';
    if (description.endsWith(shown))
        description.chop(shown.size());
    return description.trimmed() + " ("_L1 + patterns.join(u' ') + u')';
}

}

DesktopFileDialog::DesktopFileDialog(const FileDialogRequest &request)
    : QFileDialog(request.owner)
    , m_request(request)
{
    setObjectName("CommonDialog"_L1);
    if (!request.title.isEmpty())
        setWindowTitle(request.title);
    switch (request.kind) {
    case FileDialogRequest::Kind::Open:
        setAcceptMode(AcceptOpen);
        setFileMode(ExistingFile);
        break;
    case FileDialogRequest::Kind::OpenSeveral:
        setAcceptMode(AcceptOpen);
        setFileMode(ExistingFiles);
        break;
    case FileDialogRequest::Kind::Save:
        setAcceptMode(AcceptSave);
        setFileMode(AnyFile);
        setDefaultSuffix(request.defaultExt);
        break;
    case FileDialogRequest::Kind::Folder:
        setFileMode(Directory);
        setOption(ShowDirsOnly);
        break;
    }
    applyFilters();
    applyStart();
}

void DesktopFileDialog::applyFilters()
{
    for (const FileDialogRequest::Filter &filter : m_request.filters)
        m_nameFilters.append(nameFilter(filter));
    if (m_nameFilters.isEmpty())
        return;
    setNameFilters(m_nameFilters);
    const int chosen = m_request.filterIndex - 1;
    selectNameFilter(m_nameFilters.value(chosen, m_nameFilters.constFirst()));
}

void DesktopFileDialog::applyStart()
{
    if (!m_request.initDir.isEmpty() && QFileInfo(m_request.initDir).isDir())
        setDirectory(m_request.initDir);
    if (!m_request.fileName.isEmpty())
        selectFile(m_request.fileName);
}

QString DesktopFileDialog::typedPath() const
{
    const auto *edit = findChild<QLineEdit *>(u"fileNameEdit"_s);
    const QString typed = edit ? edit->text() : QString();
    if (typed.isEmpty() || typed.contains(u'"'))
        return {};
    return QDir::isAbsolutePath(typed) ? typed : directory().absoluteFilePath(typed);
}

void DesktopFileDialog::setTypedName(const QString &name)
{
    if (auto *edit = findChild<QLineEdit *>(u"fileNameEdit"_s))
        edit->setText(name);
}

void DesktopFileDialog::accept()
{
    const QString path = typedPath();
    if (m_request.kind == FileDialogRequest::Kind::Open && !path.isEmpty()) {
        const QString completed = completedFileName(m_request, path);
        if (completed != path && QFileInfo::exists(completed))
            setTypedName(completed);
    }
    if (m_request.kind == FileDialogRequest::Kind::Save && !path.isEmpty()
        && !QFileInfo(path).dir().exists()) {
        QMessageBox::warning(
            this, windowTitle(),
            path + u'\n'
                + Texts<"CommonDialog">::at<"strNoFolder", "The folder does not exist.">());
        return;
    }
    QFileDialog::accept();
}

std::optional<FileDialogAnswer> DesktopFileDialog::ask(const FileDialogRequest &request)
{
    // The owner may go away while the dialog is open, and takes the dialog with it.
    QPointer<DesktopFileDialog> dialog = new DesktopFileDialog(request);
    const bool confirmed = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return {};
    std::optional<FileDialogAnswer> answer;
    if (confirmed && !dialog->selectedFiles().isEmpty()) {
        const qsizetype filter = dialog->m_nameFilters.indexOf(dialog->selectedNameFilter());
        answer = FileDialogAnswer{dialog->selectedFiles().constFirst(),
                                  filter < 0 ? request.filterIndex : int(filter) + 1};
    }
    delete dialog;
    return answer;
}
