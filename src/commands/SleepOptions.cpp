#include "SleepOptions.h"

#include <QGridLayout>
#include <QLabel>
#include <QSpinBox>

#include "Captioned.h"
#include "OptionControls.h"
#include "Settings.h"
#include "SleepRules.h"

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"frmInternetOptions"> texts;

QSpinBox *makeNumber(const QString &name, int most, const QString &suffix)
{
    auto *box = new QSpinBox;
    box->setObjectName(name);
    box->setRange(0, most);
    box->setSuffix(suffix);
    box->setSpecialValueText(texts.at<"strNever", "Never">());
    return box;
}
}

SleepOptions::SleepOptions()
    : QGroupBox(texts.at<"FrameSleep", "Windows that nobody looks at give their pages up">())
    , m_after(makeNumber(u"txtSleepAfter"_s, Settings::longestSleepAfter,
                         u' ' + texts.at<"strMinutes", "minutes">()))
    , m_memory(makeNumber(u"txtSleepMemory"_s, Settings::mostSleepMemory, u" %"_s))
{
    auto *layout = new QGridLayout(this);
    auto *after = captioned<QLabel>(texts.at<"lblSleepAfter", "After:">);
    OptionControls::name(*after, *m_after);
    auto *memory = captioned<QLabel>(
        texts.at<"lblSleepMemory", "Above this part of the memory free at the start:">);
    OptionControls::name(*memory, *m_memory);
    layout->addWidget(after, 0, 0);
    layout->addWidget(m_after, 0, 1);
    layout->addWidget(memory, 1, 0);
    layout->addWidget(m_memory, 1, 1);
    layout->setColumnStretch(2, 1);
}

void SleepOptions::fill()
{
    m_after->setValue(int(SleepRules::after().count()));
    m_memory->setValue(SleepRules::memoryShare());
}

WriteResult SleepOptions::write() const
{
    return Settings::write({Settings::sleepAfter.entry(m_after->value()),
                            Settings::sleepMemory.entry(m_memory->value())});
}
