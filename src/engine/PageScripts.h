#pragma once

#include <QString>
#include <optional>

class QWebEngineProfile;

/// The script that runs in every frame of every page, out of the page's reach, and tells, through
/// marked console lines, what the engine has no signal for; and some in the page's own world that
/// help it. These hold no secret, and what comes from them is the page's word.
namespace PageScripts {
/// The secret mark of this process in front of every such line.
QString mark();
/// A script from the resources with the mark filled in; for the application's world only.
QString isolatedSource(const QString &name);
/// Puts the scripts into the profile; before the first page.
void install(QWebEngineProfile *profile);

/// What a marked line tells.
struct Line {
    /// "start", "load", "edit", "typed", "painted", "place", "retry", "back", "form",
    /// "chosen", "live" or "column".
    QString what;
    bool isMainFrame = false;
    /// The frame's address for start and load; "rich", "plain" or "none" for edit; for place what
    /// `scriptedPlace` takes; what `InsecureForms::noteForm` takes; a number for column. Place,
    /// live and column the page can make up.
    QString value;
};
/// Nothing when `message` is a line of the page itself.
std::optional<Line> parse(const QString &message);
}
