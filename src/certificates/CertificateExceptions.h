#pragma once

#include "CertificateFailure.h"

#include <QObject>

/// The certificates that the user goes on with although they prove nothing: for the life of the
/// program, in memory alone. One is for a host, for that very certificate and for what was wrong
/// with it, so that another certificate, or a new flaw, is asked for anew. It is for all ports of
/// the host, as the engine does not ask again at another one.
class CertificateExceptions : public QObject {
    Q_OBJECT

public:
    /// Those of all windows but the private ones, which have their own.
    static CertificateExceptions &instance();
    explicit CertificateExceptions(QObject *parent = nullptr)
        : QObject(parent)
    {
    }

    void add(const CertificateFailure &failure);
    bool covers(const CertificateFailure &failure) const;
    /// Whether there is one for that host: what comes from it is not secure.
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
        QByteArray fingerprint;
        QSet<CertificateProblem> problems;
        bool operator==(const Exception &other) const = default;
    };
    static Exception exceptionFor(const CertificateFailure &failure);

    QList<Exception> m_known;
};
