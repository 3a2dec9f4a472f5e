#pragma once

class QWidget;
class WebPage;

/// Saves a page as files: with everything it shows beside it, as one file, or its source alone (see
/// `SourceJob`). What is no markup is saved as it came. A failure is told once, and leaves what was
/// there.
namespace PageSaver {
/// Asks over `owner` where to save and how, and saves when that was answered.
void open(WebPage *page, QWidget *owner);
}
