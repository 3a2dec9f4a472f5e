#include "TransferStrip.h"
#include "SideBarControls.h"
#include "Texts.h"

#include <QLabel>
#include <QProgressBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {
constexpr int barWidth = 160;
constexpr int barHeight = 6;
constexpr int gap = 6;

constexpr Texts<"frmFavoritesTransfer"> texts;
}

TransferStrip::TransferStrip(QWidget *parent)
    : QToolBar(parent)
    , m_text(new QLabel)
    , m_bar(new QProgressBar)
{
    setObjectName("favoritesTransfer"_L1);
    setMovable(false);
    setToolButtonStyle(Qt::ToolButtonTextOnly);
    m_text->setObjectName("lblTransfer"_L1);
    m_text->setTextFormat(Qt::PlainText);
    m_text->setContentsMargins(gap, 0, gap, 0);
    m_bar->setObjectName("prgTransfer"_L1);
    m_bar->setTextVisible(false);
    m_bar->setFixedSize(barWidth, barHeight);
    addWidget(m_text);
    m_barItem = addWidget(m_bar);
    m_stop = addAction(texts.at<"cmdStop", "Stop">(), this, &TransferStrip::stopped);
    m_list = addAction(texts.at<"cmdList", "Show List">(), this, &TransferStrip::listWanted);
    widgetForAction(m_stop)->setObjectName("cmdStopTransfer"_L1);
    widgetForAction(m_list)->setObjectName("cmdTransferList"_L1);
    auto *space = new QWidget;
    space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    addWidget(space);
    QToolButton *close = makeCloseButton(this);
    close->setObjectName("cmdCloseTransfer"_L1);
    m_close = addWidget(close);
    connect(close, &QToolButton::clicked, this, &QWidget::hide);
    for (QAction *item : {m_stop, m_list}) {
        auto *button = static_cast<QToolButton *>(widgetForAction(item));
        button->setFocusPolicy(Qt::TabFocus);
        // A word alone is not seen to be a button.
        button->setAutoRaise(false);
    }
    // What is shown changes, its height does not.
    setMinimumHeight(sizeHint().height());
}

void TransferStrip::setRunning(bool running)
{
    m_barItem->setVisible(running);
    m_stop->setVisible(running);
    m_close->setVisible(!running);
    m_list->setVisible(false);
}

void TransferStrip::begin(const QString &text)
{
    m_text->setText(text);
    m_bar->setAccessibleName(text);
    setProgress(0);
    setRunning(true);
    show();
}

void TransferStrip::setProgress(int percent)
{
    m_bar->setRange(0, percent == 0 ? 0 : 100);
    m_bar->setValue(percent);
}

void TransferStrip::end(const QString &text, bool hasList)
{
    m_text->setText(text);
    setRunning(false);
    m_list->setVisible(hasList);
}
