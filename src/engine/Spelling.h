#pragma once

class QWebEngineProfile;
struct EngineOptions;

/// Whether and by which dictionaries the engine marks what is misspelled in the fields of pages.
namespace Spelling {
/// At any time; open pages follow. Dictionaries that are to be converted first come when they are.
void use(QWebEngineProfile *profile, const EngineOptions &options);
}
