#include "InternetGeneralPage.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLocale>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "Captioned.h"
#include "CookieTree.h"
#include "EngineData.h"
#include "EngineOptions.h"
#include "MsgBox.h"
#include "OptionControls.h"

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

InternetGeneralPage::InternetGeneralPage(EngineData &engine)
    : m_data(engine)
{
    setObjectName("pageGeneral"_L1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeCache());
    layout->addWidget(makeCookies(), 1);
    layout->addWidget(makeLinks());
    connect(&engine, &EngineData::cacheMeasured, this, &InternetGeneralPage::showCacheSize);
    engine.measureCache();
}

QWidget *InternetGeneralPage::makeCache()
{
    auto *group = new QGroupBox(texts.at<"FrameCache", "Cache">());
    m_cacheUsed = new QLabel(texts.at<"strMeasuring", "The cache is being measured">());
    m_cacheUsed->setObjectName("lblCacheUsed"_L1);
    QPushButton *clear = makeButton(texts.at<"cmdClearCache", "C&lear Cache">);
    connect(clear, &QPushButton::clicked, &m_data, &EngineData::clearCache);
    m_cacheLimit = new QSpinBox;
    m_cacheLimit->setObjectName("txtCacheLimit"_L1);
    m_cacheLimit->setRange(0, EngineLimits::cache);
    m_cacheLimit->setSuffix(u" MB"_s);
    m_cacheLimit->setSpecialValueText(texts.at<"strAutomatic", "Automatic">());
    auto *limit = captioned<QLabel>(texts.at<"lblCacheLimit", "At &most:">);
    OptionControls::name(*limit, *m_cacheLimit);
    auto *layout = new QGridLayout(group);
    layout->addWidget(m_cacheUsed, 0, 0, 1, 3);
    layout->addWidget(clear, 0, 3);
    layout->addWidget(limit, 1, 0);
    layout->addWidget(m_cacheLimit, 1, 1);
    layout->addWidget(OptionControls::nextStartNote(*m_cacheLimit), 1, 2, 1, 2);
    layout->setColumnStretch(2, 1);
    return group;
}

QWidget *InternetGeneralPage::makeCookies()
{
    auto *group = new QGroupBox(texts.at<"FrameCookies", "Cookies">());
    m_refuseThirdParty = captioned<QCheckBox>(
        texts.at<"chkThirdParty", "&Refuse cookies of other sites than the page's">);
    m_cookies = new CookieTree(m_data);
    m_cookies->setAccessibleName(texts.at<"lstCookies", "Cookies by site">());
    m_delete = makeButton(texts.at<"cmdDeleteCookies", "&Delete">);
    m_deleteAll = makeButton(texts.at<"cmdDeleteAllCookies", "Delete All C&ookies">);
    const auto enable = [this] {
        m_delete->setEnabled(!m_cookies->selectedItems().isEmpty());
        m_deleteAll->setEnabled(m_cookies->topLevelItemCount() > 0);
    };
    connect(m_cookies, &QTreeWidget::itemSelectionChanged, this, enable);
    connect(m_cookies, &CookieTree::refreshed, this, enable);
    enable();
    connect(m_delete, &QPushButton::clicked, m_cookies, &CookieTree::deleteSelected);
    connect(m_deleteAll, &QPushButton::clicked, this, &InternetGeneralPage::askToDeleteAll);
    auto *layout = new QGridLayout(group);
    layout->addWidget(m_refuseThirdParty, 0, 0, 1, 3);
    layout->addWidget(m_cookies, 1, 0, 1, 3);
    layout->addWidget(m_delete, 2, 1);
    layout->addWidget(m_deleteAll, 2, 2);
    layout->setColumnStretch(0, 1);
    return group;
}

QWidget *InternetGeneralPage::makeLinks()
{
    auto *group = new QGroupBox(texts.at<"FrameLinks", "Visited links">());
    m_visitedLinks = new QLabel(
        texts.at<"strLinks", "Links to pages you have been to are shown in another color.">());
    m_visitedLinks->setObjectName("lblLinks"_L1);
    QPushButton *clear = makeButton(texts.at<"cmdClearLinks", "Clear &Visited Links">);
    connect(clear, &QPushButton::clicked, this, [this] {
        m_data.clearVisitedLinks();
        m_visitedLinks->setText(
            texts.at<"strLinksCleared", "No link counts as visited any more.">());
    });
    auto *layout = new QVBoxLayout(group);
    layout->addWidget(m_visitedLinks);
    layout->addWidget(clear, 0, Qt::AlignRight);
    return group;
}

void InternetGeneralPage::fill(const EngineOptions &options)
{
    m_cacheLimit->setValue(options.cacheLimit);
    m_refuseThirdParty->setChecked(options.refuseThirdPartyCookies);
}

void InternetGeneralPage::collect(EngineOptions &options) const
{
    options.cacheLimit = m_cacheLimit->value();
    options.refuseThirdPartyCookies = m_refuseThirdParty->isChecked();
}

void InternetGeneralPage::showCacheSize(qint64 bytes)
{
    m_cacheUsed->setText(
        m_data.isStored()
            ? texts.at<"strCacheUsed", "In use: %1">().arg(
                QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat))
            : texts.at<"strNotStored",
                       "Another running program has the stored data. This one keeps nothing.">());
}

void InternetGeneralPage::askToDeleteAll()
{
    MsgBox::ask(
        this,
        texts.at<"strDeleteAll",
                 "Delete the cookies of all sites? Where you are signed in, you will not be "
                 "any more.">(),
        window()->windowTitle(), [data = QPointer(&m_data)](MsgBox::Answer answer) {
            if (data && answer == MsgBox::Answer::Yes)
                data->deleteAllCookies();
        });
}
