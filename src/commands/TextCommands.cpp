#include "TextCommands.h"

#include "BrowserWindow.h"
#include "ContextTarget.h"
#include "ElidedAddress.h"
#include "ExecForms.h"
#include "MainWindow.h"
#include "SearchBar.h"
#include "SelectedAddress.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "SourceQuote.h"

using namespace Qt::StringLiterals;

namespace {
using Place = ContextCommand::Place;

/// Characters.
constexpr qsizetype longestQuery = 500;
constexpr qsizetype longestShownQuery = 30;
constexpr qsizetype longestShownEngine = 30;
/// Pixels.
constexpr int widestAddress = 360;

/// `text` as it stands in a menu, where "&" marks an access key.
QString plain(const QString &text)
{
    return QString(text).replace(u'&', "&&"_L1);
}

QString shortened(const QString &text, qsizetype length)
{
    return text.size() <= length ? text : QString(text.left(length - 1).trimmed() + u'\u2026');
}

QString queryOf(const Place &at)
{
    return at.target.selection.left(longestQuery).simplified();
}

QStringList searchCaption(const SearchBar &bar, const Place &at, const QString &caption)
{
    const SearchBar::Engine engine = bar.chosenEngine();
    if (engine.addressTemplate.isEmpty())
        return {};
    return {caption.arg(plain(shortened(shownText(engine.name), longestShownEngine)),
                        plain(shortened(shownText(queryOf(at)), longestShownQuery)))};
}

void search(MainWindow &frame, const SearchBar &bar, const Place &at)
{
    const QString address = bar.answerTo(queryOf(at));
    if (!address.isEmpty())
        frame.openWindowLike(at.window.privacy(), address, frame.newWindowState());
}

QStringList addressCaption(const Place &at, const QString &caption)
{
    const QUrl url = selectedAddress(at.target.selection);
    if (url.isEmpty())
        return {};
    return {caption.arg(plain(elidedAddress(shownAddress(url), at.window.fontMetrics(),
                                            widestAddress, Qt::ElideMiddle)))};
}

void registerSelection(MainWindow &frame)
{
    const auto &bar = *frame.findChild<SearchBar *>();
    frame.handleAt(u"mnuTextCopy"_s, {.run = [](const Place &at, int) {
                       ExecForms::four(*at.window.browser(), OleCmd::Copy);
                   }});
    frame.handleAt(
        u"mnuTextSearch"_s,
        {.run = [&frame, &bar](const Place &at, int) { search(frame, bar, at); },
         .captions = [&bar](const Place &at,
                            const QString &caption) { return searchCaption(bar, at, caption); }});
    frame.handleAt(u"mnuTextOpen"_s,
                   {.run =
                        [&frame](const Place &at, int) {
                            const QUrl url = selectedAddress(at.target.selection);
                            frame.openWindowLike(at.window.privacy(),
                                                 QString::fromLatin1(url.toEncoded()),
                                                 frame.newWindowState());
                        },
                    .captions = addressCaption});
    frame.handleAt(u"mnuTextQuote"_s, {.run = [](const Place &at, int) {
                       quoteInSource(at.target.selection, at.target.page, at.window.isPrivate());
                   }});
}

void handleExec(MainWindow &frame, const char *line, OleCmd command)
{
    frame.handleAt(QString::fromLatin1(line), {.run = [command](const Place &at, int) {
                       ExecForms::four(*at.window.browser(), command);
                   }});
}

void handleAct(MainWindow &frame, const char *line, PageAct act)
{
    frame.handleAt(QString::fromLatin1(line),
                   {.run = [act](const Place &at, int) { at.window.browser()->act(act); }});
}

void registerField(MainWindow &frame)
{
    handleExec(frame, "mnuFieldUndo", OleCmd::Undo);
    handleAct(frame, "mnuFieldRedo", PageAct::Redo);
    handleExec(frame, "mnuFieldCut", OleCmd::Cut);
    handleExec(frame, "mnuFieldCopy", OleCmd::Copy);
    handleExec(frame, "mnuFieldPaste", OleCmd::Paste);
    handleAct(frame, "mnuFieldPasteText", PageAct::PasteText);
    handleAct(frame, "mnuFieldDelete", PageAct::Delete);
    handleExec(frame, "mnuFieldSelectAll", OleCmd::SelectAll);
    frame.handleAt(u"mnuFieldSuggestion"_s,
                   {.run =
                        [](const Place &at, int choice) {
                            at.window.browser()->replaceWord(at.target.suggestions.value(choice));
                        },
                    .captions =
                        [](const Place &at, const QString &caption) {
                            QStringList captions;
                            for (const QString &word : at.target.suggestions)
                                captions.append(caption.arg(plain(shownText(word))));
                            return captions;
                        }});
    frame.handleAt(u"mnuFieldNoSuggestion"_s, {.run = [](const Place &, int) {}});
}
}

void registerTextCommands(MainWindow &frame)
{
    registerSelection(frame);
    registerField(frame);
}
