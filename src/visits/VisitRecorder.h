#pragma once

#include "Visit.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>

class VisitErasure;

/// Tells the history of the pages of one window: one a second at most, the last one always, and
/// none again that was there within half a minute and no other since. What waits to be told goes
/// with what the user deletes.
class VisitRecorder : public QObject {
    Q_OBJECT

public:
    /// Milliseconds since the beginning of 1970.
    using Clock = std::function<qint64()>;

    explicit VisitRecorder(QObject *parent = nullptr, const Clock &clock = {});
    /// With what still waits.
    ~VisitRecorder() override;

    /// A page has come, whose title is yet to be told.
    void pageCame(const QString &address);
    /// The page has another address now.
    void addressChanged(const QString &address);
    void titleChanged(const QString &title);
    /// If the page at that address comes next, it was here before: it is no visit.
    void expectReturn(const QString &address) { m_returning = address; }

private:
    void came(const Visit &visit);
    void tell();
    void drop(const VisitErasure &erasure);

    Clock m_clock;
    QTimer m_pause;
    /// Waits for the pause to end.
    std::optional<Visit> m_waiting;
    /// Told last, and when; milliseconds.
    QString m_last;
    qint64 m_lastTime = 0;
    /// Of the page now.
    QString m_address;
    QString m_title;
    QString m_returning;
};
