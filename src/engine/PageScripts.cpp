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

namespace {
enum class Frames { Main, All };

QString text(const QString &name)
{
    QFile file(":/browser/"_L1 + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

void insert(QWebEngineProfile *profile, const QString &name, QWebEngineScript::ScriptWorldId world,
            Frames frames)
{
    QWebEngineScript script;
    const QString file = name + ".js"_L1;
    script.setName(name);
    // The page can read what runs in its own world.
    script.setSourceCode(world == QWebEngineScript::MainWorld ? text(file) : isolatedSource(file));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(world);
    script.setRunsOnSubFrames(frames == Frames::All);
    profile->scripts()->insert(script);
}
}

QString isolatedSource(const QString &name)
{
    return text(name).replace("%MARK%"_L1, mark());
}

void install(QWebEngineProfile *profile)
{
    insert(profile, u"frame-events"_s, QWebEngineScript::ApplicationWorld, Frames::All);
    insert(profile, u"held-forms"_s, QWebEngineScript::ApplicationWorld, Frames::All);
    insert(profile, u"script-errors"_s, QWebEngineScript::MainWorld, Frames::All);
    insert(profile, u"clipboard"_s, QWebEngineScript::MainWorld, Frames::All);
    insert(profile, u"live-connections"_s, QWebEngineScript::MainWorld, Frames::All);
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
