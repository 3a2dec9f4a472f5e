#include "PageProperties.h"

#include "Captioned.h"
#include "ConnectionCheck.h"
#include "PageCertificates.h"
#include "PageConnection.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "Texts.h"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QPointer>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {
constexpr int longestShown = 2000;

const QString factScript = uR"((() => {
    const entry = performance.getEntriesByType('navigation')[0];
    const modified = Date.parse(document.lastModified);
    // Where the server said nothing of it the engine gives the time of the question, in whole
    // seconds.
    const told = modified < Date.now() - 2000;
    return {
        kind: document.contentType,
        encoding: document.characterSet,
        modified: told ? modified : null,
        opened: performance.timeOrigin,
        size: entry ? entry.decodedBodySize : 0
    };
})())"_s;

constexpr Texts<"PageProperties"> texts;

QString sizeText(qint64 bytes)
{
    if (bytes <= 0)
        return texts.at<"strUnknown", "Not known">();
    const QLocale locale;
    constexpr qint64 kilobyte = 1024;
    if (bytes < kilobyte)
        return texts.at<"strFewBytes", "%1 bytes">().arg(locale.toString(bytes));
    return texts.at<"strBytes", "%1 (%2 bytes)">().arg(locale.formattedDataSize(bytes),
                                                       locale.toString(bytes));
}

QString dateText(const QDateTime &when)
{
    return when.isValid() ? QLocale().toString(when, QLocale::ShortFormat)
                          : texts.at<"strUnknown", "Not known">();
}

QDateTime dateOf(const QVariant &milliseconds)
{
    return milliseconds.isNull() ? QDateTime()
                                 : QDateTime::fromMSecsSinceEpoch(qint64(milliseconds.toDouble()));
}
}

PageProperties::PageProperties(QWebEnginePage *page, QWidget *owner)
    : QDialog(owner)
    , m_url(page->url())
    , m_rows(new QFormLayout)
{
    setObjectName("dlgProperties"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(texts.at<"Caption", "Properties">());
    auto *column = new QVBoxLayout(this);
    column->addLayout(m_rows);
    addRow(texts.at<"lblTitle", "Title:">)->setText(shownText(page->title()).left(longestShown));
    addRow(texts.at<"lblAddress", "Address:">)->setText(shownAddress(m_url).left(longestShown));
    m_kind = addRow(texts.at<"lblKind", "Kind:">);
    m_size = addRow(texts.at<"lblSize", "Size:">);
    m_encoding = addRow(texts.at<"lblEncoding", "Encoding:">);
    m_modified = addRow(texts.at<"lblModified", "Modified:">);
    m_opened = addRow(texts.at<"lblOpened", "Opened:">);
    m_connection = addRow(texts.at<"lblConnection", "Connection:">);
    m_certificates = addRow(texts.at<"lblCertificates", "Certificates:">);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    m_openCertificates = addCaptioned(*buttons, texts.at<"cmdCertificates", "&Certificates...">,
                                      QDialogButtonBox::ActionRole);
    connect(m_openCertificates, &QPushButton::clicked, this,
            [this, profile = QPointer(page->profile())] {
                if (profile)
                    PageConnection::open(m_url, PageCertificates::exceptions(profile), this);
            });
    column->addWidget(buttons);
    showConnection(m_url);
    page->runJavaScript(factScript, QWebEngineScript::ApplicationWorld,
                        [dialog = QPointer(this)](const QVariant &facts) {
                            if (dialog)
                                dialog->showFacts(facts.toMap());
                        });
    resize(560, sizeHint().height());
}

QLabel *PageProperties::addRow(const Text &caption)
{
    auto *label = new QLabel(caption(), this);
    auto *value = new QLabel(this);
    value->setObjectName(caption.name());
    value->setTextFormat(Qt::PlainText);
    value->setWordWrap(true);
    value->setMinimumWidth(300);
    value->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setBuddy(value);
    m_rows->addRow(label, value);
    return value;
}

void PageProperties::showFacts(const QVariantMap &facts)
{
    m_kind->setText(facts.value(u"kind"_s).toString().left(longestShown));
    m_encoding->setText(facts.value(u"encoding"_s).toString().left(longestShown));
    m_opened->setText(dateText(dateOf(facts.value(u"opened"_s))));
    if (m_url.isLocalFile()) {
        showFileFacts(m_url.toLocalFile());
        return;
    }
    m_size->setText(sizeText(qint64(facts.value(u"size"_s).toDouble())));
    m_modified->setText(dateText(dateOf(facts.value(u"modified"_s))));
}

void PageProperties::showFileFacts(const QString &file)
{
    const QFileInfo info(file);
    m_size->setText(sizeText(info.size()));
    m_modified->setText(dateText(info.lastModified()));
}

void PageProperties::showConnection(const QUrl &url)
{
    if (url.scheme() != "https"_L1) {
        m_connection->setText(
            url.scheme() == "http"_L1
                ? texts.at<"strOpen", "Not encrypted">()
                : texts.at<"strNone", "None: the page did not come over a network">());
        m_rows->setRowVisible(m_certificates, false);
        m_openCertificates->hide();
        return;
    }
    m_connection->setText(texts.at<"strEncrypted", "Encrypted">());
    m_certificates->setText(texts.at<"strAsking", "Asking the server...">());
    auto *check = new ConnectionCheck(this);
    connect(check, &ConnectionCheck::answered, this,
            [this](const QString &protocol, const QString &chain) {
                m_connection->setText(protocol);
                m_certificates->setText(chain);
            });
    check->ask(url);
}
