#pragma once

#include <QDialog>
#include <QUrl>

class QFormLayout;
class QLabel;
class QPushButton;
class QWebEnginePage;
class Text;

/// What is known of a page: address, title, kind, size, encoding, dates and connection.
class PageProperties : public QDialog {
    Q_OBJECT

public:
    PageProperties(QWebEnginePage *page, QWidget *owner);

private:
    QLabel *addRow(const Text &caption);
    void showFacts(const QVariantMap &facts);
    void showFileFacts(const QString &file);
    void showConnection(const QUrl &url);

    QUrl m_url;
    QFormLayout *m_rows;
    QLabel *m_kind;
    QLabel *m_size;
    QLabel *m_encoding;
    QLabel *m_modified;
    QLabel *m_opened;
    QLabel *m_connection;
    QLabel *m_certificates;
    QPushButton *m_openCertificates;
};
