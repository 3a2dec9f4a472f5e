#pragma once

class QWebEnginePage;
class QWidget;

/// Saves a page as files: with everything it shows beside it, as one file, or its markup alone.
namespace PageSaver {
/// Asks over `owner` where to save and how, and saves when that was answered.
void open(QWebEnginePage *page, QWidget *owner);
}
