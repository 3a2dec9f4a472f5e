#include "PageSaver.h"

#include "Language.h"
#include "MsgBox.h"
#include "SaveJob.h"
#include "SourceJob.h"
#include "WebPage.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QPointer>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QWebEngineScript>
#include <array>

using namespace Qt::StringLiterals;

namespace {
constexpr int longestName = 100;

struct Kind {
    const char *key;
    const char *caption;
    const char *pattern;
    const char *suffix;
};
constexpr std::array<Kind, 3> kinds{{
    {"strComplete", "Web page, complete", "*.html *.htm", "html"},
    {"strSingleFile", "Web page, single file", "*.mhtml *.mht", "mhtml"},
    {"strSourceOnly", "Web page, source only", "*.html *.htm", "html"},
}};
enum { Complete, SingleFile, SourceOnly };

QString text(const char *key, const QString &english)
{
    return GetLanguageText(u"PageSaver"_s, QString::fromLatin1(key), english);
}

QStringList filters()
{
    QStringList result;
    for (const Kind &kind : kinds)
        result.append(text(kind.key, QString::fromLatin1(kind.caption)) + " ("_L1
                      + QLatin1String(kind.pattern) + u')');
    return result;
}

int chosenKind(const QFileDialog &dialog)
{
    return qMax(0, int(dialog.nameFilters().indexOf(dialog.selectedNameFilter())));
}

QString proposedName(const QString &title)
{
    static const QRegularExpression unfit(uR"([\x00-\x1f/\\:*?"<>|]+)"_s);
    QString name = title;
    name = name.replace(unfit, u" "_s).simplified().left(longestName).trimmed();
    while (name.startsWith(u'.'))
        name.remove(0, 1);
    return name.isEmpty() ? text("strPage", u"Page"_s) : name;
}

void tellFailure(QWidget *owner, const QString &file)
{
    MsgBox::tell(owner, text("strFailed", u"The page could not be saved."_s) + u"\n\n"_s + file);
}

bool isMarkup(const QString &type)
{
    return type.isEmpty() || type == "text/html"_L1 || type == "application/xhtml+xml"_L1;
}

template <typename Job> void run(Job *job, const QString &file, QWidget *owner)
{
    QObject::connect(job, &Job::failed, owner, [owner, file] { tellFailure(owner, file); });
    job->start();
}

void save(WebPage *page, const QString &file, int kind, QWidget *owner)
{
    if (kind == SourceOnly) {
        run(new SourceJob(page, file, owner), file, owner);
        return;
    }
    const auto format = kind == SingleFile ? QWebEngineDownloadRequest::MimeHtmlSaveFormat
                                           : QWebEngineDownloadRequest::CompleteHtmlSaveFormat;
    run(new SaveJob(page, file, format, owner), file, owner);
}

/// Offers the kinds for markup, or just a file.
void offerKinds(QFileDialog *dialog, bool markup)
{
    const QStringList names =
        markup ? filters() : QStringList(text("strAllFiles", u"All files"_s) + " (*)"_L1);
    dialog->setNameFilters(names);
    if (!markup)
        return;
    const auto useSuffix = [dialog] {
        dialog->setDefaultSuffix(QLatin1String(kinds[size_t(chosenKind(*dialog))].suffix));
    };
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog, useSuffix);
    useSuffix();
}

QString firstFolder()
{
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

void openDialog(WebPage *page, QWidget *owner, bool markup)
{
    auto *dialog = new QFileDialog(owner, text("Caption", u"Save Page As"_s), firstFolder());
    dialog->setObjectName("dlgSavePage"_L1);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setFileMode(QFileDialog::AnyFile);
    offerKinds(dialog, markup);
    dialog->selectFile(proposedName(markup ? page->title() : page->url().fileName()));
    QObject::connect(page, &QObject::destroyed, dialog, &QWidget::close);
    QObject::connect(dialog, &QFileDialog::fileSelected, page,
                     [page, owner, dialog](const QString &file) {
                         save(page, file, chosenKind(*dialog), owner);
                     });
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
                        openDialog(page, owner, isMarkup(type.toString()));
                },
                Qt::QueuedConnection);
        });
}

}
