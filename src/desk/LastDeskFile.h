#pragma once

#include "Desk.h"
#include "WriteResult.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

/// The file that the desk is kept in while the program runs, an ordinary profile with windows, and
/// beside it a mark that is there from before the first write until an end that the user called
/// for: who finds it as he starts knows that the program was ended in between.
namespace LastDeskFile {
QString path();

/// What an earlier program left.
struct Left {
    Desk desk;
    /// Byte for byte; empty: nothing is there.
    QByteArray bytes;
    /// When it was written last.
    QDateTime time;
    /// It was not the user who ended it.
    bool isCut = false;
};
Left read();

/// Puts the mark there.
WriteResult beginRun();
/// Takes it away.
void endRun();

/// Keeps what was left under a name with its date; of these files the last five stay.
WriteResult keep(const Left &left);
}
