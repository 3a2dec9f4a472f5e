#pragma once

#include <QPrintDialog>

/// The desktop's print dialog for a page. A file that is printed to is named after the page, and
/// what only paper has is not offered for it.
class PagePrintDialog : public QPrintDialog {
    Q_OBJECT

public:
    /// `printer` outlives the dialog. It gets a name for the document that fits a file.
    PagePrintDialog(QPrinter *printer, const QString &title, QWidget *owner);

    void setVisible(bool visible) override;

private:
    void offerWhatFits();
};
