#pragma once

class QWebEngineProfile;

/// Has the engine show the program's own pages, from its resources: the guide, and the start page
/// empty, for who knows what is on it to fill in.
namespace OwnScheme {
/// Names the kind of address to the engine; before it starts.
void announce();
/// Before the first page of `profile`.
void install(QWebEngineProfile *profile);
}
