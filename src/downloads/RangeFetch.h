#pragma once

#include "RangeAnswer.h"
#include "WebManners.h"

#include <QFile>
#include <QObject>
#include <QTimer>
#include <QUrl>

class QNetworkReply;
class WebThread;

/// What is to be fetched.
struct RangePlan {
    QUrl address;
    WebManners manners;
    RangeAsked asked;
    /// What is there, and gets what comes; empty: only the answer is wanted, to a request for the
    /// first byte.
    QString file;
};

/// What came of it.
struct RangeEnd {
    RangeAnswer answer;
    RangeVerdict verdict;
    /// None: all came that was to come by the verdict.
    Download::Problem problem = Download::Problem::None;
    /// What server or system said.
    QString detail;
    /// Bytes in the file.
    qint64 received = 0;
};

/// One request for a file or the rest of it, and its bytes on their way to the disk. It lives in
/// the thread of such requests, which must outlive it: there it is started, stopped and deleted.
class RangeFetch : public QObject {
    Q_OBJECT

public:
    RangeFetch(WebThread &web, const RangePlan &plan);
    ~RangeFetch() override;

    void start();
    /// No more than what the system and a small buffer take comes meanwhile.
    void setPaused(bool paused);
    /// Nothing is written any more when this returns; `ended` does not come.
    void stop();

signals:
    /// Bytes are coming, or come anew.
    void answered(const RangeAnswer &answer, const RangeVerdict &verdict);
    /// A few times in a second: bytes in the file.
    void arrived(qint64 received);
    void ended(const RangeEnd &end);

private:
    void ask(const QUrl &address);
    void listen();
    void giveUp();
    RangeAnswer readAnswer() const;
    void take();
    void goOnElsewhere();
    bool open();
    void read();
    bool write(const QByteArray &bytes);
    void finish();
    RangeEnd failure() const;
    void end(const RangeEnd &end);

    WebThread &m_web;
    RangePlan m_plan;
    QNetworkReply *m_reply = nullptr;
    QFile m_file;
    RangeAnswer m_answer;
    RangeVerdict m_verdict;
    QTimer m_tells;
    /// Runs while the server has something to say.
    QTimer m_silence;
    qint64 m_received = 0;
    int m_timesSentOn = 0;
    bool m_isWriting = false;
    bool m_isPaused = false;
};
