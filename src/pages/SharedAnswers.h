#pragma once

#include <functional>
#include <memory>

class PermissionRequest;
class QWebEnginePage;

/// Answers for an engine that gives one answer to everything that a site waits for, in all pages
/// of a profile, or to everything of one kind. So a yes is kept until all of that is allowed, and a
/// no is one to all of it: no yes ever reaches what the user was not asked about.
namespace SharedAnswers {
using Give = std::function<void(bool isAllowed)>;

/// For a request that is about to be made.
int nextNumber();
/// The engine waits for the answer to `request`, which `give` hands to it.
void add(int number, QWebEnginePage &page, const std::shared_ptr<PermissionRequest> &request,
         const Give &give);
/// What was answered already is left as it is.
void answer(int number, bool isAllowed);
/// Nothing in the page counts any more: it goes, and what it waits for with it.
void forget(QWebEnginePage &page);
}
