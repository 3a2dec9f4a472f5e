#pragma once

#include <QGroupBox>

struct EngineOptions;
class QComboBox;
class QGridLayout;
class QSpinBox;
class Text;

/// Fonts and sizes for pages that name none, and the size that no text goes below.
class FontOptions : public QGroupBox {
    Q_OBJECT

public:
    FontOptions();

    void fill(const EngineOptions &options);
    void collect(EngineOptions &options) const;

private:
    QComboBox *addFont(const Text &caption);
    QSpinBox *makeSize(const QString &name);

    QGridLayout *m_layout;
    QComboBox *m_standard;
    QComboBox *m_serif;
    QComboBox *m_sansSerif;
    QComboBox *m_fixed;
    QSpinBox *m_size;
    QSpinBox *m_fixedSize;
    QSpinBox *m_minimum;
};
