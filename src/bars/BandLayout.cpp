#include "BandLayout.h"

#include "CoolBand.h"
#include "CoolBar.h"
#include "Settings.h"

#include <algorithm>

namespace {

/// Whole twips in plain digits, whatever a settings file once held.
qint64 wholeWidth(const CoolBand &band)
{
    constexpr double widest = 1e9;
    return qRound64(std::clamp(band.width(), -widest, widest));
}

}

void restoreBandLayout(CoolBar &bar)
{
    for (int position = 1; position <= bar.bandCount(); ++position) {
        CoolBand &band = *bar.band(position);
        if (position > 1)
            band.setNewRow(Settings::bandNewRow.read(position).value_or(band.newRow()));
        band.setWidth(Settings::bandWidth.read(position).value_or(band.width()));
    }
}

void saveBandLayout(const CoolBar &bar)
{
    QList<IniEntry> entries;
    for (int position = 1; position <= bar.bandCount(); ++position) {
        const CoolBand &band = *bar.band(position);
        if (position > 1)
            entries.append(Settings::bandNewRow.entry(band.newRow(), position));
        entries.append(Settings::bandWidth.entry(wholeWidth(band), position));
    }
    Settings::write(entries).leaveToLog();
}
