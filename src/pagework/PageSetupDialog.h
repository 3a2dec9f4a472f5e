#pragma once

#include <QDialog>
#include <QPageLayout>

class QComboBox;
class QDialogButtonBox;
class QDoubleSpinBox;
class QFormLayout;
class QRadioButton;
class Text;

/// Asks for paper, orientation and margins. The toolkit's own dialog knows no files and forgets
/// what was chosen unless it blocks the program meanwhile.
class PageSetupDialog : public QDialog {
    Q_OBJECT

public:
    PageSetupDialog(const QPageLayout &layout, QWidget *owner);

    QPageLayout chosen() const;

private:
    void addPapers(const QPageSize &current);
    void addOrientation();
    QDoubleSpinBox *addMargin(const Text &label, qreal value);
    void check();

    QPageLayout::Unit m_unit;
    QFormLayout *m_rows;
    QComboBox *m_paper;
    QRadioButton *m_portrait;
    QRadioButton *m_landscape;
    QDoubleSpinBox *m_left;
    QDoubleSpinBox *m_top;
    QDoubleSpinBox *m_right;
    QDoubleSpinBox *m_bottom;
    QDialogButtonBox *m_buttons;
};
