#include "SourceReader.h"

#include "Log.h"
#include "PageScripts.h"
#include "WebPage.h"

#include <QFile>
#include <QPointer>
#include <QWebEngineScript>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// For the server to answer once more; milliseconds.
constexpr int longestWait = 30'000;
constexpr int statusOfSuccess = 200;
int lastNumber = 0;

/// What a data: address holds; nothing where it is none.
std::optional<QByteArray> heldBy(const QUrl &url)
{
    const QByteArray address = url.toEncoded(QUrl::RemoveFragment);
    const qsizetype comma = address.indexOf(',');
    if (comma < 0)
        return {};
    const QByteArray bytes = QByteArray::fromPercentEncoding(address.sliced(comma + 1));
    const bool isPacked = address.left(comma).toLower().endsWith(";base64");
    return isPacked ? QByteArray::fromBase64(bytes) : bytes;
}
}

SourceReader::SourceReader(WebPage &page, QObject *parent)
    : QObject(parent)
    , m_page(page)
    , m_number(++lastNumber)
{
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, &SourceReader::giveUp);
}

void SourceReader::start()
{
    const QUrl url = m_page.url();
    if (url.isLocalFile())
        readFile(url.toLocalFile());
    else if (url.scheme() == "data"_L1)
        readAddress(url);
    else
        readInPage();
}

void SourceReader::readFile(const QString &name)
{
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(lcFiles) << "cannot read" << name << file.errorString();
        giveUp();
        return;
    }
    m_over = true;
    emit came(file.readAll(), statusOfSuccess);
}

/// The engine does not give a page its own address of this kind again.
void SourceReader::readAddress(const QUrl &url)
{
    const std::optional<QByteArray> bytes = heldBy(url);
    if (!bytes) {
        giveUp();
        return;
    }
    m_over = true;
    emit came(*bytes, statusOfSuccess);
}

void SourceReader::readInPage()
{
    connect(&m_page, &WebPage::sourceRead, this, [this](int number) {
        if (number == m_number)
            collect();
    });
    const QString script =
        PageScripts::isolatedSource(u"page-source.js"_s)
            .replace("%CACHE%"_L1, m_page.mayAskAgain() ? "force-cache"_L1 : "only-if-cached"_L1)
            .replace("%NUMBER%"_L1, QString::number(m_number));
    m_page.runJavaScript(script, QWebEngineScript::ApplicationWorld);
    m_limit.start(longestWait);
}

void SourceReader::collect()
{
    m_limit.stop();
    const QString script =
        u"(() => { const source = globalThis.orvaneSource%1 ?? [];"
        u" delete globalThis.orvaneSource%1; return source; })()"_s.arg(m_number);
    m_page.runJavaScript(script, QWebEngineScript::ApplicationWorld,
                         [self = QPointer(this)](const QVariant &source) {
                             // The engine waits for this to return.
                             if (self)
                                 QMetaObject::invokeMethod(
                                     self.data(),
                                     [self, source] { self->takeCollected(source.toList()); },
                                     Qt::QueuedConnection);
                         });
}

void SourceReader::takeCollected(const QVariantList &answer)
{
    const QString dataUrl = answer.value(1).toString();
    const qsizetype comma = dataUrl.indexOf(u',');
    const auto decoded = QByteArray::fromBase64Encoding(dataUrl.mid(comma + 1).toLatin1(),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    // Empty is what a file may be as well.
    if (comma < 0 || !decoded)
        giveUp();
    else if (!std::exchange(m_over, true))
        emit came(decoded.decoded, answer.value(0).toInt());
}

void SourceReader::giveUp()
{
    m_limit.stop();
    if (!std::exchange(m_over, true))
        emit missing();
}
