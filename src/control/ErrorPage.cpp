#include "ErrorPage.h"

#include "Language.h"
#include "PageScripts.h"
#include "ShownAddress.h"
#include "ShownHost.h"
#include "Texts.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPalette>
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"ErrorPage"> texts;

/// Numbers of the engine's network errors that a user can make something of.
QString reasonFor(int code, const QUrl &url)
{
    // Stopped by us, which happens to nothing of the web but forms that leave encryption; on Qt 6.8
    // what a server sent on is told as if it were a file that may not be read.
    constexpr int stopped = -20;
    constexpr int stoppedOnTheWay = -10;
    if ((code == stopped || code == stoppedOnTheWay) && url.scheme() == "http"_L1) {
        return texts.at<"strNotSent",
                        "The server wanted what you entered to be sent on over a connection that "
                        "is not encrypted, where others could read it. It was not sent there.">();
    }
    switch (code) {
    case -6:
        return texts.at<"strNoFile", "There is no file at this address.">();
    case -10:
        return texts.at<"strNoAccess", "You are not allowed to read this file.">();
    case -101:
    case -100:
        return texts.at<"strClosed", "The server ended the connection.">();
    case -102:
        return texts.at<"strRefused", "The server refused the connection.">();
    case -105:
    case -137:
        return texts.at<"strNoServer", "There is no server of this name.">();
    case -106:
        return texts.at<"strOffline", "There is no connection to the network.">();
    case -7:
    case -118:
        return texts.at<"strTimeOut", "The server took too long to answer.">();
    case -109:
        return texts.at<"strUnreachable", "The server cannot be reached.">();
    case -310:
        return texts.at<"strRedirects", "The server sends the browser round in circles.">();
    case -324:
        return texts.at<"strEmpty", "The server sent no answer.">();
    case -400:
        return texts.at<"strFormAnswer",
                        "This page is the answer to a form, and is not kept. To show it, the form "
                        "must be sent again.">();
    default:
        break;
    }
    if (code <= -200 && code > -300) {
        return texts.at<"strCertificate",
                        "The server could not prove that it is the one you asked for: its "
                        "certificate is not valid. Somebody may be reading along.">();
    }
    return texts.at<"strOther", "The page could not be opened.">();
}
}

namespace ErrorPage {

void show(QWebEnginePage *page, const QUrl &url, int error)
{
    const QString name = url.host().isEmpty() ? shownAddress(url) : shownHost(url.host());
    const bool isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    const QJsonObject shown{
        {u"language"_s, languageCode(languageName())},
        {u"title"_s, name},
        {u"heading"_s, texts.at<"strHeading", "This page cannot be shown">()},
        {u"reason"_s, reasonFor(error, url)},
        {u"address"_s, shownAddress(url)},
        {u"again"_s, texts.at<"cmdTryAgain", "Try Again">()},
        {u"scheme"_s, isDark ? u"dark"_s : u"light"_s},
    };
    const QString json = QString::fromUtf8(QJsonDocument(shown).toJson(QJsonDocument::Compact));
    page->runJavaScript(PageScripts::isolatedSource(u"error-page.js"_s).replace("%TEXTS%"_L1, json),
                        QWebEngineScript::ApplicationWorld);
}

}
