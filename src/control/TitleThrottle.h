#pragma once

#include <QObject>
#include <QTimer>

/// Passes a page's titles on, the first at once and a flood of them at a pace that the frame can
/// paint; the last one always arrives.
class TitleThrottle : public QObject {
    Q_OBJECT

public:
    explicit TitleThrottle(QObject *parent);
    void put(const QString &title);

signals:
    void changed(const QString &title);

private:
    void passOn();

    QTimer m_pause;
    QString m_latest;
    bool m_waiting = false;
};
