#include "BookmarkImport.h"
#include "BookmarkText.h"
#include "FavoriteFile.h"
#include "FileWriter.h"
#include "InternetShortcut.h"
#include "Log.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QTimeZone>

#include <chrono>
#include <filesystem>

using namespace Qt::StringLiterals;
using Reason = BookmarkProblem::Reason;

namespace {
constexpr qsizetype mostProblems = 10'000;
// A full disk or a folder that nothing can be written to, not a mishap of one file. Folders that
// can be made say nothing: there is room for them where there is none for a file.
constexpr int mostFailuresInARow = 100;
// Bytes; leaves room for a file's name in what a path may have.
constexpr qsizetype longestFolderPath = 3500;

void setFolderDate(const QString &path, qint64 date)
{
    using namespace std::chrono;
    std::error_code error;
    std::filesystem::last_write_time(QFile::encodeName(path).toStdString(),
                                     file_clock::from_sys(sys_seconds(seconds(date))), error);
    if (error)
        qCWarning(lcFiles) << "cannot date" << path << error.message().c_str();
}

bool isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

QString numbered(const QString &name, int number)
{
    return number == 1 ? name : u"%1 (%2)"_s.arg(name).arg(number);
}
}

BookmarkImport::BookmarkImport(const QString &file, const QString &root)
    : m_file(file)
{
    auto top = std::make_shared<Folder>();
    top->path = root;
    m_folders.insert(root, top);
    m_open.push_back(top);
}

BookmarkImport::~BookmarkImport() = default;

bool BookmarkImport::advance()
{
    if (m_outcome.failed)
        return false;
    if (!m_reader)
        return readFile();
    if (m_items.empty()) {
        if (m_allRead)
            return false;
        m_allRead = !m_reader->readSome();
        return true;
    }
    place(m_items.front());
    return true;
}

bool BookmarkImport::readFile()
{
    if (m_file.readSome())
        return true;
    m_outcome.failed = !m_file.isGood();
    if (!m_outcome.failed && !QDir().mkpath(m_open.front()->path)) {
        qCWarning(lcFiles) << "cannot make the folder" << m_open.front()->path;
        m_outcome.failed = true;
    }
    m_reader = std::make_unique<BookmarkReader>(
        m_file.bytes(), [this](const BookmarkItem &item) { m_items.push_back(item); },
        [this](const BookmarkProblem &problem) { skip(problem); });
    return !m_outcome.failed;
}

int BookmarkImport::percent() const
{
    if (!m_reader || m_reader->size() == 0)
        return 0;
    return static_cast<int>(100 * m_reader->position() / m_reader->size());
}

void BookmarkImport::place(const BookmarkItem &item)
{
    using Kind = BookmarkItem::Kind;
    if (item.kind == Kind::Folder)
        openFolder(item);
    else if (item.kind == Kind::EndOfFolder)
        endFolder();
    else if (!placeLink(item))
        return;
    m_items.pop_front();
}

// One try; false when the next one is to be made under another number.
bool BookmarkImport::placeLink(const BookmarkItem &item)
{
    Folder &folder = *m_open.back();
    const QString title = item.title.isEmpty() ? BookmarkText::titleOf(item.url) : item.title;
    const QString name = FavoriteFile::name(title, u"Favorite"_s);
    Name &same = folder.names[name];
    if (same.urls.contains(item.url)) {
        ++m_outcome.known;
        return true;
    }
    const QString path = folder.path + u'/' + numbered(name, same.nextNumber) + u".url"_s;
    const bool isPlain = same.nextNumber == 1 && name == title;
    if (write(path, item, isPlain ? QString() : title)) {
        ++m_outcome.links;
        ++same.nextNumber;
        same.urls.insert(item.url);
        m_failuresInARow = 0;
        return true;
    }
    if (isTaken(path)) {
        ++same.nextNumber;
        same.urls.insert(BookmarkText::address(InternetShortcut::contents(path).url));
        return false;
    }
    notWritten(item);
    return true;
}

// A new file, whole or not at all; false also when the path is taken.
bool BookmarkImport::write(const QString &path, const BookmarkItem &item, const QString &title)
{
    const QByteArray bytes = InternetShortcut::bytes(item.url, title);
    const auto writer = [&](QFileDevice &file) {
        // What is put out later would give it another date.
        if (file.write(bytes) != bytes.size() || !file.flush())
            return false;
        if (item.date > 0
            && !file.setFileTime(QDateTime::fromSecsSinceEpoch(item.date, QTimeZone::utc()),
                                 QFileDevice::FileModificationTime))
            qCWarning(lcFiles) << "cannot date" << path;
        return true;
    };
    return bool(FileWriter::create(path, writer, FileWriter::Sync::Later));
}

void BookmarkImport::openFolder(const BookmarkItem &item)
{
    const FolderPtr parent = m_open.back();
    const QString name = FavoriteFile::name(item.title, u"Folder"_s);
    if ((parent->path + u'/' + name).toUtf8().size() > longestFolderPath) {
        skip({Reason::TooDeep, item.line, name});
        m_open.push_back(parent);
        return;
    }
    FolderPtr folder = makeFolder(item, name);
    if (!folder)
        notWritten(item);
    // What is in a folder that cannot be made is not lost with it.
    m_open.push_back(folder ? folder : parent);
}

// The folder of that name, which may be there; nothing when it cannot be made.
BookmarkImport::FolderPtr BookmarkImport::makeFolder(const BookmarkItem &item, const QString &name)
{
    const QString parent = m_open.back()->path;
    for (int number = 1;; ++number) {
        const QString path = parent + u'/' + numbered(name, number);
        if (const FolderPtr known = m_folders.value(path))
            return known;
        const bool isNew = QDir().mkdir(path);
        if (!isNew && !QFileInfo(path).isDir()) {
            if (isTaken(path))
                continue;
            qCWarning(lcFiles) << "cannot make the folder" << path;
            return {};
        }
        auto folder = std::make_shared<Folder>();
        folder->path = path;
        folder->date = item.date;
        folder->isNew = isNew;
        m_folders.insert(path, folder);
        m_outcome.folders += isNew ? 1 : 0;
        return folder;
    }
}

void BookmarkImport::endFolder()
{
    if (m_open.size() < 2)
        return;
    const FolderPtr folder = m_open.back();
    m_open.pop_back();
    // What is put into a folder changes its date, so that comes last.
    if (folder->isNew && folder->date > 0 && folder != m_open.back())
        setFolderDate(folder->path, folder->date);
}

void BookmarkImport::finish()
{
    while (m_open.size() > 1)
        endFolder();
}

void BookmarkImport::skip(const BookmarkProblem &problem)
{
    ++m_outcome.skipped;
    if (m_outcome.problems.size() < mostProblems)
        m_outcome.problems.append(problem);
}

void BookmarkImport::notWritten(const BookmarkItem &item)
{
    skip({Reason::NotWritten, item.line, item.title.isEmpty() ? item.url : item.title});
    m_outcome.failed = ++m_failuresInARow >= mostFailuresInARow;
}
