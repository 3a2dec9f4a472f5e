#pragma once

#include "AskingSite.h"
#include "Permission.h"
#include "WriteResult.h"

#include <QList>
#include <optional>

/// The answers that the user had remembered, in AppData/Permissions.ini: a section for each site
/// that asked, a key for each permission, "Allow" or "Refuse". A scheme, as "tel", stands behind
/// the key of `Permission::Program` and is empty for all others. The file is read at every call.
/// What it says in any other way counts as not answered and is left alone.
namespace SitePermissions {
enum class Word { Allow, Refuse };

struct Answer {
    AskingSite site;
    Permission permission = Permission::Place;
    Word word = Word::Refuse;
    QString scheme = {};

    bool operator==(const Answer &) const = default;
};

/// Sites that the file keeps; then the one that came first makes room.
inline constexpr int mostSites = 500;

QString path();
/// Nothing while the user did not answer, or for a site that nothing can be kept for.
std::optional<Word> answer(const AskingSite &site, Permission permission,
                           const QString &scheme = {});
/// In one replacement of the file. Refused for a site that nothing can be kept for.
WriteResult keep(const AskingSite &site, const QList<Permission> &permissions, Word word,
                 const QString &scheme = {});
/// In the order of the file, each as it counts.
QList<Answer> all();
/// Whatever the answers' words are, and wherever the file has them.
WriteResult remove(const QList<Answer> &answers);
/// Those that are not listed, too.
WriteResult removeAll();
}
