#pragma once

#include "UserAct.h"

#include <QObject>
#include <QUrl>

class WebPage;
struct SchemeProgram;

/// Whether `url` is of a kind that is not opened here, and another program may be there for
/// ("mailto:").
bool isOutsideAddress(const QUrl &url);

/// What a page asks other programs of the desktop to open. Its user is asked, once for each time
/// that he does something with the page, or has had his answer remembered; what a script asks for
/// beyond that is dropped.
class OutsideRequests : public QObject {
    Q_OBJECT

public:
    struct Request {
        QUrl url;
        /// A frame of the page is to go there, and not the page.
        bool isFrame = false;
        /// The address on its way that has led there; empty: the page itself asks.
        QUrl via = {};
        /// What is on its way meanwhile, and may have led there as well as the page; empty:
        /// nothing.
        QUrl perhapsVia = {};
    };

    /// Becomes the page's child.
    explicit OutsideRequests(WebPage &page);

    /// For the page, or in place of the page that opened its window where that has shown nothing
    /// yet. Returns at once; inside the engine. False: it is dropped.
    static bool put(WebPage &page, const Request &request);

private:
    bool take(const Request &request);
    void lookFor(const Request &request);
    void decide(const Request &request, const SchemeProgram &program);
    void ask(const Request &request, const SchemeProgram &program);
    void start(const SchemeProgram &program, const QUrl &url);
    void tellNever(const QUrl &url);
    void drop();

    WebPage &m_page;
    UserAct m_act;
    /// The page may ask once more.
    bool m_mayAsk = true;
    /// One is looked up or asked about.
    bool m_isBusy = false;
    /// What is being looked up is of no interest any more where it has another number.
    int m_number = 0;
    int m_dropped = 0;
};
