#include "OptionsDialog.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "AppFolder.h"
#include "BrowserWindow.h"
#include "Captioned.h"
#include "DefaultBrowserChoice.h"
#include "Forms.h"
#include "Frame.h"
#include "LanguageFiles.h"
#include "NotSaved.h"
#include "OptionsButtons.h"
#include "ProgramInfo.h"
#include "StartUp.h"
#include "WebBrowser.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int blankPage = 0;
constexpr int currentPageIndex = 1;
constexpr int defaultPage = 2;
constexpr int comfortableWidth = 440;

constexpr Texts<"frmOptions"> texts;

struct LabelledSwitch {
    const char *group;
    /// Its key is the name of the setting's check box.
    const Text *caption;
};
/// From top to bottom.
const LabelledSwitch labelledSwitches[] = {
    {"FrameOptions1", &texts.at<"chkAskOnExit", "Ask On Exit">},
    {"FrameOptions1", &texts.at<"chkShowSplashScreen", "Show Splash Screen At Startup">},
    {"FrameOptions2", &texts.at<"chkMaxCatcher", "Maximize Catcher On By Default">},
    {"FrameOptions2", &texts.at<"chkKillPopups", "Kill Popup Windows By Default">},
    {"FrameOptions2", &texts.at<"chkSuppressScriptErrors", "Suppress Script Errors By Default">},
    {"FrameOptions3", &texts.at<"chkOpenLastDesk", "Open The Last Desk At Startup">},
    {"FrameOptions3",
     &texts.at<"chkBackspaceGoesBack", "Backspace Goes Back (In Pages, Outside Of Fields)">},
    {"FrameOptions3",
     &texts.at<"chkPagesFollowColours", "Pages Follow The Desktop's Dark Colours">},
};

QGroupBox *makeGroup(const char *name)
{
    auto *group = new QGroupBox;
    group->setObjectName(QLatin1StringView(name));
    return group;
}

/// A caption without the marks of its access key.
QString plainCaption(QString caption)
{
    return caption.remove(u'&');
}

/// False when the stored text is no number that fits a check box's 16 bits.
bool fill(QCheckBox &box, const Settings::Switch &setting)
{
    const std::optional<double> number = setting.readNumber();
    if (!number)
        return false;
    const double whole = std::nearbyint(*number);
    if (whole < -32768 || whole > 32767)
        return false;
    box.setChecked(whole == 1);
    return true;
}

QString addressOfCurrentPage(const Frame &frame)
{
    const BrowserWindow *active = activeBrowser(frame);
    return active ? active->browser()->locationUrl() : Settings::homeUrl.read();
}

}

void OptionsDialog::showOver(Frame &frame, StartUpFrame &program)
{
    const QList<QWidget *> open = Forms::named("frmOptions");
    if (!open.isEmpty()) {
        open.first()->raise();
        open.first()->activateWindow();
        return;
    }
    auto *form = new OptionsDialog(frame, program);
    form->load();
    form->setCurrentPage(addressOfCurrentPage(frame));
    form->open();
}

OptionsDialog::OptionsDialog(Frame &frame, StartUpFrame &program)
    : QDialog(frame.window())
    , m_frame(frame)
    , m_program(program)
{
    setObjectName("frmOptions"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(texts.at<"Caption", "Options">.inEnglish());
    Forms::add(this);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeHomePage());
    layout->addWidget(makeSwitches("FrameOptions1"));
    layout->addWidget(makeSwitches("FrameOptions2"));
    layout->addWidget(makeLanguage());
    QWidget *others = makeSwitches("FrameOptions3");
    others->layout()->addWidget(DefaultBrowserChoice::makeButton());
    layout->addWidget(others);
    layout->addStretch();
    layout->addWidget(makeButtons());
    // Only inside its dialog does a button become the one that Enter presses.
    findChild<QPushButton *>(u"cmdSave"_s)->setDefault(true);
    m_homePage->setFocus();
}

QWidget *OptionsDialog::makeHomePage()
{
    QGroupBox *group = captionedInEnglish<QGroupBox>(texts.at<"FrameHomePage", "&Homepage URL">);
    m_homePage = new QLineEdit(ProgramInfo::homeUrl());
    m_homePage->setObjectName("txtHomepageURL"_L1);
    m_homePage->setMinimumWidth(comfortableWidth);
    auto *row = new QHBoxLayout;
    const auto addButton = [this, row](const Text &caption, int index) {
        auto *button = captionedInEnglish<QPushButton>(caption);
        connect(button, &QPushButton::clicked, this, [this, index] { setHomeAddress(index); });
        row->addWidget(button);
    };
    addButton(texts.at<"cmdHomeURL2", "&Default Page">, defaultPage);
    addButton(texts.at<"cmdHomeURL1", "C&urrent Page">, currentPageIndex);
    addButton(texts.at<"cmdHomeURL0", "&Blank Page">, blankPage);
    auto *layout = new QVBoxLayout(group);
    layout->addWidget(m_homePage);
    layout->addLayout(row);
    return group;
}

QWidget *OptionsDialog::makeSwitches(const char *groupName)
{
    QGroupBox *group = makeGroup(groupName);
    auto *layout = new QVBoxLayout(group);
    for (const LabelledSwitch &each : labelledSwitches) {
        if (qstrcmp(each.group, groupName) != 0)
            continue;
        layout->addWidget(captionedInEnglish<QCheckBox>(*each.caption));
    }
    return group;
}

QCheckBox *OptionsDialog::boxOf(const Settings::Switch &setting) const
{
    return findChild<QCheckBox *>(QLatin1StringView(setting.checkBox));
}

QWidget *OptionsDialog::makeLanguage()
{
    QGroupBox *group = makeGroup("Frame1");
    m_languages = new QComboBox;
    m_languages->setObjectName("cboLanguage"_L1);
    auto *label = captionedInEnglish<QLabel>(texts.at<"lblLanguage", "Interface Language:">);
    label->setBuddy(m_languages);
    auto *layout = new QHBoxLayout(group);
    layout->addWidget(label);
    layout->addWidget(m_languages, 1);
    return group;
}

QWidget *OptionsDialog::makeButtons()
{
    const OptionsButtons buttons(texts.at<"cmdApply", "&Apply">, texts.at<"cmdCancel", "&Cancel">,
                                 texts.at<"cmdSave", "&Save">);
    connect(buttons.apply, &QPushButton::clicked, this, &OptionsDialog::applySettings);
    connect(buttons.cancel, &QPushButton::clicked, this, &QDialog::close);
    connect(buttons.save, &QPushButton::clicked, this, [this] {
        if (applySettings())
            close();
    });
    return buttons.box;
}

void OptionsDialog::applyCaptions()
{
    for (auto *group : findChildren<QGroupBox *>()) {
        if (!group->title().isEmpty())
            group->setTitle(texts.named(group->objectName(), group->title()));
    }
    for (auto *button : findChildren<QAbstractButton *>())
        button->setText(texts.named(button->objectName(), button->text()));
    auto *label = findChild<QLabel *>(u"lblLanguage"_s);
    label->setText(texts.named(label->objectName(), label->text()));
    setWindowTitle(texts.at<"Caption", "Options">(windowTitle()));
    m_homePage->setAccessibleName(
        plainCaption(findChild<QGroupBox *>(u"FrameHomePage"_s)->title()));
    m_languages->setAccessibleName(plainCaption(label->text()));
}

void OptionsDialog::load()
{
    applyCaptions();
    m_homePage->setText(Settings::homeUrl.read());
    if (fillSwitches())
        fillLanguages();
}

bool OptionsDialog::fillSwitches()
{
    return std::all_of(Settings::switches.begin(), Settings::switches.end(),
                       [this](const Settings::Switch *setting) {
                           return !setting->checkBox || fill(*boxOf(*setting), *setting);
                       });
}

void OptionsDialog::fillLanguages()
{
    m_languages->addItems(languageFiles());
    // Without a match nothing is selected; the list itself would select its first entry.
    m_languages->setCurrentIndex(
        m_languages->findText(languageName(), Qt::MatchExactly | Qt::MatchCaseSensitive));
}

void OptionsDialog::setHomeAddress(int index)
{
    if (index == blankPage) {
        m_homePage->setText(u"About:Blank"_s);
    } else if (index == currentPageIndex) {
        if (m_currentPage.isEmpty())
            m_currentPage = Settings::homeUrl.read();
        m_homePage->setText(m_currentPage);
    } else if (index == defaultPage) {
        m_homePage->setText(ProgramInfo::homeUrl());
    }
}

QList<IniEntry> OptionsDialog::entries() const
{
    QList<IniEntry> result{Settings::homeUrl.entry(m_homePage->text())};
    for (const Settings::Switch *setting : Settings::switches) {
        // The file keeps its form until a switch beyond that is used.
        const bool isBeyond = setting == &Settings::openLastDesk
            || setting == &Settings::backspaceGoesBack || setting == &Settings::pagesFollowColours;
        const bool isLeft = isBeyond && boxOf(*setting)->isChecked() == setting->isOne();
        if (setting->checkBox && !isLeft)
            result.append(setting->entry(boxOf(*setting)->isChecked()));
    }
    // Without a choice the language stays what it is.
    if (m_languages->currentIndex() >= 0)
        result.append(Settings::language.entry(m_languages->currentText()));
    return result;
}

/// False when nothing was kept, which the user is told; what acts at once acts all the same.
bool OptionsDialog::applySettings()
{
    const WriteResult result = Settings::write(entries());
    for (const Settings::Switch &actsAtOnce : {Settings::killPopups, Settings::maximizeCatcher})
        m_frame.itemOf(actsAtOnce)->setChecked(boxOf(actsAtOnce)->isChecked());
    startUp(m_program);
    applyCaptions();
    if (!result)
        NotSaved::tell(this, AppFolder::settingsPath(), result);
    return bool(result);
}
