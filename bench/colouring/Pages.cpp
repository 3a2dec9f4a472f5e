#include "Pages.h"

#include <QDirIterator>
#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 megabyte = 1'000'000;
constexpr qint64 largest = 16 * megabyte;

QFileInfoList pages()
{
    static QFileInfoList found;
    if (!found.isEmpty())
        return found;
    for (const QString &folder :
         {u"/usr/share"_s, u"/usr/lib"_s, QDir::homePath() + u"/.rustup/toolchains"_s}) {
        QDirIterator walk(folder, {u"*.html"_s, u"*.htm"_s}, QDir::Files | QDir::NoSymLinks,
                          QDirIterator::Subdirectories);
        while (walk.hasNext()) {
            walk.next();
            if (walk.fileInfo().size() >= megabyte && walk.fileInfo().size() <= largest)
                found.append(walk.fileInfo());
        }
    }
    std::sort(found.begin(), found.end(), [](const QFileInfo &one, const QFileInfo &other) {
        return one.size() < other.size();
    });
    return found;
}

}

namespace Pages {

QStringList large(int most)
{
    const QFileInfoList all = pages();
    QStringList chosen;
    const int count = qMin(most, int(all.size()));
    for (int i = 0; i < count; ++i)
        chosen.append(all.at(count == 1 ? 0 : i * (all.size() - 1) / (count - 1)).filePath());
    return chosen;
}

QString nearest(qsizetype size)
{
    QString name;
    qint64 distance = size / 2;
    for (const QFileInfo &page : pages()) {
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

}
