#include "SkippedDialog.h"
#include "BookmarkImport.h"
#include "Captioned.h"
#include "Forms.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
constexpr QSize comfortableSize(620, 360);
constexpr int entryWidth = 280;

constexpr Texts<"frmSkipped"> texts;

QString reasonText(BookmarkProblem::Reason reason)
{
    using Reason = BookmarkProblem::Reason;
    switch (reason) {
    case Reason::NoAddress:
        return texts.at<"strNoAddress", "It has no address">();
    case Reason::BrokenTag:
        return texts.at<"strBrokenTag", "Its quotation marks do not close">();
    case Reason::TooLong:
        return texts.at<"strTooLong", "Its address is too long">();
    case Reason::Query:
        return texts.at<"strQuery", "A query of another browser">();
    case Reason::TooDeep:
        return texts.at<"strTooDeep", "Too deep; its contents are in the folder above">();
    case Reason::NotWritten:
        break;
    }
    return texts.at<"strNotWritten", "It could not be written">();
}
}

SkippedDialog::SkippedDialog(const ImportOutcome &outcome, QWidget *owner)
    : QDialog(owner)
{
    setObjectName("frmSkipped"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    Forms::add(this);
    setWindowTitle(texts.at<"Caption", "Import Favorites">());
    const QString counted =
        texts.at<"lblSkipped", "%1 favorites came in. Left out (%2):">().arg(outcome.links);
    auto *label = new QLabel(counted.arg(outcome.skipped));
    label->setObjectName("lblSkipped"_L1);
    auto *list = new QTreeWidget;
    list->setObjectName("lvSkipped"_L1);
    list->setAccessibleName(label->text());
    list->setRootIsDecorated(false);
    list->setUniformRowHeights(true);
    list->setHeaderLabels({texts.at<"strLine", "Line">(), texts.at<"strEntry", "Entry">(),
                           texts.at<"strReason", "Reason">()});
    QList<QTreeWidgetItem *> items;
    for (const BookmarkProblem &problem : outcome.problems)
        items.append(new QTreeWidgetItem(
            {QString::number(problem.line), problem.entry, reasonText(problem.reason)}));
    list->addTopLevelItems(items);
    list->setColumnWidth(1, entryWidth);
    list->resizeColumnToContents(0);
    auto *close = captioned<QPushButton>(texts.at<"cmdClose", "&Close">);
    close->setDefault(true);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(list, 1);
    layout->addWidget(close, 0, Qt::AlignRight);
    resize(comfortableSize);
}
