#pragma once

#include "Navigation.h"

#include <QObject>

class Listener;
class NavigationHistory;
class PageIndicators;
class PageLife;

/// Does and tells what comes out of a `Navigation`.
class NavigationTeller : public QObject {
    Q_OBJECT

public:
    NavigationTeller(PageLife &life, const Listener &listener, Navigation &state,
                     NavigationHistory &history);

    /// Whether the window lets a page, or a frame of one, be loaded.
    bool askWindow(const QUrl &url);
    void tell(const Navigation::Events &events);
    /// What is on the window stays; the status text says why `address` is not opened. `text` is how
    /// it was given; nothing is said of none.
    void tellNoPage(const QString &text, const QUrl &address);
    /// `address`, given as `text`, was to be loaded, and is not opened.
    void tellRefused(const QString &text, const QUrl &address);
    /// Becomes the status text, when what is under way has come to nothing.
    void tellText(const QString &text);
    /// The pointer is over a link to `url`, or over none.
    void tellLink(const QString &url);
    /// The page at `url` is on its way.
    void expect(const QUrl &url);
    void tellCrash();
    /// There is no page any more.
    void forgetPage();

signals:
    /// The window is about to be asked.
    void windowAsked();
    void pageCame();
    void loadEnded();

private:
    void tellOne(const Navigation::Event &event);
    void tellPage(const Navigation::Event &event);
    void tellError(const Navigation::Event &event);
    void forgetLinks(const QList<QUrl> &links);
    void tellIfNothingCame();
    void showStatus(const QString &text);

    PageLife &m_life;
    const Listener &m_listener;
    Navigation &m_state;
    NavigationHistory &m_history;
    PageIndicators *m_indicators;
    /// Comes back where the address of a link has been shown.
    QString m_status;
    /// The status text where the load under way comes to nothing.
    QString m_statusOfNothing;
};
