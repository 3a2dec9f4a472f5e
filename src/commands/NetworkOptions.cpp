#include "NetworkOptions.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryFile>

#include "Captioned.h"
#include "DesktopLanguages.h"
#include "EngineOptions.h"
#include "MsgBox.h"
#include "OptionControls.h"

using namespace Qt::StringLiterals;

namespace {

/// A value of the file may be that long.
constexpr int longestText = 900;
/// Pixels.
constexpr int comfortableWidth = 190;

constexpr Texts<"frmInternetOptions"> texts;

/// Makes the folder where it is missing.
bool canBeUsed(const QString &folder)
{
    if (!QDir().mkpath(folder))
        return false;
    QTemporaryFile probe(QDir(folder).filePath(u".orvane-XXXXXX"_s));
    return probe.open();
}

}

NetworkOptions::NetworkOptions()
    : QGroupBox(texts.at<"FrameNetwork", "Network">())
    , m_layout(new QGridLayout(this))
{
    addProxy();
    addTexts();
    m_layout->setColumnStretch(1, 1);
}

void NetworkOptions::addProxy()
{
    m_proxy = new QComboBox;
    m_proxy->setObjectName("cboProxy"_L1);
    m_proxy->addItem(texts.at<"strProxySystem", "As the system has it">(),
                     int(EngineOptions::Proxy::System));
    m_proxy->addItem(texts.at<"strProxyNone", "None">(), int(EngineOptions::Proxy::None));
    m_proxy->addItem(u"HTTP"_s, int(EngineOptions::Proxy::Http));
    m_proxy->addItem(u"SOCKS 5"_s, int(EngineOptions::Proxy::Socks5));
    auto *label = captioned<QLabel>(texts.at<"lblProxy", "Pr&oxy:">);
    OptionControls::name(*label, *m_proxy);
    m_proxyHost = new QLineEdit;
    m_proxyHost->setObjectName("txtProxyHost"_L1);
    m_proxyHost->setMaxLength(longestText);
    m_proxyHost->setAccessibleName(texts.at<"txtProxyHost", "Address of the proxy">());
    m_proxyHost->setPlaceholderText(m_proxyHost->accessibleName());
    m_proxyPort = new QSpinBox;
    m_proxyPort->setObjectName("txtProxyPort"_L1);
    m_proxyPort->setRange(1, 65535);
    m_proxyPort->setAccessibleName(texts.at<"txtProxyPort", "Port of the proxy">());
    connect(m_proxy, &QComboBox::currentIndexChanged, this, &NetworkOptions::enableProxyAddress);
    auto *address = new QHBoxLayout;
    address->addWidget(m_proxyHost, 1);
    address->addWidget(m_proxyPort);
    m_layout->addWidget(label, 0, 0);
    m_layout->addWidget(m_proxy, 0, 1, 1, 2);
    m_layout->addLayout(address, 1, 1, 1, 2);
}

void NetworkOptions::addTexts()
{
    const QString builtIn = texts.at<"strBuiltIn", "As built in">();
    m_languages = addText(2, texts.at<"lblLanguages", "&Languages asked for:">);
    m_languages->setPlaceholderText(DesktopLanguages::list());
    m_layout->addWidget(OptionControls::nextStartNote(*m_languages), 2, 2);
    m_userAgent = addText(3, texts.at<"lblUserAgent", "&User agent:">);
    m_userAgent->setPlaceholderText(builtIn);
    m_layout->addWidget(OptionControls::nextStartNote(*m_userAgent), 3, 2);
    m_downloads = addText(4, texts.at<"lblDownloads", "&Downloads folder:">);
    m_downloads->setPlaceholderText(builtIn);
    auto *choose = captioned<QPushButton>(texts.at<"cmdBrowse", "&Browse...">);
    choose->setAutoDefault(false);
    connect(choose, &QPushButton::clicked, this, &NetworkOptions::browse);
    m_layout->addWidget(choose, 4, 2);
}

QLineEdit *NetworkOptions::addText(int row, const Text &caption)
{
    auto *field = new QLineEdit;
    field->setObjectName("txt"_L1 + caption.name().mid(3));
    field->setMaxLength(longestText);
    field->setMinimumWidth(comfortableWidth);
    auto *label = captioned<QLabel>(caption);
    OptionControls::name(*label, *field);
    m_layout->addWidget(label, row, 0);
    m_layout->addWidget(field, row, 1);
    return field;
}

void NetworkOptions::enableProxyAddress()
{
    EngineOptions options;
    options.proxy = EngineOptions::Proxy(m_proxy->currentData().toInt());
    m_proxyHost->setEnabled(options.usesOwnProxy());
    m_proxyPort->setEnabled(options.usesOwnProxy());
}

void NetworkOptions::fill(const EngineOptions &options)
{
    m_proxy->setCurrentIndex(m_proxy->findData(int(options.proxy)));
    m_proxyHost->setText(options.proxyHost);
    m_proxyPort->setValue(options.proxyPort);
    m_languages->setText(options.languages);
    m_userAgent->setText(options.userAgent);
    m_downloads->setText(options.downloadFolder);
    m_filledFolder = options.downloadFolder;
    enableProxyAddress();
}

bool NetworkOptions::check()
{
    EngineOptions options;
    collect(options);
    using namespace EngineOptionText;
    if (options.usesOwnProxy() && !isHost(options.proxyHost)) {
        return refuse(*m_proxyHost,
                      texts.at<"strBadProxy", "This is not the address of a proxy.">());
    }
    if (!options.languages.isEmpty() && !isLanguageList(options.languages)) {
        return refuse(*m_languages,
                      texts.at<"strBadLanguages",
                               "These are not languages. Write their codes with commas "
                               "between them, like this: de-AT, de, en">());
    }
    if (!options.userAgent.isEmpty() && !isUserAgent(options.userAgent)) {
        return refuse(*m_userAgent,
                      texts.at<"strBadUserAgent",
                               "The user agent must be in English letters, digits and "
                               "signs.">());
    }
    if (!options.downloadFolder.isEmpty() && !isFolder(options.downloadFolder)) {
        return refuse(*m_downloads,
                      texts.at<"strBadFolder", "This is not a folder. Write its whole path.">());
    }
    // What was good once may be on a disk that is not there today.
    const bool isNew = options.downloadFolder != m_filledFolder;
    if (isNew && !options.downloadFolder.isEmpty() && !canBeUsed(options.downloadFolder)) {
        return refuse(
            *m_downloads,
            texts
                .at<"strNoFolder", "This folder cannot be made, or nothing can be put into it.">());
    }
    return true;
}

bool NetworkOptions::refuse(QWidget &control, const QString &message)
{
    control.setFocus();
    MsgBox::tell(this, message);
    return false;
}

void NetworkOptions::collect(EngineOptions &options) const
{
    options.proxy = EngineOptions::Proxy(m_proxy->currentData().toInt());
    // An address that is not in use and no good is not worth keeping.
    const QString host = m_proxyHost->text().trimmed();
    if (options.usesOwnProxy() || EngineOptionText::isHost(host))
        options.proxyHost = host;
    options.proxyPort = m_proxyPort->value();
    options.languages = m_languages->text().trimmed();
    options.userAgent = m_userAgent->text().trimmed();
    options.downloadFolder = m_downloads->text().trimmed();
}

void NetworkOptions::browse()
{
    auto *dialog =
        new QFileDialog(this, texts.at<"strDownloads", "Downloads Folder">(), m_downloads->text());
    dialog->setObjectName("dlgDownloads"_L1);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, m_downloads, &QLineEdit::setText);
    dialog->open();
}
