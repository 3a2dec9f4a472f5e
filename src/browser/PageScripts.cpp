#include "PageScripts.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QUuid>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

using namespace Qt::StringLiterals;

namespace PageScripts {

QString mark()
{
    static const QString value = u'@' + QUuid::createUuid().toString(QUuid::Id128) + u'@';
    return value;
}

QString source(const QString &name)
{
    QFile file(":/browser/"_L1 + name);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).replace("%MARK%"_L1, mark());
}

namespace {
enum class Frames { Main, All };

void insert(QWebEngineProfile *profile, const QString &name, QWebEngineScript::ScriptWorldId world,
            Frames frames)
{
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source(name + ".js"_L1));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(world);
    script.setRunsOnSubFrames(frames == Frames::All);
    profile->scripts()->insert(script);
}
}

void install(QWebEngineProfile *profile)
{
    insert(profile, u"frame-events"_s, QWebEngineScript::ApplicationWorld, Frames::All);
    insert(profile, u"script-errors"_s, QWebEngineScript::MainWorld, Frames::All);
    insert(profile, u"window-place"_s, QWebEngineScript::MainWorld, Frames::Main);
}

std::optional<Line> parse(const QString &message)
{
    if (!message.startsWith(mark()))
        return {};
    const QByteArray json = QStringView(message).mid(mark().size()).toUtf8();
    const QJsonArray fields = QJsonDocument::fromJson(json).array();
    if (fields.size() != 3)
        return {};
    return Line{fields.at(0).toString(), fields.at(1).toBool(),
                fields.at(2).toVariant().toString()};
}

}
