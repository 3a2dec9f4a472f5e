#pragma once

#include <QDialog>

class EngineData;
class Frame;
class InternetAdvancedPage;
class InternetGeneralPage;
class InternetSpellingPage;
class QTabWidget;

/// The internet options of a platform without a control panel for them: what the engine keeps, and
/// how it shows pages. The options are written by Apply and Save; what clears, clears at once.
class InternetOptionsDialog : public QDialog {
    Q_OBJECT

public:
    enum class Page { General, Advanced };

    /// Shows the dialog over the frame, on `page`; brings it to the front when it is open already.
    static void showOver(Frame &frame, Page page);

    explicit InternetOptionsDialog(QWidget *owner);

    void setPage(Page page);

private:
    QWidget *makeButtons();
    void openOn(Page page);
    bool applyOptions();

    EngineData *m_data;
    QTabWidget *m_pages;
    InternetGeneralPage *m_general;
    InternetAdvancedPage *m_advanced;
    InternetSpellingPage *m_spelling;
};
