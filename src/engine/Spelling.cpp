#include "Spelling.h"

#include "Dictionaries.h"
#include "EngineOptions.h"

#include <QVariant>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

namespace {
/// Of the profile: what was wanted last.
constexpr char wantedName[] = "dictionaries";

QStringList wantedBy(const EngineOptions &options)
{
    if (!options.spelling)
        return {};
    if (options.dictionaries.isEmpty())
        return Dictionaries::ofDesktop(Dictionaries::all());
    QStringList tags;
    for (const QString &each : options.dictionaries.split(u','))
        tags.append(each.trimmed());
    return tags;
}
}

namespace Spelling {

void use(QWebEngineProfile *profile, const EngineOptions &options)
{
    const QStringList wanted = wantedBy(options);
    // What is being converted for a choice before this one is no longer wanted.
    profile->setProperty(wantedName, wanted);
    Dictionaries::prepare(wanted, profile, [profile, wanted](const QStringList &ready) {
        if (profile->property(wantedName).toStringList() != wanted)
            return;
        profile->setSpellCheckLanguages(ready);
        profile->setSpellCheckEnabled(!ready.isEmpty());
    });
}

}
