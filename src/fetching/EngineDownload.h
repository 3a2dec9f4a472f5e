#pragma once

#include "Download.h"
#include "Transfer.h"

#include <QPointer>
#include <QWebEngineDownloadRequest>

#include <memory>

class DownloadStage;
class PlaceQuestion;
class QWidget;

/// A download that the engine brings, into a stage. It outlasts the page that it came from, and
/// the engine's own objects: of one that it takes up again the engine tells with a new one. One
/// whose connection broke stays for the user to go on with while the engine can.
class EngineDownload : public Transfer {
    Q_OBJECT

public:
    /// Of the list's entry of that id; the stage must be valid.
    EngineDownload(const QString &id, std::unique_ptr<DownloadStage> stage);
    ~EngineDownload() override;

    QString id() const { return m_id; }
    /// Accepts the engine's request, for the first time or once more. Inside its signal.
    void accept(QWebEngineDownloadRequest &request);
    /// What has been accepted waits until the user wants it, or is cancelled.
    void hold();
    void endHold(bool isWanted);
    /// The user is asked over `owner` where it is to go. It comes in meanwhile, and has its name
    /// when both are there, the file and the answer.
    void askForPlace(QWidget *owner);
    /// Goes on with one that has failed. False where the engine cannot, and then the stage is there
    /// for whoever can.
    bool goOn();

    void pause() override;
    void resume() override;
    void cancel() override;
    void leave() override;

private:
    void watch();
    void update();
    void noteProgress();
    void settle();
    void noteWhole(Download::State state);
    Transfer *complete();
    void fail();
    void giveUp();
    bool hasBytes() const;
    bool isCompleted() const;
    bool isInterrupted() const;
    void endQuestion(bool isWanted);
    void end();

    QString m_id;
    std::unique_ptr<DownloadStage> m_stage;
    QPointer<QWebEngineDownloadRequest> m_request;
    /// While the user has not said where it is to go.
    QPointer<PlaceQuestion> m_question;
    bool m_isHeld = false;
};
