#pragma once

#include <QString>
#include <optional>

class QUrl;

/// Who asks for a permission: a page, or a frame in a page of another site. Sites are scheme, host
/// and a port that is not the scheme's own, as the network writes them.
struct AskingSite {
    /// Empty for whoever has no site of the web, such as a file of this machine.
    QString asker;
    /// That of the page around it; empty where it is the asker's own.
    QString page;
    /// The page around it has no site, or none that is known.
    bool isPageUnknown = false;

    /// For what the engine says who asks, and the address of the page that is shown.
    static AskingSite of(const QUrl &asker, const QUrl &page);
    /// Reads what `name` wrote; nothing for any other text.
    static std::optional<AskingSite> fromName(const QString &name);

    /// Both as one word or two, which a section of a file can be called.
    QString name() const;
    /// An answer can be kept for it.
    bool canBeKept() const { return !asker.isEmpty() && !isPageUnknown; }

    bool operator==(const AskingSite &) const = default;
};
