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
void insert(QWebEngineProfile *profile, const QString &name, QWebEngineScript::ScriptWorldId world)
{
    QWebEngineScript script;
    script.setName(name);
    script.setSourceCode(source(name + ".js"_L1));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(world);
    script.setRunsOnSubFrames(true);
    profile->scripts()->insert(script);

    QWebEngineScript place;
    place.setName(u"window-place"_s);
    place.setSourceCode(source(u"window-place.js"_s));
    place.setInjectionPoint(QWebEngineScript::DocumentCreation);
    place.setWorldId(QWebEngineScript::MainWorld);
    profile->scripts()->insert(place);
}
}

void install(QWebEngineProfile *profile)
{
    insert(profile, u"frame-events"_s, QWebEngineScript::ApplicationWorld);
    insert(profile, u"script-errors"_s, QWebEngineScript::MainWorld);
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
