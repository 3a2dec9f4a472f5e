#include "InternetAdvancedPage.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

#include "Captioned.h"
#include "EngineOptions.h"
#include "FontOptions.h"
#include "NetworkOptions.h"
#include "OptionControls.h"
#include "SleepOptions.h"

using namespace Qt::StringLiterals;

namespace {

constexpr Texts<"frmInternetOptions"> texts;

struct LabelledSwitch {
    const Text *caption;
    bool EngineOptions::*value;
    bool actsAtNextStart = false;
};
/// From top to bottom.
const LabelledSwitch labelledSwitches[] = {
    {&texts.at<"chkScripts", "&Run scripts">, &EngineOptions::scripts},
    {&texts.at<"chkImages", "Show &images">, &EngineOptions::images},
    {&texts.at<"chkPdf", "Show PD&F files in the page">, &EngineOptions::pdfInPage},
    {&texts.at<"chkHardware", "Use the grap&hics device">, &EngineOptions::hardwareRendering, true},
};

}

InternetAdvancedPage::InternetAdvancedPage()
    : m_fonts(new FontOptions)
    , m_network(new NetworkOptions)
    , m_sleep(new SleepOptions)
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
    layout->addWidget(m_sleep);
    layout->addStretch();
    setWidget(contents);
    // The page's own ground, as the other page has it.
    viewport()->setAutoFillBackground(false);
    contents->setAutoFillBackground(false);
}

QGroupBox *InternetAdvancedPage::makePages()
{
    auto *group = new QGroupBox(texts.at<"FramePages", "Pages">());
    auto *layout = new QGridLayout(group);
    for (const LabelledSwitch &each : labelledSwitches) {
        const int row = int(m_switches.size());
        auto *box = captioned<QCheckBox>(*each.caption);
        layout->addWidget(box, row, 0, 1, each.actsAtNextStart ? 1 : 2);
        if (each.actsAtNextStart)
            layout->addWidget(OptionControls::nextStartNote(*box), row, 1);
        m_switches.append(box);
    }
    layout->setColumnStretch(1, 1);
    return group;
}

void InternetAdvancedPage::fill(const EngineOptions &options)
{
    for (qsizetype i = 0; i < m_switches.size(); ++i)
        m_switches.at(i)->setChecked(options.*labelledSwitches[i].value);
    m_fonts->fill(options);
    m_network->fill(options);
    m_sleep->fill();
}

bool InternetAdvancedPage::check()
{
    return m_network->check();
}

void InternetAdvancedPage::collect(EngineOptions &options) const
{
    for (qsizetype i = 0; i < m_switches.size(); ++i)
        options.*labelledSwitches[i].value = m_switches.at(i)->isChecked();
    m_fonts->collect(options);
    m_network->collect(options);
}

WriteResult InternetAdvancedPage::writeSettings() const
{
    return m_sleep->write();
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
