#include "PagePrintDialog.h"

#include "FileName.h"
#include "Texts.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPrinter>
#include <QSpinBox>

using namespace Qt::StringLiterals;

namespace {
/// The dialog calls the file as the document, whatever is in that, but for its last ending.
QString documentName(const QString &title)
{
    const QString otherwise = Texts<"PageSaver">::at<"strPage", "Page">();
    return FileName::from(title, u".pdf"_s, otherwise);
}
}

PagePrintDialog::PagePrintDialog(QPrinter *printer, const QString &title, QWidget *owner)
    : QPrintDialog((printer->setDocName(documentName(title)), printer), owner)
{
    setObjectName("dlgPrint"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintPageRange
               | QAbstractPrintDialog::PrintCollateCopies);
    if (auto *printers = findChild<QComboBox *>(u"printers"_s))
        connect(printers, &QComboBox::currentIndexChanged, this, &PagePrintDialog::offerWhatFits);
}

void PagePrintDialog::setVisible(bool visible)
{
    QPrintDialog::setVisible(visible);
    offerWhatFits();
}

/// Copies, collated or in reverse, are of paper: a file has each sheet once, in order.
void PagePrintDialog::offerWhatFits()
{
    const auto *file = findChild<QLineEdit *>(u"filename"_s);
    auto *copies = findChild<QSpinBox *>(u"copies"_s);
    if (!file || !copies)
        return;
    QWidget *group = copies->parentWidget();
    // The dialog's own mark of what prints to a file.
    group->setVisible(!file->isEnabled());
}
