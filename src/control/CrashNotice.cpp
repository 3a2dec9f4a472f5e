#include "CrashNotice.h"

#include "Language.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

CrashNotice::CrashNotice(QWidget *parent)
    : QWidget(parent)
{
    setAutoFillBackground(true);
    auto *label = new QLabel(
        languageText(u"frmBrowser"_s, u"strPageEnded"_s, u"This page has stopped working."_s),
        this);
    label->setObjectName(u"lblPageEnded"_s);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignCenter);
    auto *reload =
        new QPushButton(languageText(u"frmBrowser"_s, u"cmdReload"_s, u"&Reload"_s), this);
    reload->setObjectName(u"cmdReload"_s);
    connect(reload, &QPushButton::clicked, this, &CrashNotice::reloadPressed);

    auto *layout = new QVBoxLayout(this);
    layout->addStretch();
    layout->addWidget(label);
    layout->addWidget(reload, 0, Qt::AlignHCenter);
    layout->addStretch();
}
