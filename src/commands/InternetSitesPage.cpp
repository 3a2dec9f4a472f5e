#include "InternetSitesPage.h"

#include "Captioned.h"
#include "MsgBox.h"
#include "NotSaved.h"
#include "SiteList.h"
#include "ZoomKeeper.h"

#include <QGridLayout>
#include <QLabel>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"frmInternetOptions"> texts;

QPushButton *makeButton(const Text &caption)
{
    auto *button = captioned<QPushButton>(caption);
    button->setAutoDefault(false);
    return button;
}
}

InternetSitesPage::InternetSitesPage()
    : m_list(new SiteList)
    , m_remove(makeButton(texts.at<"cmdRemoveSite", "Re&move">))
    , m_removeAll(makeButton(texts.at<"cmdRemoveAllSites", "Rem&ove All">))
{
    setObjectName("pageSites"_L1);
    auto *label = captioned<QLabel>(
        texts.at<"lblSites",
                 "What you a&nswered sites for good, and the zoom of their pages. What is "
                 "removed is asked again, or shown as usual.">);
    label->setWordWrap(true);
    label->setBuddy(m_list);
    m_list->setAccessibleName(texts.at<"lstSites", "Answers by site">());
    connect(m_list, &QTreeWidget::itemSelectionChanged, this, &InternetSitesPage::enable);
    connect(m_list->model(), &QAbstractItemModel::rowsInserted, this, &InternetSitesPage::enable);
    connect(m_list->model(), &QAbstractItemModel::modelReset, this, &InternetSitesPage::enable);
    connect(m_list, &SiteList::removeRequested, this, &InternetSitesPage::removeSelected);
    connect(m_remove, &QPushButton::clicked, this, &InternetSitesPage::removeSelected);
    connect(m_removeAll, &QPushButton::clicked, this, &InternetSitesPage::askToRemoveAll);
    auto *layout = new QGridLayout(this);
    layout->addWidget(label, 0, 0, 1, 3);
    layout->addWidget(m_list, 1, 0, 1, 3);
    layout->addWidget(m_remove, 2, 1);
    layout->addWidget(m_removeAll, 2, 2);
    layout->setColumnStretch(0, 1);
    enable();
}

/// The list empties itself as it goes, after the page has.
InternetSitesPage::~InternetSitesPage()
{
    m_list->disconnect(this);
    m_list->model()->disconnect(this);
}

void InternetSitesPage::enable()
{
    m_remove->setEnabled(!m_list->selectedItems().isEmpty());
    m_removeAll->setEnabled(m_list->topLevelItemCount() > 0);
}

void InternetSitesPage::removeSelected()
{
    QList<SitePermissions::Answer> answers;
    QStringList zoomed;
    for (const SiteList::Kept &kept : m_list->selected()) {
        if (const auto *answer = std::get_if<SitePermissions::Answer>(&kept))
            answers.append(*answer);
        else
            zoomed.append(std::get<SiteZoom::Kept>(kept).site);
    }
    if (!answers.isEmpty())
        finish(SitePermissions::path(), SitePermissions::remove(answers));
    if (!zoomed.isEmpty())
        finish(SiteZoom::path(), ZoomKeeper::instance().forget(zoomed));
}

void InternetSitesPage::askToRemoveAll()
{
    MsgBox::ask(this,
                texts.at<"strRemoveAllSites",
                         "Remove what you answered all sites, and the zoom of their pages? They "
                         "will ask you again.">(),
                window()->windowTitle(), [self = QPointer(this)](MsgBox::Answer answer) {
                    if (self && answer == MsgBox::Answer::Yes)
                        self->removeAll();
                });
}

void InternetSitesPage::removeAll()
{
    finish(SitePermissions::path(), SitePermissions::removeAll());
    finish(SiteZoom::path(), ZoomKeeper::instance().forgetAll());
}

void InternetSitesPage::finish(const QString &file, const WriteResult &result)
{
    m_list->refresh();
    // The button that was pressed may be no use any more, and would leave the keyboard nowhere.
    if (!m_list->topLevelItemCount() || m_list->selectedItems().isEmpty())
        m_list->setFocus();
    enable();
    if (!result)
        NotSaved::tell(this, file, result);
}
