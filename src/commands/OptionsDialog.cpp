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
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

#include "AppFolder.h"
#include "BrowserWindow.h"
#include "Forms.h"
#include "Frame.h"
#include "Language.h"
#include "LanguageFiles.h"
#include "NotSaved.h"
#include "OptionsButtons.h"
#include "ProgramInfo.h"
#include "Settings.h"
#include "StartUp.h"
#include "WebBrowser.h"
#include "Yield.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int blankPage = 0;
constexpr int currentPageIndex = 1;
constexpr int defaultPage = 2;
constexpr int comfortableWidth = 440;
/// The dialog has its own answer for a missing key, "off" as a number.
constexpr Settings::Key killPopups{"Settings", "Kill-Popups", "0"};

QString translated(const QString &key, const QString &text)
{
    return languageText(u"frmOptions"_s, key, text);
}

QGroupBox *makeGroup(const QString &name, const QString &caption = {})
{
    auto *group = new QGroupBox(caption);
    group->setObjectName(name);
    return group;
}

/// A caption without the marks of its access key.
QString plainCaption(QString caption)
{
    return caption.remove(u'&');
}

/// False when the stored text is no number that fits a check box's 16 bits.
bool fill(QCheckBox &box, const Settings::Key &key)
{
    const std::optional<double> number = Settings::readNumber(key);
    if (!number)
        return false;
    const double whole = std::nearbyint(*number);
    if (whole < -32768 || whole > 32767)
        return false;
    box.setChecked(whole == 1);
    return true;
}

IniEntry entry(const Settings::Key &key, const QString &value)
{
    return {QString::fromLatin1(key.section), QString::fromLatin1(key.name), value};
}

IniEntry entry(const Settings::Key &key, const QCheckBox &box)
{
    return entry(key, box.isChecked() ? u"1"_s : u"0"_s);
}

QString addressOfCurrentPage(const Frame &frame)
{
    if (!frame.activeChild())
        return Settings::homeUrl();
    const BrowserWindow *active = activeBrowser(frame);
    return active ? active->browser()->locationUrl() : QString();
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
    // Loading lets events run, and one of them may close the frame.
    const QPointer<OptionsDialog> form = new OptionsDialog(frame, program);
    form->load();
    if (!form)
        return;
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
    setWindowTitle(u"Options"_s);
    Forms::add(this);

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeHomePage());
    layout->addWidget(makeStartAndExit());
    layout->addWidget(makePages());
    layout->addWidget(makeLanguage());
    layout->addStretch();
    layout->addWidget(makeButtons());
    // Only inside its dialog does a button become the one that Enter presses.
    findChild<QPushButton *>(u"cmdSave"_s)->setDefault(true);
    m_txtHomepageURL->setFocus();
}

QWidget *OptionsDialog::makeHomePage()
{
    QGroupBox *group = makeGroup(u"FrameHomePage"_s, u"&Homepage URL"_s);
    m_txtHomepageURL = new QLineEdit(ProgramInfo::homeUrl());
    m_txtHomepageURL->setObjectName("txtHomepageURL"_L1);
    m_txtHomepageURL->setMinimumWidth(comfortableWidth);
    auto *row = new QHBoxLayout;
    const auto addButton = [this, row](const QString &name, const QString &caption, int index) {
        auto *button = new QPushButton(caption);
        button->setObjectName(name);
        connect(button, &QPushButton::clicked, this, [this, index] { setHomeAddress(index); });
        row->addWidget(button);
    };
    addButton(u"cmdHomeURL2"_s, u"&Default Page"_s, defaultPage);
    addButton(u"cmdHomeURL1"_s, u"C&urrent Page"_s, currentPageIndex);
    addButton(u"cmdHomeURL0"_s, u"&Blank Page"_s, blankPage);
    auto *layout = new QVBoxLayout(group);
    layout->addWidget(m_txtHomepageURL);
    layout->addLayout(row);
    return group;
}

QCheckBox *OptionsDialog::makeCheckBox(const QString &name, const QString &caption)
{
    auto *box = new QCheckBox(caption);
    box->setObjectName(name);
    return box;
}

QWidget *OptionsDialog::makeStartAndExit()
{
    QGroupBox *group = makeGroup(u"FrameOptions1"_s);
    m_chkAskOnExit = makeCheckBox(u"chkAskOnExit"_s, u"Ask On Exit"_s);
    m_chkShowSplashScreen =
        makeCheckBox(u"chkShowSplashScreen"_s, u"Show Splash Screen At Startup"_s);
    auto *layout = new QVBoxLayout(group);
    layout->addWidget(m_chkAskOnExit);
    layout->addWidget(m_chkShowSplashScreen);
    return group;
}

QWidget *OptionsDialog::makePages()
{
    QGroupBox *group = makeGroup(u"FrameOptions2"_s);
    m_chkMaxCatcher = makeCheckBox(u"chkMaxCatcher"_s, u"Maximize Catcher On By Default"_s);
    m_chkKillPopups = makeCheckBox(u"chkKillPopups"_s, u"Kill Popup Windows By Default"_s);
    m_chkSuppressScriptErrors =
        makeCheckBox(u"chkSuppressScriptErrors"_s, u"Suppress Script Errors By Default"_s);
    auto *layout = new QVBoxLayout(group);
    layout->addWidget(m_chkMaxCatcher);
    layout->addWidget(m_chkKillPopups);
    layout->addWidget(m_chkSuppressScriptErrors);
    return group;
}

QWidget *OptionsDialog::makeLanguage()
{
    QGroupBox *group = makeGroup(u"Frame1"_s);
    m_cboLanguage = new QComboBox;
    m_cboLanguage->setObjectName("cboLanguage"_L1);
    auto *label = new QLabel(u"Interface Language:"_s);
    label->setObjectName("lblLanguage"_L1);
    label->setBuddy(m_cboLanguage);
    auto *layout = new QHBoxLayout(group);
    layout->addWidget(label);
    layout->addWidget(m_cboLanguage, 1);
    return group;
}

QWidget *OptionsDialog::makeButtons()
{
    const OptionsButtons buttons(u"&Apply"_s, u"&Cancel"_s, u"&Save"_s);
    connect(buttons.cmdApply, &QPushButton::clicked, this, &OptionsDialog::applySettings);
    connect(buttons.cmdCancel, &QPushButton::clicked, this, &QDialog::close);
    connect(buttons.cmdSave, &QPushButton::clicked, this, [this] {
        const QPointer<OptionsDialog> self = this;
        if (applySettings() && self)
            self->close();
    });
    return buttons.box;
}

void OptionsDialog::applyCaptions()
{
    for (auto *group : findChildren<QGroupBox *>()) {
        if (!group->title().isEmpty())
            group->setTitle(translated(group->objectName(), group->title()));
    }
    for (auto *button : findChildren<QAbstractButton *>())
        button->setText(translated(button->objectName(), button->text()));
    auto *label = findChild<QLabel *>(u"lblLanguage"_s);
    label->setText(translated(label->objectName(), label->text()));
    setWindowTitle(translated(u"Caption"_s, windowTitle()));
    m_txtHomepageURL->setAccessibleName(
        plainCaption(findChild<QGroupBox *>(u"FrameHomePage"_s)->title()));
    m_cboLanguage->setAccessibleName(plainCaption(label->text()));
    letPendingEventsRun();
}

void OptionsDialog::load()
{
    const QPointer<OptionsDialog> self = this;
    applyCaptions();
    if (!self)
        return;
    m_txtHomepageURL->setText(Settings::homeUrl());
    if (!fillSwitches())
        return;
    letPendingEventsRun();
    if (self)
        fillLanguages();
}

bool OptionsDialog::fillSwitches()
{
    return fill(*m_chkShowSplashScreen, Settings::ShowSplash)
        && fill(*m_chkAskOnExit, Settings::AskOnExit) && fill(*m_chkKillPopups, killPopups)
        && fill(*m_chkSuppressScriptErrors, Settings::SuppressScriptErrors)
        && fill(*m_chkMaxCatcher, Settings::MaximizeCatcher);
}

void OptionsDialog::fillLanguages()
{
    m_cboLanguage->addItems(languageFiles());
    // Without a match nothing is selected; the list itself would select its first entry.
    m_cboLanguage->setCurrentIndex(
        m_cboLanguage->findText(languageName(), Qt::MatchExactly | Qt::MatchCaseSensitive));
}

void OptionsDialog::setHomeAddress(int index)
{
    if (index == blankPage) {
        m_txtHomepageURL->setText(u"About:Blank"_s);
    } else if (index == currentPageIndex) {
        if (m_currentPage.isEmpty())
            m_currentPage = Settings::homeUrl();
        m_txtHomepageURL->setText(m_currentPage);
    } else if (index == defaultPage) {
        m_txtHomepageURL->setText(ProgramInfo::homeUrl());
    }
}

QList<IniEntry> OptionsDialog::entries() const
{
    QList<IniEntry> result{{u"Settings"_s, u"Home-URL"_s, m_txtHomepageURL->text()},
                           entry(Settings::ShowSplash, *m_chkShowSplashScreen),
                           entry(Settings::AskOnExit, *m_chkAskOnExit),
                           entry(Settings::KillPopups, *m_chkKillPopups),
                           entry(Settings::SuppressScriptErrors, *m_chkSuppressScriptErrors),
                           entry(Settings::MaximizeCatcher, *m_chkMaxCatcher)};
    // Without a choice the language stays what it is.
    if (m_cboLanguage->currentIndex() >= 0)
        result.append(entry(Settings::Language, m_cboLanguage->currentText()));
    return result;
}

/// False when nothing was kept, which the user is told; what acts at once acts all the same.
bool OptionsDialog::applySettings()
{
    const QPointer<OptionsDialog> self = this;
    const QString file = AppFolder::settingsPath();
    const WriteResult result = writeIniEntries(entries(), file);
    m_frame.menuItem(u"mnuToolsKillPopUps"_s)->setChecked(m_chkKillPopups->isChecked());
    m_frame.setButtonPressed(u"PopupKiller"_s, m_chkKillPopups->isChecked());
    m_frame.menuItem(u"mnuToolsMaximizeCatcher"_s)->setChecked(m_chkMaxCatcher->isChecked());
    startUp(m_program);
    applyCaptions();
    if (!result && self)
        NotSaved::tell(this, file, result);
    return bool(result);
}
