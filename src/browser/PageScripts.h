#pragma once

#include <QString>
#include <optional>

class QWebEngineProfile;

/// The script that runs in every frame of every page and tells, through marked console lines,
/// what the engine has no signal for; and one in the page's own world that helps it.
namespace PageScripts {
/// The secret mark of this process in front of every such line.
QString mark();
/// A script from the resources with the mark filled in.
QString source(const QString &name);
/// Puts the scripts into the profile; before the first page.
void install(QWebEngineProfile *profile);

/// What a marked line tells.
struct Line {
    /// "start", "load", "edit", "place", "retry" or "column".
    QString what;
    bool isMainFrame = false;
    /// The frame's address for start and load; "true" or "false" for edit; for place what
    /// `scriptedPlace` takes; a number for column.
    QString value;
};
/// Nothing when `message` is a line of the page itself.
std::optional<Line> parse(const QString &message);
}
