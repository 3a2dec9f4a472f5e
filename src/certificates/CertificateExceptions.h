#pragma once

#include "CertificateFailure.h"

#include <QObject>

/// The certificates that the user goes on with although they prove nothing: for the life of the
/// program, in memory alone. One is for a host and port, for that very certificate and for what
/// was wrong with it, so that another certificate, or a new flaw, is asked for anew.
class CertificateExceptions : public QObject {
    Q_OBJECT

public:
    static CertificateExceptions &instance();

    void add(const CertificateFailure &failure);
    bool covers(const CertificateFailure &failure) const;
    /// Whether there is one for any port of that host: what comes from it is not secure, as the
    /// engine, which is told of the exception, keeps it for the host as a whole.
    bool hasHost(const QUrl &url) const;
    /// The same for some hosts, as `hostOf` names them.
    bool hasOneOf(const QSet<QString> &hosts) const;
    bool isEmpty() const { return m_known.isEmpty(); }
    void clear();
    static QString hostOf(const QUrl &url);

signals:
    /// There is one more, or none any longer.
    void changed();

private:
    struct Exception {
        QString host;
        int port;
        QByteArray fingerprint;
        QSet<CertificateProblem> problems;
        bool operator==(const Exception &other) const = default;
    };
    static Exception exceptionFor(const CertificateFailure &failure);

    QList<Exception> m_known;
};
