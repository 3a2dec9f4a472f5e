#pragma once

class QWebEngineProfile;
class WebPage;

/// The page that the next window shows: made before it is asked for, because its renderer process
/// takes its time to start.
namespace SparePage {
/// For each profile from now on: ends with it.
void install();
/// Prepares one where there is none.
void prepare();
/// A page of the profile, not shown yet, whose renderer process is on its way. Uses up the one that
/// was prepared; for a private profile none ever is.
WebPage *take(QWebEngineProfile *profile);
}
