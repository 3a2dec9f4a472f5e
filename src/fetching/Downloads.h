#pragma once

#include <QString>

/// What pages hand over as files goes to the user's download folder under a free name, which no
/// server, page or address chooses without `FileName`; the list of downloads shows it.
class QUrl;
class WebPage;

namespace Downloads {
/// For every profile that is made from now on.
void install();

/// Goes on with the list's entry of that id, which has failed, where the engine can. False where it
/// cannot: then nothing of the engine's is in the entry's stage any more.
bool goOn(const QString &id);
/// Has the engine bring the entry, which is over, from its beginning, into a new stage. What the
/// entry says of its problem stays, and so does the stage that it names, which is the caller's.
/// False where its address does not bring it.
bool beginAnew(const QString &id);
/// Brings what a server has at `url`, which the page's menu was told to save; the user says where
/// it goes when it comes. Nothing that the page does meanwhile is taken for it.
void saveAs(const WebPage &page, const QUrl &url);
/// The program ends: what can be continued stays on the disk. Before the profile goes.
void leaveAll();
}
