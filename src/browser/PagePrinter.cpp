#include "PagePrinter.h"

#include "Language.h"
#include "MsgBox.h"
#include "PageJobs.h"
#include "PageSetup.h"

#include <QPrintDialog>
#include <QPrinter>
#include <QProgressDialog>
#include <QSaveFile>
#include <QWebEnginePage>

using namespace Qt::StringLiterals;

namespace {
/// Short jobs show no progress; milliseconds.
constexpr int patience = 800;

QString text(const char *key, const QString &english)
{
    return GetLanguageText(u"PagePrinter"_s, QString::fromLatin1(key), english);
}

/// It closes by itself when the job is done; the engine tells nothing in between.
QProgressDialog *showProgress(QWidget *owner)
{
    auto *progress = new QProgressDialog(text("strPrinting", u"Printing the page..."_s),
                                         text("cmdCancel", u"Cancel"_s), 0, 0, owner);
    progress->setObjectName("dlgPrinting"_L1);
    progress->setAttribute(Qt::WA_DeleteOnClose);
    progress->setWindowModality(Qt::NonModal);
    progress->setMinimumDuration(patience);
    progress->setAutoReset(false);
    return progress;
}

bool write(const QString &file, const QByteArray &bytes)
{
    QSaveFile target(file);
    return target.open(QIODevice::WriteOnly) && target.write(bytes) == bytes.size()
        && target.commit();
}

void tellFailure(QWidget *owner, const QString &file)
{
    QString message = text("strFailed", u"The page could not be printed."_s);
    if (!file.isEmpty())
        message += u"\n\n"_s + file;
    MsgBox::tell(owner, message);
}

void printToFile(QWebEnginePage *page, const QPrinter &printer, QWidget *owner)
{
    const bool all = printer.printRange() != QPrinter::PageRange;
    const QPointer<QProgressDialog> progress = showProgress(owner);
    PageJobs::toPdf(page, printer.pageLayout(), all ? QPageRanges() : printer.pageRanges(), owner,
                    [file = printer.outputFileName(), progress, owner](const QByteArray &pdf) {
                        // A cancelled job runs to its end, and then nothing comes of it.
                        if (!progress || progress->wasCanceled())
                            return;
                        progress->close();
                        if (pdf.isEmpty() || !write(file, pdf))
                            tellFailure(owner, file);
                    });
}

void printOnPrinter(QWebEnginePage *page, const std::shared_ptr<QPrinter> &printer, QWidget *owner)
{
    PageJobs::print(page, printer, owner, [owner](bool printed) {
        if (!printed)
            tellFailure(owner, {});
    });
}
}

namespace PagePrinter {

void open(QWebEnginePage *page, QWidget *owner)
{
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setPageLayout(PageSetup::layout());
    printer->setDocName(page->title());
    auto *dialog = new QPrintDialog(printer.get(), owner);
    dialog->setObjectName("dlgPrint"_L1);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintPageRange
                       | QAbstractPrintDialog::PrintCollateCopies);
    QObject::connect(page, &QObject::destroyed, dialog, &QWidget::close);
    QObject::connect(dialog, &QDialog::accepted, page, [page, printer, owner = owner->window()] {
        if (printer->outputFormat() == QPrinter::PdfFormat)
            printToFile(page, *printer, owner);
        else
            printOnPrinter(page, printer, owner);
    });
    dialog->open();
}

}
