#pragma once

#include "WriteResult.h"

#include <QScrollArea>

class FontOptions;
class NetworkOptions;
class SleepOptions;
class QCheckBox;
class QGroupBox;
struct EngineOptions;

/// The second page of the internet options: how the engine shows pages, and how it reaches them. It
/// scrolls where the screen is too low for it.
class InternetAdvancedPage : public QScrollArea {
    Q_OBJECT

public:
    InternetAdvancedPage();

    void fill(const EngineOptions &options);
    /// False, with a message and the focus on the control, when something cannot be used.
    bool check();
    void collect(EngineOptions &options) const;
    /// What is no option of the engine.
    WriteResult writeSettings() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

private:
    QGroupBox *makePages();

    QList<QCheckBox *> m_switches;
    FontOptions *m_fonts;
    NetworkOptions *m_network;
    SleepOptions *m_sleep;
};
