#include "EngineAge.h"

#include <QVersionNumber>
#include <QtWebEngineCore/qtwebenginecoreglobal.h>
#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {
struct Release {
    int major;
    int year;
    int month;
};

/// Some stable releases of Chromium; those between and after come one a month.
constexpr Release releases[] = {
    {87, 2020, 11},  {94, 2021, 9},   {102, 2022, 5}, {108, 2022, 11},
    {112, 2023, 4},  {118, 2023, 10}, {122, 2024, 2}, {126, 2024, 6},
    {130, 2024, 10}, {132, 2025, 1},  {134, 2025, 3}, {140, 2025, 9},
};
}

namespace EngineAge {

QDate released(const QString &chromium)
{
    const int major = QVersionNumber::fromString(chromium).majorVersion();
    const auto *const after =
        std::upper_bound(std::begin(releases), std::end(releases), major,
                         [](int number, const Release &each) { return number < each.major; });
    if (after == std::begin(releases))
        return {};
    const Release &last = *std::prev(after);
    return QDate(last.year, last.month, 1).addMonths(major - last.major);
}

QDate ofEngine()
{
    return released(QString::fromLatin1(qWebEngineChromiumSecurityPatchVersion()));
}

bool isOld(const QDate &released, const QDate &today)
{
    return released.isValid() && released.addYears(1) < today;
}

QStringList versions()
{
    const QDate date = ofEngine();
    const QString month = date.isValid() ? date.toString(u" (yyyy-MM)"_s) : QString();
    return {"Qt WebEngine "_L1 + QLatin1StringView(qWebEngineVersion()),
            "Chromium "_L1 + QLatin1StringView(qWebEngineChromiumVersion())
                + ", security patches up to "_L1
                + QLatin1StringView(qWebEngineChromiumSecurityPatchVersion()) + month};
}

}
