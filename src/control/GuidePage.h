#pragma once

class QWebEnginePage;

/// The pages of the user's guide.
namespace GuidePage {
/// Has `page`, which such a page has come to, tell of the links of the guide that are clicked: the
/// engine keeps them from leading anywhere by themselves.
void letLinksLead(QWebEnginePage &page);
}
