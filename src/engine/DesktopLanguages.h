#pragma once

#include <QString>
#include <QStringList>

/// What the user's desktop speaks, as servers and pages are told unless he names other languages.
namespace DesktopLanguages {
/// Language tags ("de-AT,de,en"), the most wanted first, with commas between; never empty.
QString list();
/// The same for the tags that a desktop gives: each as language and country, then the language
/// alone once. "C", scripts and what is no language are left out.
QString fromTags(const QStringList &tags);
}
