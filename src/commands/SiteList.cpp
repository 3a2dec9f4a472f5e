#include "SiteList.h"

#include "ShownAddress.h"
#include "Texts.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
enum Column { SiteColumn, PageColumn, WhatColumn, WordColumn };

constexpr Texts<"frmInternetOptions"> texts;

QString wordText(SitePermissions::Word word)
{
    return word == SitePermissions::Word::Allow ? texts.at<"strAllowed", "Allowed">()
                                                : texts.at<"strRefused", "Refused">();
}

QString whatText(const SitePermissions::Answer &answer)
{
    const QString what = permissionText(answer.permission);
    return answer.scheme.isEmpty() ? what : what + " ("_L1 + answer.scheme + u')';
}

class AnswerItem : public QTreeWidgetItem {
public:
    explicit AnswerItem(const SitePermissions::Answer &shown)
        : QTreeWidgetItem({shownSite(QUrl(shown.site.asker)), shownSite(QUrl(shown.site.page)),
                           whatText(shown), wordText(shown.word)})
        , answer(shown)
    {
        for (const Column column : {SiteColumn, PageColumn})
            setToolTip(column, text(column));
    }
    SitePermissions::Answer answer;
};

const SitePermissions::Answer &answerOf(const QTreeWidgetItem *item)
{
    return static_cast<const AnswerItem *>(item)->answer;
}
}

SiteList::SiteList()
{
    setObjectName("lstSites"_L1);
    setSelectionMode(ExtendedSelection);
    setUniformRowHeights(true);
    setRootIsDecorated(false);
    setAllColumnsShowFocus(true);
    // The domain stands at the end of a site's name.
    setTextElideMode(Qt::ElideLeft);
    setHeaderLabels({texts.at<"strSite", "Site">(), texts.at<"strInside", "Inside">(),
                     texts.at<"strWhat", "What">(), texts.at<"strAnswer", "Answer">()});
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(SiteColumn, QHeaderView::Stretch);
    header()->setSectionResizeMode(PageColumn, QHeaderView::Fixed);
    for (const Column column : {WhatColumn, WordColumn})
        header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
}

QList<SitePermissions::Answer> SiteList::selected() const
{
    QList<SitePermissions::Answer> result;
    for (const QTreeWidgetItem *item : selectedItems())
        result.append(answerOf(item));
    return result;
}

void SiteList::refresh()
{
    const QList<SitePermissions::Answer> kept = selected();
    const int row = indexOfTopLevelItem(currentItem());
    QList<QTreeWidgetItem *> items;
    for (const SitePermissions::Answer &answer : SitePermissions::all())
        items.append(new AnswerItem(answer));
    clear();
    addTopLevelItems(items);
    for (QTreeWidgetItem *item : items)
        item->setSelected(kept.contains(answerOf(item)));
    // Whoever goes through with the keyboard stays at his place.
    if (!items.isEmpty())
        selectionModel()->setCurrentIndex(
            model()->index(qBound(0, row, int(items.size()) - 1), SiteColumn),
            QItemSelectionModel::NoUpdate);
    fitColumns();
}

/// The page around has half of what both sites share, less where it needs less, more where the site
/// that asked leaves it.
void SiteList::fitColumns()
{
    const auto wanted = [this](Column column) {
        return qMax(sizeHintForColumn(column), header()->sectionSizeHint(column));
    };
    const int room = viewport()->width() - wanted(WhatColumn) - wanted(WordColumn);
    const int most = qMax(room / 2, room - wanted(SiteColumn));
    header()->resizeSection(PageColumn,
                            qMax(header()->minimumSectionSize(), qMin(wanted(PageColumn), most)));
}

void SiteList::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Delete))
        emit removeRequested();
    else
        QTreeWidget::keyPressEvent(event);
}

void SiteList::resizeEvent(QResizeEvent *event)
{
    QTreeWidget::resizeEvent(event);
    fitColumns();
}

/// Pages and other programs may have written since.
void SiteList::showEvent(QShowEvent *event)
{
    QTreeWidget::showEvent(event);
    refresh();
}
