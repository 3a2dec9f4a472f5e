#include "PrintService.h"

#include "Log.h"

#include <QCoreApplication>
#include <QFile>
#include <QPointer>
#include <QPrintEngine>
#include <QPrinter>
#include <QTemporaryFile>
#include <QThreadPool>
#ifdef ORVANE_CUPS
#include <cups/cups.h>
#endif

namespace {
struct Order {
    QByteArray pdf;
    QByteArray printer;
    QByteArray title;
    PrintService::Options options;
};

#ifdef ORVANE_CUPS
bool print(const Order &order)
{
    QTemporaryFile file;
    if (!file.open() || file.write(order.pdf) != order.pdf.size() || !file.flush()) {
        qCWarning(lcEngine) << "not printed:" << file.errorString();
        return false;
    }
    cups_option_t *options = nullptr;
    int count = 0;
    for (const auto &[name, value] : order.options)
        count = cupsAddOption(name.constData(), value.constData(), count, &options);
    const int job =
        cupsPrintFile(order.printer.constData(), QFile::encodeName(file.fileName()).constData(),
                      order.title.constData(), count, options);
    cupsFreeOptions(count, options);
    if (job == 0)
        qCWarning(lcEngine) << "not printed:" << cupsLastErrorString();
    return job != 0;
}
#else
bool print(const Order &)
{
    return false;
}
#endif

QByteArray sidesOf(const QPrinter &printer)
{
    const bool landscape = printer.pageLayout().orientation() == QPageLayout::Landscape;
    switch (printer.duplex()) {
    case QPrinter::DuplexLongSide:
        return "two-sided-long-edge";
    case QPrinter::DuplexShortSide:
        return "two-sided-short-edge";
    case QPrinter::DuplexAuto:
        return landscape ? "two-sided-short-edge" : "two-sided-long-edge";
    default:
        return "one-sided";
    }
}

/// What a printer of this service offers besides, as the print dialog leaves it: names and values
/// in turn.
constexpr auto furtherOptions = QPrintEngine::PrintEnginePropertyKey(0xfe00);
}

namespace PrintService {

bool isAvailable()
{
#ifdef ORVANE_CUPS
    return true;
#else
    return false;
#endif
}

Options optionsOf(QPrinter &printer)
{
    Options options{{"media", printer.pageLayout().pageSize().key().toLatin1()},
                    {"sides", sidesOf(printer)},
                    {"copies", QByteArray::number(printer.copyCount())},
                    {"Collate", printer.collateCopies() ? "True" : "False"}};
    if (printer.pageOrder() == QPrinter::LastPageFirst)
        options.emplaceBack("outputorder", "reverse");
    if (printer.colorMode() == QPrinter::GrayScale)
        options.emplaceBack("print-color-mode", "monochrome");
    const QStringList further = printer.printEngine()->property(furtherOptions).toStringList();
    for (qsizetype i = 0; i + 1 < further.size(); i += 2)
        options.emplaceBack(further.at(i).toUtf8(), further.at(i + 1).toUtf8());
    return options;
}

void send(const QByteArray &pdf, QPrinter &printer, QObject *receiver,
          const std::function<void(bool sent)> &done)
{
    const Order order{pdf, printer.printerName().toUtf8(), printer.docName().toUtf8(),
                      optionsOf(printer)};
    // The service may be slow to answer, or on another machine.
    QThreadPool::globalInstance()->start([order, receiver = QPointer(receiver), done] {
        const bool sent = print(order);
        QMetaObject::invokeMethod(
            qApp,
            [receiver, done, sent] {
                if (receiver)
                    done(sent);
            },
            Qt::QueuedConnection);
    });
}

}
