#include "FakeSecrets.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
/// As the bus has it: (oayays).
struct Secret {
    QDBusObjectPath session;
    QByteArray parameters;
    QByteArray value;
    QString type;
};
using SecretMap = QMap<QDBusObjectPath, Secret>;
using Attributes = QMap<QString, QString>;

QDBusArgument &operator<<(QDBusArgument &argument, const Secret &secret)
{
    argument.beginStructure();
    argument << secret.session << secret.parameters << secret.value << secret.type;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, Secret &secret)
{
    argument.beginStructure();
    argument >> secret.session >> secret.parameters >> secret.value >> secret.type;
    argument.endStructure();
    return argument;
}

const QDBusObjectPath nothing(u"/"_s);
const QDBusObjectPath session(u"/org/freedesktop/secrets/session/1"_s);
const QDBusObjectPath collection(u"/org/freedesktop/secrets/collection/login"_s);

QDBusObjectPath pathOf(int number)
{
    return QDBusObjectPath(collection.path() + u'/' + QString::number(number));
}

int numberOf(const QString &path)
{
    return path.section(u'/', -1).toInt();
}

bool isPart(const Attributes &wanted, const Attributes &all)
{
    for (auto each = wanted.begin(); each != wanted.end(); ++each) {
        if (all.value(each.key()) != each.value())
            return false;
    }
    return true;
}
}
Q_DECLARE_METATYPE(Secret)
Q_DECLARE_METATYPE(SecretMap)

FakeSecrets::FakeSecrets()
{
    qDBusRegisterMetaType<Secret>();
    qDBusRegisterMetaType<SecretMap>();
    qDBusRegisterMetaType<Attributes>();
}

QString FakeSecrets::introspect(const QString &) const
{
    return {};
}

bool FakeSecrets::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    ++calls[message.member()];
    if (isSilent)
        return true;
    const bool encrypts = message.member() == "OpenSession"_L1
        && message.arguments().value(0).toString() != "plain"_L1;
    if (encrypts || isRefusing)
        return connection.send(
            message.createErrorReply(u"org.freedesktop.DBus.Error.NotSupported"_s, u"not this"_s));
    return connection.send(message.createReply(answer(message)));
}

QVariantList FakeSecrets::answer(const QDBusMessage &message)
{
    const QString name = message.member();
    if (name == "GetAll"_L1)
        return {QVariantMap()};
    if (name == "OpenSession"_L1)
        return {QVariant::fromValue(QDBusVariant(QString())), QVariant::fromValue(session)};
    if (name == "ReadAlias"_L1)
        return {QVariant::fromValue(collection)};
    if (name == "SearchItems"_L1)
        return search(message);
    if (name == "GetSecrets"_L1)
        return secrets(message);
    if (name == "CreateItem"_L1)
        return create(message);
    if (name == "Delete"_L1) {
        items.remove(numberOf(message.path()));
        return {QVariant::fromValue(nothing)};
    }
    return {};
}

QVariantList FakeSecrets::search(const QDBusMessage &message) const
{
    const auto wanted = qdbus_cast<Attributes>(message.arguments().value(0));
    QList<QDBusObjectPath> found;
    for (auto each = items.begin(); each != items.end(); ++each) {
        if (isPart(wanted, each->attributes))
            found.append(pathOf(each.key()));
    }
    return {QVariant::fromValue(found), QVariant::fromValue(QList<QDBusObjectPath>())};
}

QVariantList FakeSecrets::secrets(const QDBusMessage &message) const
{
    const auto paths = qdbus_cast<QList<QDBusObjectPath>>(message.arguments().value(0));
    SecretMap found;
    for (const QDBusObjectPath &path : paths)
        found.insert(path,
                     {session, {}, items.value(numberOf(path.path())).secret, u"text/plain"_s});
    return {QVariant::fromValue(found)};
}

QVariantList FakeSecrets::create(const QDBusMessage &message)
{
    const auto properties = qdbus_cast<QVariantMap>(message.arguments().value(0));
    const auto attributes = qdbus_cast<Attributes>(
        properties.value(u"org.freedesktop.Secret.Item.Attributes"_s).value<QDBusArgument>());
    const auto secret = qdbus_cast<Secret>(message.arguments().value(1));
    const auto same = std::find_if(items.begin(), items.end(), [&attributes](const Item &each) {
        return each.attributes == attributes;
    });
    const int number = same == items.end() ? ++m_lastNumber : same.key();
    items.insert(number, {attributes, secret.value});
    return {QVariant::fromValue(pathOf(number)), QVariant::fromValue(nothing)};
}
