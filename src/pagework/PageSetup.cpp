#include "PageSetup.h"

#include "PageSetupDialog.h"

#include <QLocale>

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
    auto *dialog = new PageSetupDialog(current(), owner);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(dialog, &QDialog::accepted, dialog, [dialog, changed] {
        setLayout(dialog->chosen());
        if (changed)
            changed();
    });
    dialog->open();
}

}
