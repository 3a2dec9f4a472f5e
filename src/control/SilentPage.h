#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>

class PageLife;
class PagePulse;

/// What becomes of a page that does not answer any more: a strip in its window, and in those of
/// all pages of its process, offers to end it. Where the user goes elsewhere it ends unasked.
class SilentPage : public QObject {
    Q_OBJECT

public:
    explicit SilentPage(PageLife &life);
    ~SilentPage() override;

    /// The user goes elsewhere by `command`. True where the page does not answer: it ends, and
    /// `command` runs when it has. One that is only being waited for ends then if it stays silent.
    bool leave(const std::function<void()> &command);
    /// He stays after all.
    void stay() { m_wayOut = {}; }

private:
    void watch(QObject *bond);
    void noteSilence();
    void ask();
    void takeBack();
    void end();
    /// The others that the same process runs.
    QList<SilentPage *> companions() const;
    QString companyText() const;
    qint64 process() const;

    PageLife &m_life;
    QPointer<PagePulse> m_pulse;
    QTimer m_patience;
    std::function<void()> m_wayOut;
};
