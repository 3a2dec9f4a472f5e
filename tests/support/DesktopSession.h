#pragma once

#include "FakeSecrets.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QList>
#include <QObject>
#include <QProcess>
#include <QStringList>
#include <QVariantMap>

class QDBusMessage;

/// A service for notifications that remembers what it was asked to show.
class FakeNotifications : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    struct Notice {
        QString program;
        uint number = 0;
        uint replaced = 0;
        QString title;
        QString body;
        QStringList actions;
        bool hasPicture = false;
    };
    QList<Notice> shown;
    /// Numbers of those that the program took away again.
    QList<uint> closed;
    QStringList capabilities{QStringLiteral("body"), QStringLiteral("body-markup")};
    /// Calls are taken and never answered.
    bool isSilent = false;

public slots:
    QStringList GetCapabilities(const QDBusMessage &call);
    uint Notify(const QString &program, uint replaced, const QString &icon, const QString &title,
                const QString &body, const QStringList &actions, const QVariantMap &hints,
                int timeout);

    void CloseNotification(uint number) { closed.append(number); }

signals:
    void ActionInvoked(uint number, const QString &action);
    void NotificationClosed(uint number, uint reason);

private:
    uint m_lastNumber = 0;
};

/// The desktop's settings: whether programs are to be dark.
class FakeColours : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    /// 1: dark, 2: light.
    uint scheme = 0;
    int asked = 0;
    bool isSilent = false;
    /// The desktop changes.
    void change(uint value);

public slots:
    QDBusVariant Read(const QString &group, const QString &key, const QDBusMessage &call);

signals:
    void SettingChanged(const QString &group, const QString &key, const QDBusVariant &value);
};

/// A file manager that remembers what it was asked to show.
class FakeFileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    QList<QStringList> shown;

public slots:
    void ShowItems(const QStringList &addresses, const QString &startup);
};

/// A desktop session of a test's own: a real bus, with services that can be there or not. A program
/// knows one session for its whole life, so there is one at most.
class DesktopSession : public QObject {
    Q_OBJECT

public:
    DesktopSession();
    ~DesktopSession() override;

    bool isRunning() const { return m_bus.isConnected(); }
    void setNotifying(bool on);
    void setFileManaging(bool on);
    void setKeyring(bool on);
    void setColouring(bool on);

    FakeNotifications notifications;
    FakeFileManager files;
    FakeSecrets secrets;
    FakeColours colours;
    /// What was told of progress, in order: the task bar's entry and its properties.
    QList<QPair<QString, QVariantMap>> progress;

private slots:
    void noteProgress(const QString &entry, const QVariantMap &properties);

private:
    QProcess m_daemon;
    QDBusConnection m_bus;
};
