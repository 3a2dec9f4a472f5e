#include "StartPage.h"

#include "Language.h"
#include "PageScripts.h"
#include "Texts.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QPalette>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"StartPage"> texts;

StartParts *theParts = nullptr;

void put(QWebEnginePage *page, const QString &introduction)
{
    QJsonObject shown = theParts ? theParts->contents() : QJsonObject();
    if (!shown.contains("groups"_L1))
        shown.insert("groups"_L1, QJsonArray());
    const bool isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    shown.insert("scheme"_L1, isDark ? u"dark"_s : u"light"_s);
    shown.insert("language"_L1, languageCode(languageName()));
    shown.insert("title"_L1, texts.at<"strTitle", "Start">());
    shown.insert("introduction"_L1, introduction);
    shown.insert(
        "nothing"_L1,
        texts.at<"strNothing", "Favorites, profiles and closed windows will be offered here.">());
    const QString json = QString::fromUtf8(QJsonDocument(shown).toJson(QJsonDocument::Compact));
    page->runJavaScript(
        PageScripts::isolatedSource(u"start-parts.js"_s).replace("%PARTS%"_L1, json),
        QWebEngineScript::ApplicationWorld);
}
}

namespace StartPage {

void setParts(StartParts *parts)
{
    theParts = parts;
}

void fill(QWebEnginePage *page)
{
    put(page, {});
}

void offerBelowError(QWebEnginePage *page)
{
    put(page,
        texts.at<"strHomePage",
                 "This is your home page. Until it can be reached, you can go on here:">());
}

void choose(const QString &choice)
{
    const QJsonArray fields = QJsonDocument::fromJson(choice.toUtf8()).array();
    if (fields.size() != 2)
        return;
    QTimer::singleShot(0, qApp, [fields] {
        if (theParts)
            theParts->choose(fields.at(0).toString(), fields.at(1).toString());
    });
}

}
