#pragma once

#include "CertificateFailure.h"

#include <QObject>
#include <optional>

class CertificateExceptions;
class QWebEngineCertificateError;
class QWebEngineProfile;
class WebPage;

/// Certificates that the engine does not take for good, and what of a page came over one all the
/// same. A page whose certificate the user has let pass is loaded; everything else is refused at
/// once, so that nothing waits inside the engine: parts and frames in silence, and of the page on
/// its way it is kept why, for whoever shows that it did not come.
class PageCertificates : public QObject {
    Q_OBJECT

public:
    explicit PageCertificates(WebPage &page);

    /// What the user let pass for the pages of a profile. Those of a private one go with it.
    static CertificateExceptions &exceptions(QWebEngineProfile *profile);
    CertificateExceptions &exceptions() const;

    /// Why the page at `url`, the last one that was asked for, did not come; nothing where the
    /// network's `error` is none of certificates.
    std::optional<CertificateFailure> failureAt(const QUrl &url, int error) const;

signals:
    /// Something beside the page itself is asked for, by a document of `sender` or for one.
    void partRequested(const QUrl &url, const QUrl &sender);

private:
    void answer(QWebEngineCertificateError error);

    WebPage &m_page;
    std::optional<CertificateFailure> m_failure;
};
