#include "PageSetupDialog.h"

#include "Texts.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLocale>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
/// Millimetres; what is left of the smallest paper between them is checked before OK.
constexpr int widestMargin = 200;
constexpr qreal leastRoom = 20;

constexpr Texts<"PageSetup"> texts;

QString nameOf(QString caption)
{
    return caption.remove(u'&').remove(u':');
}

/// The papers people have; the toolkit knows a hundred more.
constexpr QPageSize::PageSizeId papers[] = {
    QPageSize::A3, QPageSize::A4,     QPageSize::A5,    QPageSize::A6,      QPageSize::B4,
    QPageSize::B5, QPageSize::Letter, QPageSize::Legal, QPageSize::Tabloid, QPageSize::Executive};
}

PageSetupDialog::PageSetupDialog(const QPageLayout &layout, QWidget *owner)
    : QDialog(owner)
    , m_unit(QLocale().measurementSystem() == QLocale::MetricSystem ? QPageLayout::Millimeter
                                                                    : QPageLayout::Inch)
    , m_rows(new QFormLayout)
    , m_paper(new QComboBox(this))
    , m_portrait(new QRadioButton(texts.at<"optPortrait", "P&ortrait">(), this))
    , m_landscape(new QRadioButton(texts.at<"optLandscape", "&Landscape">(), this))
    , m_buttons(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this))
{
    setObjectName("dlgPageSetup"_L1);
    setWindowTitle(texts.at<"Caption", "Page Setup">());
    auto *column = new QVBoxLayout(this);
    column->addLayout(m_rows);
    addPapers(layout.pageSize());
    addOrientation();
    (layout.orientation() == QPageLayout::Landscape ? m_landscape : m_portrait)->setChecked(true);
    const QMarginsF margins = layout.margins(m_unit);
    m_left = addMargin(texts.at<"txtLeft", "L&eft margin:">, margins.left());
    m_top = addMargin(texts.at<"txtTop", "&Top margin:">, margins.top());
    m_right = addMargin(texts.at<"txtRight", "&Right margin:">, margins.right());
    m_bottom = addMargin(texts.at<"txtBottom", "&Bottom margin:">, margins.bottom());
    column->addWidget(m_buttons);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_paper, &QComboBox::currentIndexChanged, this, &PageSetupDialog::check);
    connect(m_landscape, &QRadioButton::toggled, this, &PageSetupDialog::check);
}

void PageSetupDialog::addPapers(const QPageSize &current)
{
    for (const QPageSize::PageSizeId id : papers)
        m_paper->addItem(QPageSize::name(id), id);
    if (m_paper->findData(current.id()) < 0)
        m_paper->addItem(current.name(), current.id());
    m_paper->setCurrentIndex(m_paper->findData(current.id()));
    const QString caption = texts.at<"lblPaper", "&Paper:">();
    m_paper->setObjectName("cboPaper"_L1);
    m_paper->setAccessibleName(nameOf(caption));
    m_rows->addRow(caption, m_paper);
}

void PageSetupDialog::addOrientation()
{
    auto *row = new QHBoxLayout;
    m_portrait->setObjectName("optPortrait"_L1);
    m_landscape->setObjectName("optLandscape"_L1);
    for (QRadioButton *button : {m_portrait, m_landscape}) {
        button->setAccessibleName(nameOf(button->text()));
        row->addWidget(button);
    }
    row->addStretch();
    m_rows->addRow(texts.at<"lblOrientation", "Orientation:">(), row);
}

QDoubleSpinBox *PageSetupDialog::addMargin(const Text &label, qreal value)
{
    const bool metric = m_unit == QPageLayout::Millimeter;
    auto *box = new QDoubleSpinBox(this);
    const QString shown = label();
    box->setObjectName(label.name());
    box->setAccessibleName(nameOf(shown));
    box->setDecimals(metric ? 1 : 2);
    box->setSingleStep(metric ? 1 : 0.1);
    box->setRange(0, metric ? widestMargin : widestMargin / 25.0);
    box->setSuffix(metric ? u" mm"_s : u" in"_s);
    box->setValue(value);
    connect(box, &QDoubleSpinBox::valueChanged, this, &PageSetupDialog::check);
    m_rows->addRow(shown, box);
    return box;
}

QPageLayout PageSetupDialog::chosen() const
{
    return QPageLayout(
        QPageSize(m_paper->currentData().value<QPageSize::PageSizeId>()),
        m_landscape->isChecked() ? QPageLayout::Landscape : QPageLayout::Portrait,
        QMarginsF(m_left->value(), m_top->value(), m_right->value(), m_bottom->value()), m_unit);
}

/// Margins that leave no room for the page cannot be taken.
void PageSetupDialog::check()
{
    const QSizeF paper = chosen().fullRect(QPageLayout::Millimeter).size();
    const qreal scale = m_unit == QPageLayout::Millimeter ? 1 : 25.4;
    const qreal width = paper.width() - (m_left->value() + m_right->value()) * scale;
    const qreal height = paper.height() - (m_top->value() + m_bottom->value()) * scale;
    m_buttons->button(QDialogButtonBox::Ok)->setEnabled(width >= leastRoom && height >= leastRoom);
}
