#include "SkippedDialog.h"
#include "BookmarkImport.h"
#include "Forms.h"
#include "Language.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr QSize comfortableSize(620, 360);
constexpr int entryWidth = 280;

QString text(const QString &key, const QString &english)
{
    return languageText(u"frmSkipped"_s, key, english);
}

QString reasonText(BookmarkProblem::Reason reason)
{
    using Reason = BookmarkProblem::Reason;
    switch (reason) {
    case Reason::NoAddress:
        return text(u"strNoAddress"_s, u"It has no address"_s);
    case Reason::BrokenTag:
        return text(u"strBrokenTag"_s, u"Its quotation marks do not close"_s);
    case Reason::TooLong:
        return text(u"strTooLong"_s, u"Its address is too long"_s);
    case Reason::Query:
        return text(u"strQuery"_s, u"A query of another browser"_s);
    case Reason::TooDeep:
        return text(u"strTooDeep"_s, u"Too deep; its contents are in the folder above"_s);
    case Reason::NotWritten:
        break;
    }
    return text(u"strNotWritten"_s, u"It could not be written"_s);
}
}

SkippedDialog::SkippedDialog(const ImportOutcome &outcome, QWidget *owner)
    : QDialog(owner)
{
    setObjectName("frmSkipped"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    Forms::add(this);
    setWindowTitle(text(u"Caption"_s, u"Import Favorites"_s));
    const QString counted =
        text(u"lblSkipped"_s, u"%1 favorites came in. Left out (%2):"_s).arg(outcome.links);
    auto *label = new QLabel(counted.arg(outcome.skipped));
    label->setObjectName("lblSkipped"_L1);
    auto *list = new QTreeWidget;
    list->setObjectName("lvSkipped"_L1);
    list->setAccessibleName(label->text());
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setHeaderLabels({text(u"strLine"_s, u"Line"_s), text(u"strEntry"_s, u"Entry"_s),
                           text(u"strReason"_s, u"Reason"_s)});
    QList<QTreeWidgetItem *> items;
    for (const BookmarkProblem &problem : outcome.problems)
        items.append(new QTreeWidgetItem(
            {QString::number(problem.line), problem.entry, reasonText(problem.reason)}));
    list->addTopLevelItems(items);
    list->setColumnWidth(1, entryWidth);
    list->resizeColumnToContents(0);
    auto *close = new QPushButton(text(u"cmdClose"_s, u"&Close"_s));
    close->setObjectName("cmdClose"_L1);
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(list, 1);
    layout->addWidget(close, 0, Qt::AlignRight);
    resize(comfortableSize);
}
