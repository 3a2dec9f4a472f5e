#include "PageUploads.h"

#include "DesktopFileDialog.h"
#include "FolderCount.h"
#include "PageCompany.h"
#include "PageHold.h"
#include "PageQuestions.h"
#include "Settings.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "Texts.h"
#include "UploadFilter.h"
#include "WebPage.h"
#include "WebView.h"

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QEventLoop>
#include <QScopeGuard>
#include <memory>

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype longestName = 60;

constexpr Texts<"Upload"> texts;

/// The engine lets a page ask within some seconds of one of these.
bool isAct(const QEvent &event)
{
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::KeyPress:
    case QEvent::TouchBegin:
    case QEvent::TouchEnd:
        return true;
    default:
        return false;
    }
}

/// The engine does not tell which frame asks.
QString titleFor(bool isFolder, bool perhapsFrame)
{
    if (perhapsFrame)
        return isFolder
            ? texts.at<"strFolderPerhaps", "Choose a folder for this page or a frame in it:">()
            : texts.at<"strFilesPerhaps", "Choose files for this page or a frame in it:">();
    return isFolder ? texts.at<"strFolder", "Choose a folder for">()
                    : texts.at<"strFiles", "Choose files for">();
}

FileDialogRequest requestOf(const WebPage &page, PageUploads::Mode mode, const QStringList &types)
{
    using Kind = FileDialogRequest::Kind;
    FileDialogRequest request;
    const QWidget *view = QWebEngineView::forPage(&page);
    request.owner = view ? view->window() : nullptr;
    const bool isFolder = mode == QWebEnginePage::FileSelectUploadFolder;
    request.title =
        titleFor(isFolder, page.company().hasFrames()) + u' ' + shownSite(page.committedUrl());
    request.kind = mode == QWebEnginePage::FileSelectOpenMultiple ? Kind::OpenSeveral : Kind::Open;
    if (isFolder)
        request.kind = Kind::Folder;
    else
        request.filters = uploadFilters(types);
    const QString last = Settings::uploadFolder.read();
    request.initDir = QFileInfo(last).isDir() ? last : QDir::homePath();
    return request;
}
}

PageUploads::PageUploads(WebPage &page)
    : QObject(&page)
    , m_page(page)
{
    connect(&page, &WebPage::userActed, this, [this] { m_mayAsk = true; });
    if (auto *view = qobject_cast<WebView *>(QWebEngineView::forPage(&page)))
        connect(view, &WebView::eventCame, this, [this](const QEvent &event) {
            if (!m_isChoosing && isAct(event))
                m_mayAsk = true;
        });
}

QStringList PageUploads::choose(Mode mode, const QStringList &types)
{
    if (m_isChoosing || !std::exchange(m_mayAsk, false) || !m_page.questions()
        || m_page.questions()->isSilenced() || mode == QWebEnginePage::FileSelectSave)
        return {};
    const PageHold hold(&m_page, PageHold::AtExit::Stays);
    m_isChoosing = true;
    const auto done = qScopeGuard([this] { m_isChoosing = false; });
    const bool isFolder = mode == QWebEnginePage::FileSelectUploadFolder;
    const QStringList chosen = askForFiles(mode, types);
    const QStringList files = isFolder ? chosen : readable(chosen);
    if (files.isEmpty())
        return {};
    noteFolder(files.first());
    if (isFolder && !mayTakeFolder(files.first()))
        return {};
    return files;
}

/// A device has no end, and who opens a pipe may wait for ever: of those a page gets none.
QStringList PageUploads::readable(const QStringList &files) const
{
    QStringList result;
    QStringList others;
    for (const QString &file : files) {
        const QFileInfo info(file);
        (info.isFile() && info.isReadable() ? result : others).append(file);
    }
    if (!others.isEmpty())
        emit m_page.told(texts.at<"strNotGiven", "Not given, as it is no file that can be read:">()
                         + u' ' + shownText(QDir::toNativeSeparators(others.first())));
    return result;
}

/// What begins may end the loop at once. False: the page went, or its window, or the program ends.
bool PageUploads::waitFor(const std::function<void(QEventLoop &loop)> &begin)
{
    enum { Answered, Gone };
    QEventLoop loop;
    // Another page's loop may run inside this one, which goes on only after that.
    const auto gone = [this, &loop] {
        dropDialog(loop);
        loop.exit(Gone);
    };
    connect(&m_page, &WebPage::arrived, &loop, gone);
    connect(&m_page, &WebPage::left, &loop, gone);
    connect(&m_page, &QWebEnginePage::renderProcessTerminated, &loop, gone);
    connect(qApp, &QCoreApplication::aboutToQuit, &loop, gone);
    // An answer that came before the loop runs would not end it.
    QMetaObject::invokeMethod(
        &loop, [&] { begin(loop); }, Qt::QueuedConnection);
    return loop.exec() == Answered;
}

QStringList PageUploads::askForFiles(Mode mode, const QStringList &types)
{
    QStringList files;
    const bool isAnswered = waitFor([&](QEventLoop &loop) {
        m_dialog = new DesktopFileDialog(requestOf(m_page, mode, types));
        connect(m_dialog, &QFileDialog::filesSelected, &loop,
                [&files](const QStringList &selected) { files = selected; });
        connect(m_dialog, &QDialog::finished, &loop, [&loop] { loop.exit(0); });
        connect(m_dialog, &QObject::destroyed, &loop, [&loop] { loop.exit(0); });
        m_dialog->show();
    });
    // Later would be after the next loop, too: meanwhile it would go on listing files, and what it
    // proposes for a name would come up alone, over the question.
    delete m_dialog;
    return isAnswered ? files : QStringList();
}

/// It may be in the middle of a question of its own. Who knows it for screen readers has to learn
/// of its end, or takes the next dialog at its place in memory for it.
void PageUploads::dropDialog(const QEventLoop &loop)
{
    if (!m_dialog)
        return;
    m_dialog->disconnect(&loop);
    m_dialog->hide();
    m_dialog->deleteLater();
}

bool PageUploads::mayTakeFolder(const QString &folder)
{
    int files = 0;
    const bool isCounted = waitFor([&](QEventLoop &loop) {
        FolderCount::of(folder, &loop, [&files, &loop](int counted) {
            files = counted;
            loop.exit(0);
        });
    });
    if (!isCounted)
        return false;
    if (files > FolderCount::most) {
        emit m_page.told(texts.at<"strTooMany", "The folder holds too many files for a page:">()
                         + u' ' + shownText(QDir::toNativeSeparators(folder)));
        return false;
    }
    return askForFolder(folder, files);
}

bool PageUploads::askForFolder(const QString &folder, int files)
{
    PageQuestion question;
    question.kind = u"upload"_s;
    question.asker = m_page.committedUrl();
    const QString name = shownText(QFileInfo(folder).fileName()).left(longestName);
    const QString what = m_page.company().hasFrames()
        ? texts.at<"strWholeFolderPerhaps",
                   "Give this page or a frame in it all files in the folder? Files:">()
        : texts.at<"strWholeFolder", "Give this page all files in the folder? Files:">();
    question.text = what + u' ' + QString::number(files) + u'\n'
        + (name.isEmpty() ? folder.left(longestName) : name);
    question.yes = texts.at<"cmdGive", "Give">();
    question.no = Texts<"PageQuestions">::at<"cmdCancel", "Cancel">();
    bool isWanted = false;
    const bool isAnswered = waitFor([&](QEventLoop &loop) {
        question.done = [&isWanted, loop = QPointer(&loop)](const PageQuestion::Reply &reply) {
            // It may be told later, when nobody waits any more.
            if (!loop)
                return;
            isWanted = reply.answer == PageQuestion::Answer::Yes;
            loop->exit(0);
        };
        if (!m_page.questions() || !m_page.questions()->ask(question))
            loop.exit(0);
    });
    if (!isAnswered && m_page.questions())
        m_page.questions()->end(question.kind);
    return isAnswered && isWanted;
}

/// Where the next dialog begins. A window that keeps no trace leaves none there either.
void PageUploads::noteFolder(const QString &path) const
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!m_page.leavesTrace() || folder == Settings::uploadFolder.read())
        return;
    Settings::write({Settings::uploadFolder.entry(folder)}).leaveToLog();
}
