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

QString shownOf(const SiteZoom::Kept &kept)
{
    // As a page of it is named; the scheme makes no difference here.
    const QString secure = shownSite(QUrl("https://"_L1 + kept.site));
    return kept.site.endsWith(u':') ? kept.site : secure.section("//"_L1, 1);
}

QStringList cellsOf(const SitePermissions::Answer &answer)
{
    return {shownSite(QUrl(answer.site.asker)), shownSite(QUrl(answer.site.page)), whatText(answer),
            wordText(answer.word)};
}

QStringList cellsOf(const SiteZoom::Kept &kept)
{
    return {shownOf(kept), QString(), texts.at<"strZoom", "Zoom">(),
            Texts<"frmBrowser">::at<"strZoom", "%1%">().arg(kept.percent)};
}

class KeptItem : public QTreeWidgetItem {
public:
    explicit KeptItem(const SiteList::Kept &shown)
        : QTreeWidgetItem(std::visit([](const auto &each) { return cellsOf(each); }, shown))
        , kept(shown)
    {
        for (const Column column : {SiteColumn, PageColumn})
            setToolTip(column, text(column));
    }
    SiteList::Kept kept;
};

const SiteList::Kept &keptOf(const QTreeWidgetItem *item)
{
    return static_cast<const KeptItem *>(item)->kept;
}

QList<SiteList::Kept> allKept()
{
    QList<SiteList::Kept> result;
    for (const SitePermissions::Answer &answer : SitePermissions::all())
        result.append(answer);
    for (const SiteZoom::Kept &zoom : SiteZoom::all())
        result.append(zoom);
    return result;
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

QList<SiteList::Kept> SiteList::selected() const
{
    QList<Kept> result;
    for (const QTreeWidgetItem *item : selectedItems())
        result.append(keptOf(item));
    return result;
}

void SiteList::refresh()
{
    const QList<Kept> kept = selected();
    const int row = indexOfTopLevelItem(currentItem());
    QList<QTreeWidgetItem *> items;
    for (const Kept &each : allKept())
        items.append(new KeptItem(each));
    clear();
    addTopLevelItems(items);
    for (QTreeWidgetItem *item : items)
        item->setSelected(kept.contains(keptOf(item)));
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
