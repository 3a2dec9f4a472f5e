#include "LinkCommands.h"

#include "BrowserWindow.h"
#include "ContextTarget.h"
#include "FavoritesBar.h"
#include "LinkWindow.h"
#include "MainWindow.h"
#include "ShownAddress.h"
#include "ShownText.h"

#include <QClipboard>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace {
using Place = ContextCommand::Place;

constexpr qsizetype longestTitle = 200;

QString addressOf(const Place &at)
{
    return QString::fromLatin1(at.target.link.toEncoded());
}

/// What a favorite of the link is called at first.
QString titleOf(const Place &at)
{
    const QString text = shownText(at.target.linkText);
    return (text.isEmpty() ? shownAddress(at.target.link) : text).left(longestTitle);
}

void registerOpening(MainWindow &frame)
{
    frame.handleAt(u"mnuLinkOpen"_s, {.run = [](const Place &at, int) {
                       at.window.browser()->followLink(addressOf(at));
                   }});
    frame.handleAt(u"mnuLinkNew"_s, {.run = [&frame](const Place &at, int) {
                       frame.openWindowLike(at.window.privacy(), addressOf(at),
                                            frame.newWindowState());
                   }});
    frame.handleAt(u"mnuLinkBehind"_s, {.run = [&frame](const Place &at, int) {
                       frame.openWindowLike(at.window.privacy(), addressOf(at),
                                            WindowState::Behind);
                   }});
    frame.handleAt(u"mnuLinkPrivate"_s, {.run = [&frame](const Place &at, int) {
                       frame.openPrivateWindow(addressOf(at), frame.newWindowState());
                   }});
}

void registerLinkWindow(MainWindow &frame)
{
    auto *linkWindow = new LinkWindow(frame);
    frame.handleAt(
        u"mnuLinkWindow"_s,
        {.run = [linkWindow](const Place &at, int) { linkWindow->open(addressOf(at), at.window); },
         .isEnabled = [linkWindow](const Place &at) { return !linkWindow->is(at.window); }});
    frame.handleAt(
        u"mnuPageLinkWindow"_s,
        {.run =
             [linkWindow](const Place &at, int) {
                 linkWindow->set(linkWindow->is(at.window) ? nullptr : &at.window);
             },
         .isMarked = [linkWindow](const Place &at) { return linkWindow->is(at.window); }});
}

void registerKeeping(MainWindow &frame)
{
    frame.handleAt(u"mnuLinkSave"_s, {.run = [](const Place &at, int) {
                       at.window.browser()->act(PageAct::SaveLink);
                   }});
    auto *favorites = frame.findChild<FavoritesBar *>();
    frame.handleAt(u"mnuLinkFavorite"_s, {.run = [favorites](const Place &at, int) {
                       favorites->addPage(addressOf(at), titleOf(at));
                   }});
    frame.handleAt(u"mnuLinkCopy"_s, {.run = [](const Place &at, int) {
                       QGuiApplication::clipboard()->setText(addressOf(at));
                   }});
    frame.handleAt(u"mnuLinkCopyText"_s, {.run = [](const Place &at, int) {
                       QGuiApplication::clipboard()->setText(at.target.linkText);
                   }});
}
}

void registerLinkCommands(MainWindow &frame)
{
    registerOpening(frame);
    registerLinkWindow(frame);
    registerKeeping(frame);
}
