#pragma once

#include <QWidget>

/// Stands where a page was whose process has ended.
class CrashNotice : public QWidget {
    Q_OBJECT

public:
    explicit CrashNotice(QWidget *parent);

signals:
    void reloadPressed();
};
