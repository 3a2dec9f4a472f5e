#include "InternetOptionsDialog.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QScreen>
#include <QTabWidget>
#include <QVBoxLayout>

#include "AppFolder.h"
#include "EngineData.h"
#include "EngineOptions.h"
#include "Forms.h"
#include "Frame.h"
#include "InternetAdvancedPage.h"
#include "InternetGeneralPage.h"
#include "InternetSitesPage.h"
#include "InternetSpellingPage.h"
#include "NotSaved.h"
#include "OptionsButtons.h"
#include "Texts.h"

using namespace Qt::StringLiterals;

namespace {

/// Pixels.
constexpr int roomForTitle = 40;

constexpr Texts<"frmInternetOptions"> texts;

}

void InternetOptionsDialog::showOver(Frame &frame, Page page)
{
    const QList<QWidget *> open = Forms::named("frmInternetOptions");
    auto *form = open.isEmpty() ? new InternetOptionsDialog(frame.window())
                                : qobject_cast<InternetOptionsDialog *>(open.first());
    form->openOn(page);
}

InternetOptionsDialog::InternetOptionsDialog(QWidget *owner)
    : QDialog(owner)
    , m_data(makeEngineData(this))
    , m_pages(new QTabWidget)
    , m_general(new InternetGeneralPage(*m_data))
    , m_advanced(new InternetAdvancedPage)
    , m_spelling(new InternetSpellingPage)
{
    setObjectName("frmInternetOptions"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(texts.at<"Caption", "Internet Options">());
    Forms::add(this);

    m_pages->setObjectName("tabPages"_L1);
    m_pages->addTab(m_general, texts.at<"FrameGeneral", "&General">());
    m_pages->addTab(m_advanced, texts.at<"FrameAdvanced", "&Advanced">());
    m_pages->addTab(new InternetSitesPage, texts.at<"FrameSites", "S&ites">());
    m_pages->addTab(m_spelling, texts.at<"FrameSpelling", "Spelling">());
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_pages);
    layout->addWidget(makeButtons());
    // Only inside its dialog does a button become the one that Enter presses.
    findChild<QPushButton *>(u"cmdSave"_s)->setDefault(true);

    const EngineOptions options = EngineOptions::read();
    m_general->fill(options);
    m_advanced->fill(options);
    m_spelling->fill(options);
    // By itself a dialog takes no more than two thirds of the screen.
    const QSize room = screen()->availableSize() - QSize(0, roomForTitle);
    resize(sizeHint().boundedTo(room));
}

QWidget *InternetOptionsDialog::makeButtons()
{
    const OptionsButtons buttons(texts.at<"cmdApply", "A&pply">, texts.at<"cmdCancel", "&Cancel">,
                                 texts.at<"cmdSave", "&Save">);
    connect(buttons.apply, &QPushButton::clicked, this, &InternetOptionsDialog::applyOptions);
    connect(buttons.cancel, &QPushButton::clicked, this, &QDialog::close);
    connect(buttons.save, &QPushButton::clicked, this, [this] {
        if (applyOptions())
            close();
    });
    return buttons.box;
}

void InternetOptionsDialog::openOn(Page page)
{
    setPage(page);
    if (isVisible()) {
        raise();
        activateWindow();
    } else {
        open();
    }
}

void InternetOptionsDialog::setPage(Page page)
{
    m_pages->setCurrentIndex(page == Page::General ? 0 : 1);
}

/// False when something cannot be used, with the control that is to be put right in front, and
/// when nothing was kept, which the user is told; what acts at once acts all the same.
bool InternetOptionsDialog::applyOptions()
{
    if (!m_advanced->check()) {
        setPage(Page::Advanced);
        return false;
    }
    EngineOptions options;
    m_general->collect(options);
    m_advanced->collect(options);
    m_spelling->collect(options);
    const WriteResult result = options.write();
    m_data->use(options);
    if (!result)
        NotSaved::tell(this, EngineOptions::path(), result);
    const WriteResult kept = m_advanced->writeSettings();
    if (result && !kept)
        NotSaved::tell(this, AppFolder::settingsPath(), kept);
    return bool(result) && bool(kept);
}
