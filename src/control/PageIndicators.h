#pragma once

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QUrl>

#include "CertificateExceptions.h"

class WebPage;

/// Whether a page is secure, or proves nothing where it ought to, and whether cookies of other
/// sites were refused on it.
class PageIndicators : public QObject {
    Q_OBJECT

public:
    explicit PageIndicators(QObject *parent);

    /// The page comes over a connection of which nothing is proven, or a part of it does.
    bool isUnproven() const { return m_unproven; }
    bool isSecure() const { return m_secure; }
    void watch(WebPage *page);
    /// A page is on its way; what is refused to it before it is shown is kept for it.
    void expect(const QUrl &url);
    /// A new page is shown. `arrived`: it came over its connection, as an error page did not.
    void reset(const QUrl &url, bool arrived = false);
    /// Another page is shown, of which nothing more is known yet: it is not secure.
    void distrust();

signals:
    void secureChanged(bool secure);
    void unprovenChanged(bool unproven);
    void privacyImpacted(bool impacted);

private:
    void useExceptions(CertificateExceptions &exceptions);
    void noteRefusal(const QString &host);
    void notePart(const QUrl &url, const QUrl &sender);
    bool isUnprovenByNow() const;
    void refresh();

    /// The page's; null once they have gone with its profile.
    QPointer<CertificateExceptions> m_exceptions;
    QUrl m_url;
    QUrl m_expected;
    /// Whom the page, and perhaps the one on its way, asked for parts. What is answered late may
    /// come over a certificate that the user has let pass since.
    QSet<QString> m_partHosts;
    QSet<QString> m_partHostsEarly;
    bool m_arrived = false;
    bool m_mixed = false;
    bool m_unproven = false;
    bool m_secure = false;
    bool m_impacted = false;
    bool m_impactedEarly = false;
};
