#pragma once

#include <QObject>
#include <QPointer>

#include "PageHold.h"

class QProgressDialog;
class QWidget;
class SourceReader;
class WebPage;

/// Saves what a page was made from, in one file: what `SourceReader` reads, unless the server has
/// only an error for it by now. Else what the live document holds, as UTF-8. The job deletes itself
/// at the end, and keeps its page until then, though its window closes.
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
    void useLiveContents();
    void saveLive(const QString &contents);
    void saveBytes(const QByteArray &bytes);
    void end(bool done);

    WebPage *m_page;
    PageHold m_hold;
    QPointer<QProgressDialog> m_progress;
    QString m_file;
    SourceReader *m_reader;
    Otherwise m_otherwise;
    /// Told, or cancelled: what comes now is too late.
    bool m_over = false;
};
