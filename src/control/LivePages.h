#pragma once

class QtWebBrowser;

/// The engine controls that hold a page, so that none outlives the profile.
namespace LivePages {
void add(QtWebBrowser *browser);
void remove(QtWebBrowser *browser);
/// Takes the page from every control.
void deleteAll();
}
