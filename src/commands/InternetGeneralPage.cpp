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

#include "CookieTree.h"
#include "EngineData.h"
#include "EngineOptions.h"
#include "Language.h"
#include "MsgBox.h"
#include "OptionControls.h"

using namespace Qt::StringLiterals;

namespace {

QString translated(const QString &key, const QString &english)
{
    return languageText(u"frmInternetOptions"_s, key, english);
}

QPushButton *makeButton(const QString &name, const QString &english)
{
    auto *button = new QPushButton(translated(name, english));
    button->setObjectName(name);
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
    auto *group = new QGroupBox(translated(u"FrameCache"_s, u"Cache"_s));
    m_lblCacheUsed = new QLabel(translated(u"strMeasuring"_s, u"The cache is being measured"_s));
    m_lblCacheUsed->setObjectName("lblCacheUsed"_L1);
    QPushButton *clear = makeButton(u"cmdClearCache"_s, u"C&lear Cache"_s);
    connect(clear, &QPushButton::clicked, &m_data, &EngineData::clearCache);
    m_spnCacheLimit = new QSpinBox;
    m_spnCacheLimit->setObjectName("txtCacheLimit"_L1);
    m_spnCacheLimit->setRange(0, EngineLimits::cache);
    m_spnCacheLimit->setSuffix(u" MB"_s);
    m_spnCacheLimit->setSpecialValueText(translated(u"strAutomatic"_s, u"Automatic"_s));
    auto *limit = new QLabel(translated(u"lblCacheLimit"_s, u"At &most:"_s));
    limit->setObjectName("lblCacheLimit"_L1);
    OptionControls::name(*limit, *m_spnCacheLimit);
    auto *layout = new QGridLayout(group);
    layout->addWidget(m_lblCacheUsed, 0, 0, 1, 3);
    layout->addWidget(clear, 0, 3);
    layout->addWidget(limit, 1, 0);
    layout->addWidget(m_spnCacheLimit, 1, 1);
    layout->addWidget(OptionControls::nextStartNote(*m_spnCacheLimit), 1, 2, 1, 2);
    layout->setColumnStretch(2, 1);
    return group;
}

QWidget *InternetGeneralPage::makeCookies()
{
    auto *group = new QGroupBox(translated(u"FrameCookies"_s, u"Cookies"_s));
    m_chkThirdParty = new QCheckBox(
        translated(u"chkThirdParty"_s, u"&Refuse cookies of other sites than the page's"_s));
    m_chkThirdParty->setObjectName("chkThirdParty"_L1);
    m_lstCookies = new CookieTree(m_data);
    m_lstCookies->setAccessibleName(translated(u"lstCookies"_s, u"Cookies by site"_s));
    m_cmdDelete = makeButton(u"cmdDeleteCookies"_s, u"&Delete"_s);
    m_cmdDeleteAll = makeButton(u"cmdDeleteAllCookies"_s, u"Delete All C&ookies"_s);
    const auto enable = [this] {
        m_cmdDelete->setEnabled(!m_lstCookies->selectedItems().isEmpty());
        m_cmdDeleteAll->setEnabled(m_lstCookies->topLevelItemCount() > 0);
    };
    connect(m_lstCookies, &QTreeWidget::itemSelectionChanged, this, enable);
    connect(m_lstCookies, &CookieTree::refreshed, this, enable);
    enable();
    connect(m_cmdDelete, &QPushButton::clicked, m_lstCookies, &CookieTree::deleteSelected);
    connect(m_cmdDeleteAll, &QPushButton::clicked, this, &InternetGeneralPage::askToDeleteAll);
    auto *layout = new QGridLayout(group);
    layout->addWidget(m_chkThirdParty, 0, 0, 1, 3);
    layout->addWidget(m_lstCookies, 1, 0, 1, 3);
    layout->addWidget(m_cmdDelete, 2, 1);
    layout->addWidget(m_cmdDeleteAll, 2, 2);
    layout->setColumnStretch(0, 1);
    return group;
}

QWidget *InternetGeneralPage::makeLinks()
{
    auto *group = new QGroupBox(translated(u"FrameLinks"_s, u"Visited links"_s));
    m_lblLinks = new QLabel(translated(
        u"strLinks"_s, u"Links to pages you have been to are shown in another color."_s));
    m_lblLinks->setObjectName("lblLinks"_L1);
    QPushButton *clear = makeButton(u"cmdClearLinks"_s, u"Clear &Visited Links"_s);
    connect(clear, &QPushButton::clicked, this, [this] {
        m_data.clearVisitedLinks();
        m_lblLinks->setText(
            translated(u"strLinksCleared"_s, u"No link counts as visited any more."_s));
    });
    auto *layout = new QVBoxLayout(group);
    layout->addWidget(m_lblLinks);
    layout->addWidget(clear, 0, Qt::AlignRight);
    return group;
}

void InternetGeneralPage::fill(const EngineOptions &options)
{
    m_spnCacheLimit->setValue(options.cacheLimit);
    m_chkThirdParty->setChecked(options.refuseThirdPartyCookies);
}

void InternetGeneralPage::collect(EngineOptions &options) const
{
    options.cacheLimit = m_spnCacheLimit->value();
    options.refuseThirdPartyCookies = m_chkThirdParty->isChecked();
}

void InternetGeneralPage::showCacheSize(qint64 bytes)
{
    m_lblCacheUsed->setText(
        m_data.isStored()
            ? translated(u"strCacheUsed"_s, u"In use: %1"_s)
                  .arg(QLocale().formattedDataSize(bytes, 1, QLocale::DataSizeTraditionalFormat))
            : translated(
                u"strNotStored"_s,
                u"Another running program has the stored data. This one keeps nothing."_s));
}

void InternetGeneralPage::askToDeleteAll()
{
    MsgBox::ask(
        this,
        translated(u"strDeleteAll"_s,
                   u"Delete the cookies of all sites? Where you are signed in, you will not be "
                   u"any more."_s),
        window()->windowTitle(), [data = QPointer(&m_data)](MsgBox::Answer answer) {
            if (data && answer == MsgBox::Answer::Yes)
                data->deleteAllCookies();
        });
}
