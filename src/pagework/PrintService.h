#pragma once

#include <QByteArray>
#include <QObject>
#include <functional>

class QPrinter;

/// Hands finished sheets to the desktop's print service as PDF, which keeps text and drawings as
/// such, costs no time per sheet, and prints either the whole document or nothing.
namespace PrintService {
/// The service's own names and values of what was chosen for a print.
using Options = QList<QPair<QByteArray, QByteArray>>;

/// False where there is no such service; the engine prints by itself there.
bool isAvailable();
/// What the service is told of the choices made in the print dialog. The range of pages is not
/// among them: the sheets handed over are those to print.
Options optionsOf(QPrinter &printer);
/// Sends `pdf` to the printer chosen. `done` is called later, with false when the service refused,
/// and not at all when `receiver` goes away first.
void send(const QByteArray &pdf, QPrinter &printer, QObject *receiver,
          const std::function<void(bool sent)> &done);
}
