#include "UploadFilter.h"

#include "Texts.h"

#include <QMimeDatabase>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {
/// A dialog that shows more of them is of no use.
constexpr qsizetype mostTypes = 50;
constexpr qsizetype mostPatterns = 100;
constexpr qsizetype longestPattern = 30;

constexpr Texts<"Upload"> texts;

void addKind(const QString &kind, QStringList &patterns)
{
    const QMimeDatabase database;
    if (!kind.endsWith("/*"_L1)) {
        patterns += database.mimeTypeForName(kind).globPatterns();
        return;
    }
    const QString group = kind.chopped(1);
    for (const QMimeType &type : database.allMimeTypes()) {
        if (type.name().startsWith(group))
            patterns += type.globPatterns();
    }
}

bool isPlainPattern(const QString &pattern)
{
    static const QRegularExpression form(u"^\\*\\.[A-Za-z0-9+_.-]+$"_s);
    return pattern.size() <= longestPattern && form.match(pattern).hasMatch();
}
}

QList<FileDialogRequest::Filter> uploadFilters(const QStringList &types)
{
    QStringList patterns;
    for (const QString &type : types.first(qMin(types.size(), mostTypes))) {
        const QString name = type.trimmed().toLower();
        if (name.startsWith(u'.'))
            patterns.append(u'*' + name);
        else
            addKind(name, patterns);
    }
    patterns.removeIf([](const QString &pattern) { return !isPlainPattern(pattern); });
    patterns.removeDuplicates();
    patterns.resize(qMin(patterns.size(), mostPatterns));
    QList<FileDialogRequest::Filter> filters;
    if (!patterns.isEmpty())
        filters.append(
            {texts.at<"strAccepted", "Files that the page takes">(), patterns.join(u';')});
    filters.append({texts.at<"strAllFiles", "All Files">(), u"*.*"_s});
    return filters;
}
