#include "PrintService.h"

#include "Log.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibrary>
#include <QPointer>
#include <QPrintEngine>
#include <QPrinter>
#include <QTemporaryFile>
#include <QThreadPool>

using namespace Qt::StringLiterals;

// The service's library comes with the toolkit's print support and is asked for by name, so that
// the program builds and runs where there is none.
namespace {
struct Option {
    char *name;
    char *value;
};
using AddOption = int (*)(const char *name, const char *value, int count, Option **options);
using FreeOptions = void (*)(int count, Option *options);
using PrintFile = int (*)(const char *printer, const char *file, const char *title, int count,
                          Option *options);
using LastError = const char *(*)();

struct Cups {
    AddOption addOption = nullptr;
    FreeOptions freeOptions = nullptr;
    PrintFile printFile = nullptr;
    LastError lastError = nullptr;

    Cups()
    {
#ifdef Q_OS_UNIX
        QLibrary library(u"cups"_s, 2);
        addOption = reinterpret_cast<AddOption>(library.resolve("cupsAddOption"));
        freeOptions = reinterpret_cast<FreeOptions>(library.resolve("cupsFreeOptions"));
        printFile = reinterpret_cast<PrintFile>(library.resolve("cupsPrintFile"));
        lastError = reinterpret_cast<LastError>(library.resolve("cupsLastErrorString"));
#endif
    }
    bool isWhole() const
    {
        return addOption && freeOptions && printFile && lastError;
    }
};

const Cups &cups()
{
    static const Cups library;
    return library;
}

struct Order {
    QByteArray pdf;
    QByteArray printer;
    QByteArray title;
    PrintService::Options options;
};

bool print(const Order &order)
{
    QTemporaryFile file;
    if (!file.open() || file.write(order.pdf) != order.pdf.size() || !file.flush()) {
        qCWarning(lcEngine) << "not printed:" << file.errorString();
        return false;
    }
    Option *options = nullptr;
    int count = 0;
    for (const auto &[name, value] : order.options)
        count = cups().addOption(name.constData(), value.constData(), count, &options);
    const int job =
        cups().printFile(order.printer.constData(), QFile::encodeName(file.fileName()).constData(),
                         order.title.constData(), count, options);
    cups().freeOptions(count, options);
    if (job == 0)
        qCWarning(lcEngine) << "not printed:" << cups().lastError();
    return job != 0;
}

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
    return cups().isWhole();
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
