#pragma once

#include <QMutex>
#include <QObject>
#include <QSet>
#include <atomic>

class QWebEngineProfile;

/// Refuses cookies of other sites than the page's unless the user allows them, and tells on the
/// interface thread for which page's host something was refused.
class CookiePolicy : public QObject {
    Q_OBJECT

public:
    static CookiePolicy &instance();
    /// Before the first page of the profile.
    void install(QWebEngineProfile *profile);
    /// At any time; true unless said otherwise.
    void setRefusesThirdParty(bool refuses) { m_refuses = refuses; }

signals:
    void refused(const QString &pageHost);

private:
    CookiePolicy() = default;
    /// Called by the engine on several threads.
    void noteRefusal(const QString &pageHost);
    void tellRefusals();

    std::atomic_bool m_refuses = true;
    QMutex m_mutex;
    QSet<QString> m_untold;
};
