#pragma once

class QString;

/// The files that ship with the program, brought into a folder where they are the user's.
namespace ShippedFiles {
/// Brings all of the folder `from`, with its folders, to the folder `to`, which a file there keeps
/// the record of: what came from here, and how it was then. Nothing that the user has changed, put
/// there or removed is touched. False where something could not be brought, which is logged; it is
/// tried again the next time. No other process may be at it.
bool bring(const QString &from, const QString &to);
}
