#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class DesktopFileDialog;
class QWidget;

/// Asks the user where a download that has begun is to go, while its bytes come in and everything
/// else goes on. The dialog closes with the object.
class PlaceQuestion : public QObject {
    Q_OBJECT

public:
    /// For the list's entry of that id, over `owner`. It opens with the next turn of the event
    /// loop.
    PlaceQuestion(const QString &id, QWidget *owner, QObject *parent);
    ~PlaceQuestion() override;

signals:
    /// Once: the entry has the place that was chosen, or nobody wants it. Where the owner goes
    /// before the user has said anything, its place stays as it was.
    void answered(bool isWanted);

private:
    void open();
    void take(const QString &path);
    void end(bool isWanted);

    QString m_id;
    QPointer<QWidget> m_owner;
    QPointer<DesktopFileDialog> m_dialog;
};
