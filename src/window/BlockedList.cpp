#include "BlockedList.h"

#include "AppFolder.h"
#include "FileUpdate.h"
#include "LikeList.h"
#include "TextEncoding.h"

using namespace Qt::StringLiterals;

namespace {

struct BlockedList {
    QStringList lines;
    /// The lines that are not empty.
    LikeList patterns;
};

BlockedList &inForce()
{
    static BlockedList list;
    return list;
}

/// The pieces between line ends; a CR that no LF follows is part of its line.
QStringList linesOf(const QString &text)
{
    QStringList lines = text.split(u'\n');
    for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
        if (lines.at(i).endsWith(u'\r'))
            lines[i].chop(1);
    }
    return lines;
}

}

QString popupURLsFile()
{
    return AppFolder::appData(u"PopupURLs.txt"_s);
}

void loadBlockedList()
{
    BlockedList &list = inForce();
    const std::optional<QByteArray> bytes = FileUpdate::readAll(popupURLsFile());
    list.lines = linesOf(bytes ? TextEncoding::decode(*bytes) : QString());
    list.patterns.clear();
    for (const QString &line : std::as_const(list.lines)) {
        if (!line.isEmpty())
            list.patterns.append(line);
    }
}

const QStringList &blockedList()
{
    return inForce().lines;
}

bool hasPopupPatterns()
{
    return inForce().patterns.size() > 0;
}

bool isPopupAllowed(const QString &url, bool &cancel)
{
    if (inForce().patterns.firstMatch(url) < 0)
        return true;
    cancel = true;
    return false;
}

WriteResult saveBlockedList(const QStringList &entries)
{
    QString text;
    for (const QString &entry : entries) {
        if (!entry.isEmpty())
            text += entry + "\r\n"_L1;
    }
    return FileUpdate::change(popupURLsFile(), [&text](const QByteArray &old) {
        return std::optional(TextEncoding::encode(text, TextEncoding::detect(old)));
    });
}
