#pragma once

#include <QImage>
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
    ~DesktopNotice() override;

    /// Plain texts, whatever the service would take for markup. `action` is what a click does, in
    /// words. `picture` stands beside them, scaled down where it is large.
    void show(const QString &title, const QString &text, const QString &action,
              const QImage &picture = {});
    /// Takes it away again; `gone` is not told then.
    void close();

signals:
    /// The user clicked it.
    void chosen();
    /// It is not to be seen any more, or never was: the user or its time ended it, or there is no
    /// service.
    void gone();

private:
    Q_SLOT void actionInvoked(uint number, const QString &action);
    Q_SLOT void notificationClosed(uint number);
    void listen();
    void noteAnswer(uint number);
    void send(const QString &title, const QString &body, const QString &action,
              const QImage &picture);

    /// The service's number for the last one; 0: none yet.
    uint m_number = 0;
    bool m_listens = false;
    /// `close` came before the service's number.
    bool m_isUnwanted = false;
};
