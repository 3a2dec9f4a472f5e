#pragma once

class QWebEngineProfile;
struct EngineOptions;

/// Puts the user's options into the engine. Some are taken only as the engine starts: a later
/// change of them resets the network of all pages, whose loads then hang.
namespace EngineSetup {
/// Before there is a profile.
void prepare(const EngineOptions &options);
/// Before the first page of `profile`. Options as they come leave all but its
/// languages and the spelling alone.
void start(QWebEngineProfile *profile, const EngineOptions &options);
/// At any time: what open pages and later loads take up. The rest waits for the next start.
void change(QWebEngineProfile *profile, const EngineOptions &options);
}
