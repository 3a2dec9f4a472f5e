#include "StartRequest.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int version = 1;
constexpr auto privateOption = "--private"_L1;

/// Without the number of a screen, which is a part of the display.
QString withoutScreen(const QString &display)
{
    const qsizetype colon = display.lastIndexOf(u':');
    const qsizetype dot = display.indexOf(u'.', std::max<qsizetype>(colon, 0));
    return colon >= 0 && dot > colon ? display.first(dot) : display;
}
}

QStringList StartRequest::displaysHere()
{
    QStringList all;
    if (const QString wayland = qEnvironmentVariable("WAYLAND_DISPLAY"); !wayland.isEmpty())
        all.append("wayland "_L1 + wayland);
    if (const QString display = qEnvironmentVariable("DISPLAY"); !display.isEmpty())
        all.append("x11 "_L1 + withoutScreen(display));
    return all;
}

StartRequest StartRequest::ofThisStart(const QStringList &arguments)
{
    const bool isPrivate = arguments.value(0) == privateOption;
    return {arguments.mid(isPrivate ? 1 : 0).join(u' '), QDir::currentPath(), displaysHere(),
            qEnvironmentVariable("XDG_ACTIVATION_TOKEN"), isPrivate};
}

QByteArray StartRequest::bytes() const
{
    const QJsonObject object{
        {"version"_L1, version},       {"text"_L1, text},
        {"folder"_L1, folder},         {"displays"_L1, QJsonArray::fromStringList(displays)},
        {"activation"_L1, activation}, {"private"_L1, isPrivate}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

std::optional<StartRequest> StartRequest::from(const QByteArray &line)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (line.size() > largest || object["version"_L1].toInt() != version)
        return {};
    StartRequest request{object["text"_L1].toString(),
                         object["folder"_L1].toString(),
                         {},
                         object["activation"_L1].toString(),
                         object["private"_L1].toBool()};
    const QJsonArray displays = object["displays"_L1].toArray();
    for (const auto &each : displays)
        request.displays.append(each.toString());
    return QDir::isAbsolutePath(request.folder) ? std::optional(request) : std::nullopt;
}

bool StartRequest::isSeenOn(const QStringList &others) const
{
    return displays.isEmpty()
        || std::any_of(displays.cbegin(), displays.cend(),
                       [&others](const QString &each) { return others.contains(each); });
}
