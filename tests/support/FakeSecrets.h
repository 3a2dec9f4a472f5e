#pragma once

#include <QDBusVirtualObject>
#include <QHash>
#include <QList>
#include <QMap>
#include <QString>

/// A keyring of the desktop, as its bus shows it: with one collection, which is open or locked.
/// Secrets go unencrypted, which libraries take where a service can do no better.
class FakeSecrets : public QDBusVirtualObject {
    Q_OBJECT

public:
    struct Item {
        QMap<QString, QString> attributes;
        QByteArray secret;
    };

    /// By their numbers.
    QMap<int, Item> items;
    /// Calls are taken and never answered, as while the keyring's own user is asked for its word.
    bool isSilent = false;
    /// Nothing is taken.
    bool isRefusing = false;
    /// Calls so far, by their names.
    QHash<QString, int> calls;

    static QString service() { return QStringLiteral("org.freedesktop.secrets"); }
    static QString path() { return QStringLiteral("/org/freedesktop/secrets"); }

    FakeSecrets();

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    QVariantList answer(const QDBusMessage &message);
    QVariantList search(const QDBusMessage &message) const;
    QVariantList secrets(const QDBusMessage &message) const;
    QVariantList create(const QDBusMessage &message);

    int m_lastNumber = 0;
};
