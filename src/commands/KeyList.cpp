#include "KeyList.h"

#include "Frame.h"
#include "KeyTable.h"
#include "MdiArea.h"
#include "MenuTable.h"
#include "PlaceKeys.h"
#include "Texts.h"

#include <QAction>
#include <QRegularExpression>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr Texts<"frmKeys"> texts;

QKeySequence keyOf(const char *portable)
{
    return QKeySequence(QLatin1StringView(portable), QKeySequence::PortableText);
}

/// A caption without the mark of its access key, which where letters have none stands behind it in
/// brackets, and without the dots of what asks first.
QString plain(QString caption)
{
    static const QRegularExpression behind(u"\\(&.\\)"_s);
    caption.remove(behind).remove(u'&');
    while (caption.endsWith(u'.'))
        caption.chop(1);
    return caption.trimmed();
}

QString captionOf(const Frame &frame, const QString &item)
{
    return plain(frame.menuItem(item)->text());
}

/// A menu of the menu bar opens by it, in the language shown.
bool opensMenu(const Frame &frame, const QKeySequence &key)
{
    return std::ranges::any_of(menuTable(), [&](const MenuEntry &entry) {
        return entry.depth == 0
            && key
            == QKeySequence::mnemonic(frame.menuItem(QString::fromLatin1(entry.name))->text());
    });
}

QList<QKeySequence> tableKeys(const Frame &frame, const char *command)
{
    QList<QKeySequence> keys;
    for (const KeyEntry &entry : keyTable()) {
        const QKeySequence key = keyOf(entry.key);
        if (qstrcmp(entry.command, command) == 0 && !opensMenu(frame, key))
            keys.append(key);
    }
    return keys;
}

QList<QKeySequence> areaKeys(MdiArea::Key::Act act)
{
    QList<QKeySequence> keys;
    for (const MdiArea::Key &key : MdiArea::keys()) {
        if (key.act == act)
            keys.append(keyOf(key.key));
    }
    return keys;
}

QList<QKeySequence> keysOf(const Frame &frame, const MenuEntry &entry)
{
    QList<QKeySequence> keys;
    if (entry.details.key)
        keys.append(keyOf(entry.details.key));
    keys += tableKeys(frame, entry.name);
    if (qstrcmp(entry.name, "mnuFileClose") == 0)
        keys += areaKeys(MdiArea::Key::Close);
    return keys;
}

void addPlain(QList<KeyRow> &rows, const Frame &frame, const QString &group, const char *menu)
{
    for (const PlainCommand &command : plainCommands()) {
        if (qstrcmp(command.menu, menu) != 0)
            continue;
        const QString what = (*command.caption)().replace("%1"_L1, QString::number(command.number));
        rows.append({group, what, tableKeys(frame, command.name)});
    }
    if (qstrcmp(menu, "mnuWindow") == 0) {
        using enum MdiArea::Key::Act;
        rows.append({group, texts.at<"strNextWindow", "Next window">(), areaKeys(Next)});
        rows.append(
            {group, texts.at<"strPreviousWindow", "Previous window">(), areaKeys(Previous)});
    }
}

/// An item of a submenu is named with that.
void addMenu(QList<KeyRow> &rows, const Frame &frame, std::span<const MenuEntry> entries)
{
    const QString group = captionOf(frame, QString::fromLatin1(entries.front().name));
    QString submenu;
    for (const MenuEntry &entry : entries.subspan(1)) {
        const QString name = QString::fromLatin1(entry.name);
        if (entry.kind == MenuEntry::Kind::Menu && entry.depth == 1)
            submenu = captionOf(frame, name) + u" > "_s;
        if (const QList<QKeySequence> keys = keysOf(frame, entry); !keys.isEmpty())
            rows.append(
                {group, (entry.depth > 1 ? submenu : QString()) + captionOf(frame, name), keys});
    }
    addPlain(rows, frame, group, entries.front().name);
}

KeyRow rowOf(const PlaceKeys &place)
{
    KeyRow row{plain((*place.place)()), plain((*place.what)()), {}, place.isEverywhere};
    const QList<QByteArray> keys = QByteArray(place.keys).split(' ');
    for (const QByteArray &key : keys)
        row.keys.append(keyOf(key.constData()));
    return row;
}

}

QList<KeyRow> allKeys(const Frame &frame)
{
    QList<KeyRow> rows;
    std::span<const MenuEntry> rest = menuTable();
    while (!rest.empty()) {
        std::size_t size = 1;
        while (size < rest.size() && rest[size].depth > 0)
            ++size;
        addMenu(rows, frame, rest.first(size));
        rest = rest.subspan(size);
    }
    for (const PlaceKeys &place : placeKeys())
        rows.append(rowOf(place));
    return rows;
}
