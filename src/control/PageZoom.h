#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

class QEvent;
class QUrl;
class WebPage;
class WebView;

/// How large the page of a window is shown: as the user wants the pages of its site, in all windows
/// alike (`ZoomKeeper`), or as it was when it was given up, until he chooses anew.
class PageZoom : public QObject {
    Q_OBJECT

public:
    PageZoom();
    ~PageZoom() override;

    void use(WebPage *page, WebView *view, QObject *bond);
    /// There is no page, and one is to come to `url` with `factor`; 1 leaves it to the site.
    /// Returns the factor that it comes with.
    double waitAt(const QUrl &url, double factor);
    /// The one that was to come does not come.
    void forget();
    /// The page at `url` is shown from now on.
    void pageCame(const QUrl &url);

    /// Percent, rounded.
    int percent() const;
    double factor() const { return m_factor; }
    /// The user's choice, for the site from now on where it has one. Percent of the scale.
    void choose(int percent);
    /// So many steps on the scale, upwards or, below 0, downwards.
    void walk(int steps);

signals:
    void changed();

private:
    bool isPrivate() const;
    void put(double factor);
    void noteEvent(const QEvent &event);
    void followEngine();

    QPointer<WebPage> m_page;
    QString m_site;
    double m_factor = 1;
    /// Looks after the wheel was turned.
    QTimer m_look;
    int m_looksLeft = 0;
};
