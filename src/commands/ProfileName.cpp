#include "ProfileName.h"

#include <QFileInfo>
#include <QFontMetrics>
#include <QWidget>

#include "ShownText.h"

using namespace Qt::StringLiterals;

namespace {
constexpr int mostLetters = 40;
}

QString profileName(const QString &file)
{
    const QFileInfo info(file);
    const QString base = info.completeBaseName();
    return shownText(base.isEmpty() ? info.fileName() : base);
}

QString elidedProfileName(const QString &name, const QWidget &menu)
{
    const QFontMetrics metrics = menu.fontMetrics();
    return metrics.elidedText(name, Qt::ElideMiddle, mostLetters * metrics.averageCharWidth())
        .replace(u'&', u"&&"_s);
}
