#include "ErrorPage.h"

#include "Language.h"
#include "PageScripts.h"
#include "ShownAddress.h"
#include "ShownHost.h"

#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPalette>
#include <QUrl>
#include <QWebEngineLoadingInfo>
#include <QWebEnginePage>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {
QString translated(const QString &key, const QString &text)
{
    return languageText(u"ErrorPage"_s, key, text);
}

/// Numbers of the engine's network errors that a user can make something of.
QString reasonFor(int code)
{
    switch (code) {
    case -6:
        return translated(u"strNoFile"_s, u"There is no file at this address."_s);
    case -10:
        return translated(u"strNoAccess"_s, u"You are not allowed to read this file."_s);
    case -101:
    case -100:
        return translated(u"strClosed"_s, u"The server ended the connection."_s);
    case -102:
        return translated(u"strRefused"_s, u"The server refused the connection."_s);
    case -105:
    case -137:
        return translated(u"strNoServer"_s, u"There is no server of this name."_s);
    case -106:
        return translated(u"strOffline"_s, u"There is no connection to the network."_s);
    case -7:
    case -118:
        return translated(u"strTimeOut"_s, u"The server took too long to answer."_s);
    case -109:
        return translated(u"strUnreachable"_s, u"The server cannot be reached."_s);
    case -310:
        return translated(u"strRedirects"_s, u"The server sends the browser round in circles."_s);
    case -324:
        return translated(u"strEmpty"_s, u"The server sent no answer."_s);
    default:
        break;
    }
    if (code <= -200 && code > -300) {
        return translated(u"strCertificate"_s,
                          u"The server could not prove that it is the one you asked for: its "
                          u"certificate is not valid. Somebody may be reading along."_s);
    }
    return translated(u"strOther"_s, u"The page could not be opened."_s);
}
}

namespace ErrorPage {

void show(QWebEnginePage *page, const QUrl &url, const QWebEngineLoadingInfo &info)
{
    const QString name = url.host().isEmpty() ? shownAddress(url) : shownHost(url.host());
    const bool isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    const QJsonObject texts{
        {u"title"_s, name},
        {u"heading"_s, translated(u"strHeading"_s, u"This page cannot be shown"_s)},
        {u"reason"_s, reasonFor(info.errorCode())},
        {u"address"_s, shownAddress(url)},
        {u"again"_s, translated(u"cmdTryAgain"_s, u"Try Again"_s)},
        {u"scheme"_s, isDark ? u"dark"_s : u"light"_s},
    };
    const QString json = QString::fromUtf8(QJsonDocument(texts).toJson(QJsonDocument::Compact));
    page->runJavaScript(PageScripts::isolatedSource(u"error-page.js"_s).replace("%TEXTS%"_L1, json),
                        QWebEngineScript::ApplicationWorld);
}

}
