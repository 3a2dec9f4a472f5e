#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

/// How old the page engine is. No part of it knows its own date; what tells it is the Chromium
/// whose security patches it has, as that comes out about once a month under a number one higher.
namespace EngineAge {

/// The first of the month in which that version of Chromium ("108.0.5359.179") came out, right to
/// about a month; invalid for what is no version, and for one from before any engine in use.
QDate released(const QString &chromium);
/// `released` of the engine that runs.
QDate ofEngine();
/// More than a year lies between the days: holes that the patches since then closed are open.
bool isOld(const QDate &released, const QDate &today);
/// What the engine that runs is made of, and of which month ("2022-11"), for a report of a fault.
QStringList versions();

}
