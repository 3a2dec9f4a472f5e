#pragma once

#include <QObject>
#include <QTimer>

class QUrl;
class WebPage;

/// Reads what a page was made from: the bytes as its server sent them, where they can be had
/// without asking for more than the page's own address (from the engine's cache, else by one more
/// request, and not even that for a page that may be the answer to a form); what an address itself
/// holds, and a local file, as they are. Tells one of its signals, once, and never inside the
/// engine; nothing where the page goes.
class SourceReader : public QObject {
    Q_OBJECT

public:
    explicit SourceReader(WebPage &page, QObject *parent);

    void start();

signals:
    /// `status` is the server's, and that of success for what no server sent.
    void came(const QByteArray &bytes, int status);
    void missing();

private:
    void readFile(const QString &name);
    void readAddress(const QUrl &url);
    void readInPage();
    void collect();
    void takeCollected(const QVariantList &answer);
    void giveUp();

    WebPage &m_page;
    QTimer m_limit;
    /// Of the script in the page.
    int m_number;
    bool m_over = false;
};
