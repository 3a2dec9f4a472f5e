#pragma once

class QWebEnginePage;
class QWidget;

/// Prints a page: the engine makes its sheets as PDF, and a file or the print service gets them
/// when they are whole, so that cancelling leaves nothing half done.
namespace PagePrinter {
/// Opens the desktop's print dialog over `owner` and prints when it is accepted.
void open(QWebEnginePage *page, QWidget *owner);
/// The same beside the windows, which stay usable meanwhile.
QWidget *openBeside(QWebEnginePage *page, QWidget *owner);
/// A print dialog is open for the page.
bool isOpenFor(const QWebEnginePage *page);
}
