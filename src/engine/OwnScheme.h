#pragma once

class QWebEngineProfile;

/// Has the engine show the program's own pages, from its resources, each as it comes: what is on it
/// is filled in by who knows it.
namespace OwnScheme {
/// Names the kind of address to the engine; before it starts.
void announce();
/// Before the first page of `profile`.
void install(QWebEngineProfile *profile);
}
