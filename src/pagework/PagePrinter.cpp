#include "PagePrinter.h"

#include "FileWriter.h"
#include "JobProgress.h"
#include "MsgBox.h"
#include "NotSaved.h"
#include "PageJobs.h"
#include "PagePrintDialog.h"
#include "PageSetup.h"
#include "PrintService.h"
#include "Texts.h"

#include <QPointer>
#include <QPrinter>
#include <QProgressDialog>
#include <QWebEnginePage>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {
/// Of the page: the dialog last opened for it.
constexpr char dialogProperty[] = "printDialog";

constexpr Texts<"PagePrinter"> texts;

/// `file` and `why` are empty where there are none.
void tellFailure(QWidget *owner, const QString &file, const QString &why)
{
    QString message = texts.at<"strFailed", "The page could not be printed.">();
    for (const QString &part : {file, why}) {
        if (!part.isEmpty())
            message += u"\n\n"_s + part;
    }
    MsgBox::tell(owner, message);
}

/// Where the engine prints by itself it tells nothing until the end, and cannot be stopped.
void printByEngine(QWebEnginePage *page, const std::shared_ptr<QPrinter> &printer, QWidget *owner)
{
    PageJobs::print(page, printer, owner, [owner](bool printed) {
        if (!printed)
            tellFailure(owner, {}, {});
    });
}

void sendToPrinter(const QByteArray &pdf, QPrinter &printer, QWidget *owner)
{
    PrintService::send(pdf, printer, owner, [owner](bool sent) {
        if (!sent)
            tellFailure(owner, {}, {});
    });
}

void deliver(const QByteArray &pdf, QPrinter &printer, QWidget *owner)
{
    if (pdf.isEmpty())
        tellFailure(owner, printer.outputFileName(), {});
    else if (printer.outputFormat() != QPrinter::PdfFormat)
        sendToPrinter(pdf, printer, owner);
    else if (const WriteResult result = FileWriter::write(printer.outputFileName(), pdf); !result)
        tellFailure(owner, printer.outputFileName(), NotSaved::reason(result));
}

void print(QWebEnginePage *page, const std::shared_ptr<QPrinter> &printer, QWidget *owner)
{
    if (printer->outputFormat() != QPrinter::PdfFormat && !PrintService::isAvailable()) {
        printByEngine(page, printer, owner);
        return;
    }
    const bool all = printer->printRange() != QPrinter::PageRange;
    // The engine does not tell how far it is; what is whole by then is delivered in one step.
    const QPointer<QProgressDialog> progress =
        openJobProgress(owner, u"dlgPrinting"_s, texts.at<"strPrinting", "Printing the page...">(),
                        texts.at<"cmdCancel", "Cancel">());
    PageJobs::toPdf(page, printer->pageLayout(), all ? QPageRanges() : printer->pageRanges(), owner,
                    [printer, progress, owner](const QByteArray &pdf) {
                        // A cancelled job runs to its end, and then nothing comes of it.
                        if (!progress || progress->wasCanceled())
                            return;
                        progress->close();
                        deliver(pdf, *printer, owner);
                    });
}
}

namespace {
QPrintDialog *makeDialog(QWebEnginePage *page, QWidget *owner)
{
    auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setPageLayout(PageSetup::layout());
    auto *dialog = new PagePrintDialog(printer.get(), page->title(), owner);
    page->setProperty(dialogProperty, QVariant::fromValue(QPointer<QWidget>(dialog)));
    QObject::connect(page, &QObject::destroyed, dialog, &QWidget::close);
    QObject::connect(dialog, &QDialog::accepted, page, [page, printer, owner] {
        // A list of print jobs has no trouble with the title as it is.
        printer->setDocName(page->title());
        // The page's own window outlives a preview that asked.
        const QWebEngineView *view = QWebEngineView::forPage(page);
        print(page, printer, view ? view->window() : owner->window());
    });
    return dialog;
}
}

namespace PagePrinter {

void open(QWebEnginePage *page, QWidget *owner)
{
    makeDialog(page, owner)->open();
}

QWidget *openBeside(QWebEnginePage *page, QWidget *owner)
{
    QPrintDialog *dialog = makeDialog(page, owner);
    dialog->setModal(false);
    dialog->show();
    return dialog;
}

bool isOpenFor(const QWebEnginePage *page)
{
    return page->property(dialogProperty).value<QPointer<QWidget>>();
}

}
