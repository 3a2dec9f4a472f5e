#include "BandLayout.h"

#include "AppFolder.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "IniStore.h"
#include "TextRules.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QString newRowKey(int position)
{
    return u"NewRow"_s + QString::number(position);
}

QString widthKey(int position)
{
    return u"Width"_s + QString::number(position);
}

/// Whole twips in plain digits, whatever a settings file once held.
QString widthText(const CoolBand &band)
{
    constexpr double widest = 1e9;
    return QString::number(qRound64(std::clamp(band.width(), -widest, widest)));
}

}

void restoreBandLayout(CoolBar &bar)
{
    const QString file = AppFolder::settingsPath();
    for (int position = 1; position <= bar.bandCount(); ++position) {
        CoolBand &band = *bar.band(position);
        if (position > 1) {
            const QString current = booleanText(band.newRow());
            const auto flag =
                textToBoolean(readIni(u"ToolBar"_s, newRowKey(position), current, file));
            if (flag)
                band.setNewRow(*flag);
        }
        const auto width =
            textToNumber(readIni(u"ToolBar"_s, widthKey(position), widthText(band), file));
        if (width)
            band.setWidth(*width);
    }
}

void saveBandLayout(const CoolBar &bar)
{
    QList<IniEntry> entries;
    for (int position = 1; position <= bar.bandCount(); ++position) {
        const CoolBand &band = *bar.band(position);
        if (position > 1)
            entries.append({u"ToolBar"_s, newRowKey(position), booleanText(band.newRow())});
        entries.append({u"ToolBar"_s, widthKey(position), widthText(band)});
    }
    writeIniEntries(entries, AppFolder::settingsPath()).leaveToLog();
}
