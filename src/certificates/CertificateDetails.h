#pragma once

#include <QDialog>
#include <QSslCertificate>

class QLabel;
class QListWidget;
class QTextEdit;

/// The certificates of a server, one of them as a whole, to be read, compared and copied.
class CertificateDetails : public QDialog {
    Q_OBJECT

public:
    /// `site`: whose certificates they are, as `shownSite` has it.
    CertificateDetails(const QString &site, QWidget *owner);

    /// A line above the certificates; empty: none.
    void setNote(const QString &note);
    /// The server's own first, then each one's issuer. Longer chains are cut.
    void setChain(const QList<QSslCertificate> &chain);

private:
    void showCertificate(int row);
    void copy() const;

    QLabel *m_note;
    QListWidget *m_list;
    QTextEdit *m_text;
    QList<QSslCertificate> m_chain;
};
