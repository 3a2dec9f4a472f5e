#pragma once

#include <QGroupBox>

class QComboBox;
class QGridLayout;
class QSpinBox;
struct EngineOptions;

/// Fonts and sizes for pages that name none, and the size that no text goes below.
class FontOptions : public QGroupBox {
    Q_OBJECT

public:
    FontOptions();

    void fill(const EngineOptions &options);
    void collect(EngineOptions &options) const;

private:
    QComboBox *addFont(const QString &name, const QString &english);
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
