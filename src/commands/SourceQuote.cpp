#include "SourceQuote.h"

#include "Forms.h"
#include "SourceEditor.h"
#include "SourceWindow.h"

#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// Characters; the rest of a longer one is left out, and that is marked.
constexpr qsizetype longestQuote = 1'000'000;

/// The last one that was opened of that kind, or a new one.
SourceWindow *sourceWindow(bool isPrivate)
{
    SourceWindow *window = nullptr;
    const QList<QWidget *> open = Forms::named("frmSource");
    for (QWidget *each : open) {
        auto *source = qobject_cast<SourceWindow *>(each);
        if (source && source->isPrivate() == isPrivate)
            window = source;
    }
    if (!window) {
        window = new SourceWindow;
        if (isPrivate)
            window->setPrivate();
    }
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->show();
    window->raise();
    window->activateWindow();
    return window;
}

QString citeOf(const QUrl &page)
{
    if (page.scheme() != "http"_L1 && page.scheme() != "https"_L1)
        return {};
    const QString address = QString::fromLatin1(page.toEncoded(QUrl::RemoveUserInfo));
    return " cite=\""_L1 + address.toHtmlEscaped() + u'"';
}

QString markupOf(const QString &text, const QUrl &page)
{
    QString markup = "<blockquote"_L1 + citeOf(page) + ">\r\n"_L1;
    QString quoted = text.left(longestQuote);
    if (quoted.size() < text.size())
        quoted += u'\u2026';
    static const QRegularExpression lineEnd(u"[\\r\\n\\x{2028}\\x{2029}]+"_s);
    for (const QString &line : quoted.split(lineEnd)) {
        if (!line.trimmed().isEmpty())
            markup += "<p>"_L1 + line.trimmed().toHtmlEscaped() + "</p>\r\n"_L1;
    }
    return markup + "</blockquote>\r\n"_L1;
}
}

void quoteInSource(const QString &text, const QUrl &page, bool isPrivate)
{
    SourceEditor &editor = sourceWindow(isPrivate)->editor();
    // What is selected there stays.
    editor.setSelStart(editor.selStart() + editor.selLength());
    editor.setSelLength(0);
    editor.setSelText(markupOf(text, page));
}
