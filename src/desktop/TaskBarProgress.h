#pragma once

#include <QTimer>

/// How far something is, on the program's button in the task bar of desktops that show it there.
/// What changes faster than such a bar is looked at is told with the last value only.
class TaskBarProgress : public QObject {
    Q_OBJECT

public:
    explicit TaskBarProgress(QObject *parent = nullptr);

    /// `share` from 0 to 1.
    void show(double share);
    void hide();

private:
    void tell();
    void tellSoon();

    QTimer m_tells;
    double m_share = -1;
    double m_told = -1;
};
