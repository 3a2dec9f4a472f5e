#include "Pages.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 megabyte = 1'000'000;
constexpr qint64 largest = 16 * megabyte;

/// Of 1 to 16 MB, the smallest first; and those that are smaller, by name.
struct Found {
    QFileInfoList large;
    QFileInfoList others;
};

Found search()
{
    Found found;
    for (const QString &folder :
         {u"/usr/share"_s, u"/usr/lib"_s, QDir::homePath() + u"/.rustup/toolchains"_s}) {
        QDirIterator walk(folder, {u"*.html"_s, u"*.htm"_s}, QDir::Files | QDir::NoSymLinks,
                          QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            walk.next();
            const QFileInfo page = walk.fileInfo();
            if (page.size() > 0 && page.size() < megabyte)
                found.others.append(page);
            else if (page.size() >= megabyte && page.size() <= largest)
                found.large.append(page);
        }
    }
    std::sort(
        found.large.begin(), found.large.end(),
        [](const QFileInfo &one, const QFileInfo &other) { return one.size() < other.size(); });
    std::sort(found.others.begin(), found.others.end(),
              [](const QFileInfo &one, const QFileInfo &other) {
                  return one.filePath() < other.filePath();
              });
    return found;
}

const Found &pages()
{
    static const Found found = search();
    return found;
}

/// Up to `most`, from all over the list.
QFileInfoList chosen(const QFileInfoList &all, int most)
{
    const int count = qMin(most, int(all.size()));
    QFileInfoList some;
    for (int i = 0; i < count; ++i)
        some.append(all.at(count == 1 ? 0 : i * (all.size() - 1) / (count - 1)));
    return some;
}

}

namespace Pages {

QList<QByteArray> real(int most)
{
    QList<QByteArray> contents;
    for (const QFileInfo &page : chosen(pages().others, most))
        contents.append(read(page.filePath()));
    return contents;
}

QStringList large(int most)
{
    QStringList names;
    for (const QFileInfo &page : chosen(pages().large, most))
        names.append(page.filePath());
    return names;
}

QString nearest(qsizetype size)
{
    QString name;
    qint64 distance = size / 2;
    for (const QFileInfo &page : pages().large) {
        if (qAbs(page.size() - size) <= distance) {
            distance = qAbs(page.size() - size);
            name = page.filePath();
        }
    }
    return name;
}

QByteArray generated(qsizetype size)
{
    QByteArray page;
    page.reserve(size + 1000);
    for (int i = 0; page.size() < size; ++i) {
        const QByteArray number = QByteArray::number(i);
        page += "<div class=\"item item" + number + "\" id='i" + number
            + "'>\n  <a href=\"http://www.example.com/page?id=" + number + "&amp;x=1\" tabindex="
            + number + ">Entry " + number + "</a> and plain text with a = " + number
            + "\n  <!-- a note about <b>this</b> one -->\n</div>\n";
    }
    return page.left(size);
}

QString repeated(const QString &piece, qsizetype size)
{
    return piece.repeated(size / piece.size());
}

QByteArray read(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &name, const QByteArray &bytes)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(name));
}

}
