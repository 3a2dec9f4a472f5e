#include "CrashNotice.h"

#include "Captioned.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

CrashNotice::CrashNotice(QWidget *parent)
    : QWidget(parent)
{
    setAutoFillBackground(true);
    auto *label = new QLabel(
        Texts<"frmBrowser">::at<"strPageEnded", "This page has stopped working.">(), this);
    label->setObjectName(u"lblPageEnded"_s);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignCenter);
    auto *reload = captioned<QPushButton>(Texts<"frmBrowser">::at<"cmdReload", "&Reload">, this);
    connect(reload, &QPushButton::clicked, this, &CrashNotice::reloadPressed);

    auto *layout = new QVBoxLayout(this);
    layout->addStretch();
    layout->addWidget(label);
    layout->addWidget(reload, 0, Qt::AlignHCenter);
    layout->addStretch();
}
