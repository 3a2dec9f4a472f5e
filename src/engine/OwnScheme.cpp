#include "OwnScheme.h"

#include "Language.h"
#include "OwnPages.h"

#include <QFile>
#include <QUrl>
#include <QWebEngineProfile>
#include <QWebEngineUrlRequestJob>
#include <QWebEngineUrlScheme>
#include <QWebEngineUrlSchemeHandler>

using namespace Qt::StringLiterals;

namespace {
QByteArray name()
{
    return QByteArray(ownScheme.data(), ownScheme.size());
}

/// The guide is in the program's language, or in English.
QString fileOf(const QUrl &address)
{
    if (isStartPage(address))
        return u":/browser/start-page.html"_s;
    const QString page = guidePage(address) + ".html"_L1;
    const QString translated = ":/guide/%1/%2"_L1.arg(languageCode(languageName()), page);
    return QFile::exists(translated) ? translated : ":/guide/en/"_L1 + page;
}

class Pages : public QWebEngineUrlSchemeHandler {
public:
    using QWebEngineUrlSchemeHandler::QWebEngineUrlSchemeHandler;

    void requestStarted(QWebEngineUrlRequestJob *job) override
    {
        if (!isOwnPage(job->requestUrl()) || job->requestMethod() != "GET") {
            job->fail(QWebEngineUrlRequestJob::UrlNotFound);
            return;
        }
        auto *page = new QFile(fileOf(job->requestUrl()), job);
        if (page->open(QIODevice::ReadOnly))
            job->reply("text/html", page);
        else
            job->fail(QWebEngineUrlRequestJob::UrlNotFound);
    }
};
}

namespace OwnScheme {

void announce()
{
    // It is known for as long as the program runs, also to an engine that starts once more.
    if (!QWebEngineUrlScheme::schemeByName(name()).name().isEmpty())
        return;
    QWebEngineUrlScheme scheme(name());
    scheme.setSyntax(QWebEngineUrlScheme::Syntax::Path);
    // Pages of other kinds may not even link there, and it reads nothing, itself neither.
    scheme.setFlags(QWebEngineUrlScheme::LocalScheme | QWebEngineUrlScheme::NoAccessAllowed);
    QWebEngineUrlScheme::registerScheme(scheme);
}

void install(QWebEngineProfile *profile)
{
    profile->installUrlSchemeHandler(name(), new Pages(profile));
}

}
