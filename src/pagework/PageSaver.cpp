#include "PageSaver.h"

#include "MsgBox.h"
#include "SaveJob.h"
#include "SavePageDialog.h"
#include "SourceJob.h"
#include "Texts.h"
#include "WebPage.h"

#include <QPointer>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {
using Kind = SavePageDialog::Kind;

constexpr Texts<"PageSaver"> texts;

void tellFailure(QWidget *owner, const QString &file)
{
    MsgBox::tell(owner, texts.at<"strFailed", "The page could not be saved.">() + u"\n\n"_s + file);
}

bool isMarkup(const QString &type)
{
    return type.isEmpty() || type == "text/html"_L1 || type == "application/xhtml+xml"_L1;
}

/// What the engine shows as text of its own making, and would save as that.
bool isText(const QString &type)
{
    const QString group = type.section(u'/', 0, 0);
    return group != "image"_L1 && group != "audio"_L1 && group != "video"_L1
        && type != "application/pdf"_L1;
}

template <typename Job> void run(Job *job, const QString &file, QWidget *owner)
{
    QObject::connect(job, &Job::failed, owner, [owner, file] { tellFailure(owner, file); });
    job->start();
}

void saveSource(WebPage *page, const QString &file, SourceJob::Otherwise otherwise, QWidget *owner)
{
    run(new SourceJob(page, file, otherwise, owner), file, owner);
}

void saveByEngine(WebPage *page, const QString &file, Kind kind, QWidget *owner)
{
    const auto format = kind == Kind::SingleFile
        ? QWebEngineDownloadRequest::MimeHtmlSaveFormat
        : QWebEngineDownloadRequest::CompleteHtmlSaveFormat;
    run(new SaveJob(page, file, format, owner), file, owner);
}

void save(WebPage *page, const QString &type, const QString &file, Kind kind, QWidget *owner)
{
    if (kind == Kind::SourceOnly)
        saveSource(page, file, SourceJob::Otherwise::LiveMarkup, owner);
    else if (kind == Kind::AsItCame && isText(type))
        saveSource(page, file, SourceJob::Otherwise::LiveText, owner);
    else
        saveByEngine(page, file, kind, owner);
}

void openDialog(WebPage *page, QWidget *owner, const QString &type)
{
    const SavePageDialog::Chosen chosen =
        [type, page = QPointer(page), owner = QPointer(owner)](const QString &file, Kind kind) {
            if (page && owner)
                save(page, type, file, kind, owner);
        };
    const QByteArray encoded = page->url().fileName(QUrl::FullyEncoded).toLatin1();
    const QString name = QUrl::fromPercentEncoding(encoded);
    SavePageDialog *dialog = isMarkup(type)
        ? SavePageDialog::forMarkup(owner, page->title(), chosen)
        : SavePageDialog::forFile(owner, name, type, chosen);
    QObject::connect(page, &QObject::destroyed, dialog, &QWidget::close);
    dialog->open();
}
}

namespace PageSaver {

void open(WebPage *page, QWidget *owner)
{
    page->runJavaScript(
        u"document.contentType"_s, QWebEngineScript::ApplicationWorld,
        [page = QPointer(page), owner = QPointer(owner->window())](const QVariant &type) {
            if (!page || !owner)
                return;
            // The engine waits for this to return.
            QMetaObject::invokeMethod(
                page.data(),
                [page, owner, type] {
                    if (owner)
                        openDialog(page, owner, type.toString());
                },
                Qt::QueuedConnection);
        });
}

}
