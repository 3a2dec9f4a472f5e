#include "DeskFile.h"

#include "DeskKeys.h"
#include "DeskReader.h"
#include "FileUpdate.h"
#include "IniStore.h"
#include "IniText.h"
#include "TextRules.h"
#include "Twips.h"
#include "UrlProfile.h"

#include <QLocale>
#include <QStringList>

namespace {

using DeskKeys::Key;

QByteArray header(QByteArrayView name, const QByteArray &number = {})
{
    return '[' + name.toByteArray() + number + "]\r\n";
}

QByteArray line(Key key, const QByteArray &value)
{
    return DeskKeys::names[key].toByteArray() + '=' + value + "\r\n";
}

QByteArray line(Key key, int value)
{
    return line(key, QByteArray::number(value));
}

QByteArray line(Key key, bool value)
{
    return line(key, booleanText(value).toLatin1());
}

QByteArray lines(const QRect &place)
{
    if (!place.isValid())
        return {};
    return line(DeskKeys::Left, Twips::fromPixels(place.x()))
        + line(DeskKeys::Top, Twips::fromPixels(place.y()))
        + line(DeskKeys::Width, Twips::fromPixels(place.width()))
        + line(DeskKeys::Height, Twips::fromPixels(place.height()));
}

QByteArray lines(const DeskWindow &window)
{
    // The shortest text that reads as the very same number.
    const QString zoom = QString::number(window.zoom, 'g', QLocale::FloatingPointShortest);
    const QString title =
        firstCharacters(IniText::oneLine(window.title), DeskReader::longestTitle).trimmed();
    return lines(window.place) + line(DeskKeys::State, int(window.state))
        + line(DeskKeys::Order, window.order) + line(DeskKeys::ScrollX, window.scroll.x())
        + line(DeskKeys::ScrollY, window.scroll.y()) + line(DeskKeys::Zoom, zoom.toLatin1())
        + line(DeskKeys::Title, title.toUtf8()) + line(DeskKeys::Muted, window.isMuted);
}

}

namespace DeskFile {

QByteArray text(const Desk &desk)
{
    QStringList addresses;
    for (const DeskWindow &window : desk.windows)
        addresses.append(window.address);
    QByteArray result = UrlProfile::text(addresses).toUtf8();
    int number = 0;
    for (const DeskWindow &window : desk.windows)
        result += header(DeskKeys::windowSection, QByteArray::number(++number)) + lines(window);
    return result + header(DeskKeys::frameSection) + lines(desk.frame)
        + line(DeskKeys::Maximized, desk.isFrameMaximized)
        + line(DeskKeys::Active, desk.active + 1);
}

Desk read(QByteArrayView bytes)
{
    DeskReader reader(bytes);
    return reader.desk();
}

std::optional<Desk> load(const QString &path)
{
    const std::optional<QByteArray> file = readIniFile(path);
    return file ? std::optional(read(*file)) : std::nullopt;
}

WriteResult save(const QString &path, const Desk &desk)
{
    return FileUpdate::replace(path, text(desk));
}

}
