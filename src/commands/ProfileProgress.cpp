#include "ProfileProgress.h"

#include <QLabel>
#include <QProgressBar>
#include <QToolButton>

#include "Texts.h"

using namespace Qt::StringLiterals;

namespace {
constexpr int barWidth = 160;
constexpr int barHeight = 6;
}

ProfileProgress::ProfileProgress(QWidget *parent)
    : QStatusBar(parent)
    , m_text(new QLabel)
    , m_bar(new QProgressBar)
    , m_stop(new QToolButton)
{
    setObjectName("profileProgress"_L1);
    m_text->setObjectName("lblLoaded"_L1);
    m_stop->setObjectName("cmdStop"_L1);
    setSizeGripEnabled(false);
    m_bar->setTextVisible(false);
    m_bar->setFixedSize(barWidth, barHeight);
    m_stop->setFocusPolicy(Qt::TabFocus);
    m_text->setContentsMargins(6, 0, 6, 0);
    addWidget(m_text);
    addWidget(m_bar);
    addWidget(m_stop);
    connect(m_stop, &QToolButton::clicked, this, &ProfileProgress::stopped);
    QStatusBar::hide();
}

void ProfileProgress::show(int loaded, int total)
{
    if (loaded >= total) {
        hide();
        return;
    }
    const QString text =
        Texts<"frmProfile">::at<"strLoaded", "%1 of %2 pages loaded">().arg(loaded).arg(total);
    m_text->setText(text);
    m_bar->setAccessibleName(text);
    m_bar->setRange(0, total);
    m_bar->setValue(loaded);
    m_stop->setText(Texts<"frmProfile">::at<"strStop", "Stop">());
    setVisible(true);
}
