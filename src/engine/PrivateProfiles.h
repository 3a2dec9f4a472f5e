#pragma once

#include <QString>
#include <memory>

class QWebEnginePage;
class QWebEngineProfile;

/// What private windows have of the engine: a profile that nothing of is ever stored. All that are
/// open at a time share one; when the last of them has closed, the next begins with a new one.
namespace PrivateProfiles {
/// Each private window holds one.
using Session = std::shared_ptr<QWebEngineProfile>;
/// That of the private windows there are, or a new one.
Session join();

/// For what needs a profile beyond the windows: a page, a file on its way. The profile goes with
/// the next turn of the event loop after the last hold. Null for one that is not private.
std::shared_ptr<void> hold(const QWebEngineProfile *profile);

/// Numbers the private profiles of this run, from 1; 0: it is not private.
int numberOf(const QWebEngineProfile *profile);

/// How the log names the site of a page, which private ones have no name in.
QString siteForLog(const QWebEnginePage &page);
}
