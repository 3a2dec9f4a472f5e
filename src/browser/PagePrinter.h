#pragma once

class QPrinter;
class QString;
class QWebEnginePage;
class QWidget;

/// Prints a page: a printer gets it from the engine, a file gets it as PDF, which keeps its text.
namespace PagePrinter {
/// Opens the desktop's print dialog over `owner` and prints when it is accepted.
void open(QWebEnginePage *page, QWidget *owner);
}
