#pragma once

#include <QString>

/// Line ends of whole texts, in linear time also where there are millions of them.
namespace LineEnds {
/// CR LF, CR and LF all become LF.
QString toLf(const QString &text);
/// Each LF becomes `end`, a CR LF or a CR.
QString fromLf(const QString &text, QLatin1String end = QLatin1String("\r\n"));
}
