#include "FontOptions.h"

#include <QComboBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QLabel>
#include <QSpinBox>

#include "Captioned.h"
#include "EngineOptions.h"
#include "OptionControls.h"

using namespace Qt::StringLiterals;

namespace {

/// Characters of a font's name that are seen; a longer one is in the list as a whole.
constexpr int shownCharacters = 22;

constexpr Texts<"frmInternetOptions"> texts;

/// Selects a family, also one that this machine has not; the empty one is the first entry.
void select(QComboBox &box, const QString &family)
{
    if (family.isEmpty()) {
        box.setCurrentIndex(0);
        return;
    }
    if (box.findText(family) < 1)
        box.addItem(family);
    box.setCurrentIndex(box.findText(family));
}

QString selected(const QComboBox &box)
{
    return box.currentIndex() > 0 ? box.currentText() : QString();
}

}

FontOptions::FontOptions()
    : QGroupBox(texts.at<"FrameFonts", "Fonts and sizes">())
    , m_layout(new QGridLayout(this))
{
    m_standard = addFont(texts.at<"lblStandardFont", "S&tandard:">);
    m_size = makeSize(u"txtFontSize"_s);
    m_size->setAccessibleName(texts.at<"txtFontSize", "Size of text">());
    m_layout->addWidget(m_size, 0, 2);
    m_fixed = addFont(texts.at<"lblFixedFont", "Fi&xed width:">);
    m_fixedSize = makeSize(u"txtFixedFontSize"_s);
    m_fixedSize->setAccessibleName(texts.at<"txtFixedFontSize", "Size of text of fixed width">());
    m_layout->addWidget(m_fixedSize, 1, 2);
    m_serif = addFont(texts.at<"lblSerifFont", "S&erif:">);
    m_sansSerif = addFont(texts.at<"lblSansSerifFont", "Sa&ns serif:">);
    m_minimum = makeSize(u"txtMinimumSize"_s);
    m_minimum->setMinimum(0);
    m_minimum->setSpecialValueText(texts.at<"strNoMinimum", "Any">());
    auto *label = captioned<QLabel>(texts.at<"lblMinimumSize", "S&mallest size:">);
    OptionControls::name(*label, *m_minimum);
    m_layout->addWidget(label, 4, 0);
    m_layout->addWidget(m_minimum, 4, 1, Qt::AlignLeft);
    m_layout->setColumnStretch(1, 1);
}

QComboBox *FontOptions::addFont(const Text &caption)
{
    static const QStringList families = QFontDatabase::families();
    auto *box = new QComboBox;
    box->setObjectName("cbo"_L1 + caption.name().mid(3));
    box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    box->setMinimumContentsLength(shownCharacters);
    box->addItem(texts.at<"strBuiltIn", "As built in">());
    box->addItems(families);
    auto *label = captioned<QLabel>(caption);
    OptionControls::name(*label, *box);
    const int row = m_layout->rowCount() == 1 && m_layout->isEmpty() ? 0 : m_layout->rowCount();
    m_layout->addWidget(label, row, 0);
    m_layout->addWidget(box, row, 1);
    return box;
}

QSpinBox *FontOptions::makeSize(const QString &name)
{
    auto *box = new QSpinBox;
    box->setObjectName(name);
    box->setRange(EngineLimits::leastFont, EngineLimits::mostFont);
    box->setSuffix(u" px"_s);
    return box;
}

void FontOptions::fill(const EngineOptions &options)
{
    select(*m_standard, options.standardFont);
    select(*m_serif, options.serifFont);
    select(*m_sansSerif, options.sansSerifFont);
    select(*m_fixed, options.fixedFont);
    m_size->setValue(options.fontSize);
    m_fixedSize->setValue(options.fixedFontSize);
    m_minimum->setValue(options.minimumFontSize);
}

void FontOptions::collect(EngineOptions &options) const
{
    options.standardFont = selected(*m_standard);
    options.serifFont = selected(*m_serif);
    options.sansSerifFont = selected(*m_sansSerif);
    options.fixedFont = selected(*m_fixed);
    options.fontSize = m_size->value();
    options.fixedFontSize = m_fixedSize->value();
    options.minimumFontSize = m_minimum->value();
}
