#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

class QDBusPendingCallWatcher;

/// A notification of the desktop, where the session has a service for them; each takes the place
/// of the one before. Nothing waits for the service.
class DesktopNotice : public QObject {
    Q_OBJECT

public:
    explicit DesktopNotice(QObject *parent = nullptr);

    /// Plain texts, whatever the service would take for markup. `action` is what a click does, in
    /// words.
    void show(const QString &title, const QString &text, const QString &action);

signals:
    /// The user clicked it.
    void chosen();

private:
    Q_SLOT void actionInvoked(uint number, const QString &action);
    void send(const QString &title, const QString &body, const QString &action);

    /// The service's number for the last one; 0: none yet.
    uint m_number = 0;
    bool m_listens = false;
};
