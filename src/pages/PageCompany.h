#pragma once

#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>

class QUrl;
class WebPage;

/// Who else can act in a page's place without the engine telling: frames of other sites in it, and
/// windows that scripts have tied to its own. What is asked for in its name may be theirs.
class PageCompany : public QObject {
    Q_OBJECT

public:
    /// Becomes the page's child.
    explicit PageCompany(WebPage &page);

    /// A frame of the page is on its way to `url`.
    void noteFrame(const QUrl &url);
    /// The page opened a window, which shows `opened`.
    void noteWindow(WebPage &opened);

    /// The page that is shown has frames of other sites, or had.
    bool hasFrames() const;
    /// A window is there that it opened.
    bool hasWindows() const;
    /// Neither frames of others are in the page, nor was it opened by one, nor is a window there
    /// that it opened.
    bool isAlone() const;

private:
    WebPage &m_page;
    /// Sites whose pages, in this window, had frames of others.
    QSet<QString> m_framing;
    QList<QPointer<WebPage>> m_opened;
    bool m_isAnyFraming = false;
};
