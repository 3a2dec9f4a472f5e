#include "CommonDialog.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

/// The folder browser's own buffer.
constexpr int maxFolder = 260;
constexpr int maxFileTitle = 256;
constexpr QChar nul(0);

QString withoutNuls(QString text)
{
    return text.remove(nul);
}

/// The text the platform sees: what stands before the first NUL.
QString upToNul(const QString &text)
{
    const qsizetype end = text.indexOf(nul);
    return end < 0 ? text : text.left(end);
}

QList<FileDialogRequest::Filter> filterPairs(const QString &list)
{
    QList<FileDialogRequest::Filter> pairs;
    const QStringList parts = list.split(nul);
    // An empty description ends the list.
    for (qsizetype i = 0; i + 1 < parts.size() && !parts.at(i).isEmpty(); i += 2)
        pairs.append({parts.at(i), parts.at(i + 1)});
    return pairs;
}

/// What the flags of both dialogs ask for: an existing folder, and for Open an existing file.
bool mayBeTaken(FileDialogRequest::Kind kind, const QString &name)
{
    const QFileInfo info(name);
    if (info.isDir() || !info.dir().exists())
        return false;
    return kind != FileDialogRequest::Kind::Open || info.exists();
}

}

CommonDialog::CommonDialog()
    : m_file(nMaxFile, nul)
    , m_fileTitle(maxFileTitle, nul)
    , m_defaultExt(u"txt"_s)
{
}

QString CommonDialog::fileName() const
{
    return withoutNuls(m_file);
}

void CommonDialog::setFileName(const QString &name)
{
    m_file = name + nul;
}

QString CommonDialog::filter() const
{
    QString filter = m_filter;
    return filter.replace(nul, u'|');
}

void CommonDialog::setFilter(const QString &filter)
{
    m_filter = filter;
    m_filter.replace(u'|', nul).append(QString(2, nul));
}

QString CommonDialog::fileTitle() const
{
    return m_fileTitle;
}

void CommonDialog::setFileTitle(const QString &title)
{
    m_fileTitle = title;
}

QString CommonDialog::dialogTitle() const
{
    return withoutNuls(m_title);
}

void CommonDialog::setDialogTitle(const QString &title)
{
    m_title = title;
}

QString CommonDialog::initDir() const
{
    return withoutNuls(m_initDir);
}

void CommonDialog::setInitDir(const QString &folder)
{
    m_initDir = folder + nul;
}

QString CommonDialog::defaultExt() const
{
    return m_defaultExt;
}

void CommonDialog::setDefaultExt(const QString &extension)
{
    m_defaultExt = extension;
    m_defaultExt.remove(u'.');
}

int CommonDialog::filterIndex() const
{
    return m_filterIndex;
}

int CommonDialog::showOpen(QWidget *owner, int filterIndex)
{
    return show(FileDialogRequest::Kind::Open, owner, filterIndex);
}

int CommonDialog::showSave(QWidget *owner, int filterIndex)
{
    return show(FileDialogRequest::Kind::Save, owner, filterIndex);
}

int CommonDialog::show(FileDialogRequest::Kind kind, QWidget *owner, int filterIndex)
{
    m_filterIndex = filterIndex;
    const FileDialogRequest request{kind,
                                    owner,
                                    upToNul(m_title),
                                    upToNul(m_initDir),
                                    upToNul(m_file),
                                    filterPairs(m_filter),
                                    filterIndex,
                                    m_defaultExt};
    const std::optional<FileDialogAnswer> answer = askForFile(request);
    if (!answer || answer->fileName.isEmpty())
        return 0;
    const QString name = completedFileName(request, answer->fileName);
    if (name.size() >= nMaxFile || !mayBeTaken(kind, name))
        return 0;
    setFileName(name);
    m_fileTitle = QFileInfo(name).fileName().left(maxFileTitle - 1);
    m_filterIndex = answer->filterIndex;
    return 1;
}

QString CommonDialog::getFolderName(const QString &title)
{
    FileDialogRequest request;
    request.kind = FileDialogRequest::Kind::Folder;
    request.title = title;
    const std::optional<FileDialogAnswer> answer = askForFile(request);
    if (!answer || answer->fileName.size() >= maxFolder)
        return {};
    return answer->fileName;
}
