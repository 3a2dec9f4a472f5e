#pragma once

#include <QObject>
#include <QUrl>

class WebPage;

/// Whether a page is secure, and whether cookies of other sites were refused on it.
class PageIndicators : public QObject {
    Q_OBJECT

public:
    explicit PageIndicators(QObject *parent);
    void watch(WebPage *page);
    /// A new page is shown.
    void reset(const QUrl &url);
    /// The page's answer came over its connection (an error page of ours did not).
    void setArrived();

signals:
    void secureChanged(bool secure);
    void privacyImpacted(bool impacted);

private:
    void refresh();

    QUrl m_url;
    bool m_arrived = false;
    bool m_mixed = false;
    bool m_secure = false;
    bool m_impacted = false;
};
