#include "InternetAdvancedPage.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

#include "EngineOptions.h"
#include "FontOptions.h"
#include "NetworkOptions.h"
#include "OptionControls.h"
#include "Texts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Texts<"frmInternetOptions"> texts;

QCheckBox *makeCheckBox(const Text &caption)
{
    auto *box = new QCheckBox(caption());
    box->setObjectName(caption.name());
    return box;
}

}

InternetAdvancedPage::InternetAdvancedPage()
    : m_fonts(new FontOptions)
    , m_network(new NetworkOptions)
{
    setObjectName("pageAdvanced"_L1);
    setFrameShape(NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    auto *contents = new QWidget;
    auto *layout = new QVBoxLayout(contents);
    layout->addWidget(makePages());
    layout->addWidget(m_fonts);
    layout->addWidget(m_network);
    layout->addStretch();
    setWidget(contents);
    // The page's own ground, as the other page has it.
    viewport()->setAutoFillBackground(false);
    contents->setAutoFillBackground(false);
}

QGroupBox *InternetAdvancedPage::makePages()
{
    auto *group = new QGroupBox(texts.at<"FramePages", "Pages">());
    m_chkScripts = makeCheckBox(texts.at<"chkScripts", "&Run scripts">);
    m_chkImages = makeCheckBox(texts.at<"chkImages", "Show &images">);
    m_chkPdf = makeCheckBox(texts.at<"chkPdf", "Show PD&F files in the page">);
    m_chkHardware = makeCheckBox(texts.at<"chkHardware", "Use the grap&hics device">);
    auto *layout = new QGridLayout(group);
    layout->addWidget(m_chkScripts, 0, 0, 1, 2);
    layout->addWidget(m_chkImages, 1, 0, 1, 2);
    layout->addWidget(m_chkPdf, 2, 0, 1, 2);
    layout->addWidget(m_chkHardware, 3, 0);
    layout->addWidget(OptionControls::nextStartNote(*m_chkHardware), 3, 1);
    layout->setColumnStretch(1, 1);
    return group;
}

void InternetAdvancedPage::fill(const EngineOptions &options)
{
    m_chkScripts->setChecked(options.scripts);
    m_chkImages->setChecked(options.images);
    m_chkPdf->setChecked(options.pdfInPage);
    m_chkHardware->setChecked(options.hardwareRendering);
    m_fonts->fill(options);
    m_network->fill(options);
}

bool InternetAdvancedPage::check()
{
    return m_network->check();
}

void InternetAdvancedPage::collect(EngineOptions &options) const
{
    options.scripts = m_chkScripts->isChecked();
    options.images = m_chkImages->isChecked();
    options.pdfInPage = m_chkPdf->isChecked();
    options.hardwareRendering = m_chkHardware->isChecked();
    m_fonts->collect(options);
    m_network->collect(options);
}

QSize InternetAdvancedPage::sizeHint() const
{
    return widget()->sizeHint() + QSize(verticalScrollBar()->sizeHint().width(), 0);
}

/// Never so narrow that it would have to scroll sideways.
QSize InternetAdvancedPage::minimumSizeHint() const
{
    return {sizeHint().width(), QScrollArea::minimumSizeHint().height()};
}
