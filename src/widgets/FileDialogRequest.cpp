#include "FileDialogRequest.h"

#include "DesktopFileDialog.h"

#include <QFileInfo>

namespace {
FileDialogAnswerer chosenAnswerer;
}

FileDialogAnswerer setFileDialogAnswerer(const FileDialogAnswerer &answerer)
{
    return std::exchange(chosenAnswerer, answerer);
}

std::optional<FileDialogAnswer> askForFile(const FileDialogRequest &request)
{
    return chosenAnswerer ? chosenAnswerer(request) : DesktopFileDialog::ask(request);
}

QString completedFileName(const FileDialogRequest &request, const QString &name)
{
    if (request.kind == FileDialogRequest::Kind::Folder || request.defaultExt.isEmpty()
        || name.isEmpty())
        return name;
    const QFileInfo typed(name);
    if (typed.fileName().isEmpty() || typed.fileName().contains(u'.') || typed.isDir())
        return name;
    if (request.kind == FileDialogRequest::Kind::Open && typed.exists())
        return name;
    return name + u'.' + request.defaultExt;
}
