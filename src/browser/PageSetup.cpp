#include "PageSetup.h"

#include <QLocale>
#include <QPageSetupDialog>
#include <QPrinter>
#include <memory>

using namespace Qt::StringLiterals;

namespace {
QPageLayout &current()
{
    constexpr qreal margin = 15;
    const bool metric = QLocale().measurementSystem() == QLocale::MetricSystem;
    static QPageLayout layout(QPageSize(metric ? QPageSize::A4 : QPageSize::Letter),
                              QPageLayout::Portrait, QMarginsF(margin, margin, margin, margin),
                              QPageLayout::Millimeter);
    return layout;
}
}

namespace PageSetup {

QPageLayout layout()
{
    return current();
}

void setLayout(const QPageLayout &layout)
{
    if (layout.isValid())
        current() = layout;
}

void open(QWidget *owner, const std::function<void()> &changed)
{
    // The dialog uses the printer until it is gone.
    auto printer = std::make_shared<QPrinter>();
    printer->setPageLayout(current());
    auto *dialog = new QPageSetupDialog(printer.get(), owner);
    dialog->setObjectName("dlgPageSetup"_L1);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QPageSetupDialog::accepted, dialog, [printer, changed] {
        setLayout(printer->pageLayout());
        if (changed)
            changed();
    });
    dialog->open();
}

}
