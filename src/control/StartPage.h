#pragma once

#include <QJsonObject>

class QString;
class QWebEnginePage;

/// What can be gone on to at the start, known to who has the favorites, the profiles and the
/// windows.
class StartParts {
public:
    virtual ~StartParts() = default;
    /// As the script of the start page takes it. Asked for each time.
    virtual QJsonObject contents() const = 0;
    /// The user chose an entry of a group of that kind, or searched. Never inside the engine.
    virtual void choose(const QString &kind, const QString &value) = 0;
};

/// The program's own page of what can be gone on to.
namespace StartPage {
/// From now on; null: there is nothing to offer.
void setParts(StartParts *parts);
/// Fills the start page, which has come to `page`.
void fill(QWebEnginePage *page);
/// Offers the same below the error of a home page that could not be reached.
void offerBelowError(QWebEnginePage *page);
/// `choice` is what a page of ours told of. Inside the engine too.
void choose(const QString &choice);
}
