#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

#include "PageHold.h"

class QProgressDialog;
class QWidget;
class WebPage;

/// Saves what a page was made from, in one file: the bytes as its server sent them, where they can
/// be had without asking for more than the page's own address (from the engine's cache, else by one
/// more request unless the page may be the answer to a form), and a local file as it is. Where they
/// cannot, what the live document holds as UTF-8. The job deletes itself at the end, and keeps its
/// page until then, though its window closes.
class SourceJob : public QObject {
    Q_OBJECT

public:
    /// What is saved where the bytes cannot be had.
    enum class Otherwise {
        /// With a mark in front that makes it UTF-8 whatever the markup says of itself.
        LiveMarkup,
        /// What a page that the engine made for a text shows.
        LiveText
    };

    SourceJob(WebPage *page, const QString &file, Otherwise otherwise, QWidget *owner);
    ~SourceJob() override;

    void start();

signals:
    void saved();
    void failed();

private:
    void readInPage();
    void collect();
    void takeCollected(const QString &dataUrl);
    void useLiveContents();
    void saveLive(const QString &contents);
    void saveBytes(const QByteArray &bytes);
    void end(bool done);

    WebPage *m_page;
    PageHold m_hold;
    QPointer<QProgressDialog> m_progress;
    QTimer m_limit;
    QString m_file;
    /// Of the script in the page.
    int m_number;
    Otherwise m_otherwise;
    /// The live contents were.
    bool m_asked = false;
    /// Told, or cancelled: what comes now is too late.
    bool m_over = false;
};
