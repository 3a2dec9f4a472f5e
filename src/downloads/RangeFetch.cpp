#include "RangeFetch.h"

#include "DownloadProblem.h"
#include "WebThread.h"

#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <cerrno>

using namespace Qt::StringLiterals;

namespace {
using Problem = Download::Problem;
using Kind = RangeVerdict::Kind;

/// Bytes that wait in memory for the disk.
constexpr qint64 buffer = 1024 * 1024;
constexpr qint64 piece = 256 * 1024;
/// Milliseconds between two tellings.
constexpr int pace = 100;
/// Addresses that it is sent on to, one by the other.
constexpr int mostTimesSentOn = 20;

QNetworkRequest requestOf(const RangePlan &plan, const QUrl &address)
{
    QNetworkRequest request(address);
    // The library would tell the next host what is for the first.
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    // There what comes is not held back by a full buffer.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setRawHeader("Accept", "*/*");
    request.setRawHeader("Accept-Encoding", "identity");
    if (!plan.manners.userAgent.isEmpty())
        request.setRawHeader("User-Agent", plan.manners.userAgent);
    if (!plan.manners.languages.isEmpty())
        request.setRawHeader("Accept-Language", plan.manners.languages);
    if (plan.file.isEmpty()) {
        request.setRawHeader("Range", "bytes=0-0");
    } else if (plan.asked.from > 0) {
        request.setRawHeader("Range", "bytes=" + QByteArray::number(plan.asked.from) + '-');
        request.setRawHeader("If-Range", plan.asked.condition());
    }
    return request;
}

/// No less safe, and for the first byte alone, which nobody has asked for but us, to nobody else.
bool mayBeSentOn(const RangePlan &plan, const QUrl &from, const QUrl &to)
{
    const bool isOfWeb =
        to.scheme() == "https"_L1 || (to.scheme() == "http"_L1 && from.scheme() == "http"_L1);
    const bool isSame = to.scheme() == from.scheme() && to.authority() == from.authority();
    return isOfWeb && !to.host().isEmpty() && (isSame || !plan.file.isEmpty());
}

/// The manager asks for each request, in its thread.
class Proxies : public QNetworkProxyFactory {
public:
    explicit Proxies(bool usesSystem)
        : m_usesSystem(usesSystem)
    {
    }
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        return m_usesSystem ? systemProxyForQuery(query) : proxyForQuery(query);
    }

private:
    bool m_usesSystem;
};

/// A page has what these requests lack: passwords, certificates that the user accepted, and a word
/// for the user.
bool isForPages(QNetworkReply::NetworkError error)
{
    switch (error) {
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ProxyAuthenticationRequiredError:
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::ProtocolUnknownError:
        return true;
    default:
        return false;
    }
}
}

RangeFetch::RangeFetch(WebThread &web, const RangePlan &plan)
    : m_web(web)
    , m_plan(plan)
    , m_file(plan.file)
    , m_tells(this)
    , m_silence(this)
{
    m_tells.setSingleShot(true);
    connect(&m_tells, &QTimer::timeout, this, [this] { emit arrived(m_received); });
    m_silence.setSingleShot(true);
    m_silence.setInterval(plan.manners.longestSilence);
    connect(&m_silence, &QTimer::timeout, this, &RangeFetch::giveUp);
    moveToThread(m_web.thread());
}

RangeFetch::~RangeFetch()
{
    stop();
}

void RangeFetch::start()
{
    ask(m_plan.address);
}

void RangeFetch::ask(const QUrl &address)
{
    QNetworkAccessManager &manager = m_web.manager();
    m_web.setCookies(m_plan.manners.cookies, m_plan.address);
    manager.setProxyFactory(new Proxies(m_plan.manners.usesSystemProxy));
    m_reply = manager.get(requestOf(m_plan, address));
    m_reply->setParent(this);
    m_reply->setReadBufferSize(buffer);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &RangeFetch::listen);
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &RangeFetch::take);
    connect(m_reply, &QNetworkReply::readyRead, this, &RangeFetch::read);
    connect(m_reply, &QNetworkReply::finished, this, &RangeFetch::finish);
    listen();
}

/// In a pause nothing may come. A network that went away without a word never says that it did.
void RangeFetch::listen()
{
    if (m_isPaused)
        m_silence.stop();
    else
        m_silence.start();
}

void RangeFetch::giveUp()
{
    RangeEnd result = failure();
    result.problem = Problem::ConnectionLost;
    result.detail = u"nothing came for %1 s"_s.arg(m_silence.interval() / 1000);
    end(result);
}

void RangeFetch::setPaused(bool paused)
{
    m_isPaused = paused;
    if (!m_reply)
        return;
    listen();
    if (paused)
        return;
    read();
    if (m_reply && m_reply->isFinished())
        finish();
}

void RangeFetch::stop()
{
    if (QNetworkReply *reply = std::exchange(m_reply, nullptr)) {
        // To be aborted inside its own signals it does not take well.
        reply->disconnect(this);
        reply->deleteLater();
    }
    m_tells.stop();
    m_silence.stop();
    m_file.close();
}

RangeAnswer RangeFetch::readAnswer() const
{
    RangeAnswer answer;
    answer.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.contentRange = m_reply->rawHeader("Content-Range");
    answer.contentEncoding = m_reply->rawHeader("Content-Encoding");
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    answer.contentLength = length.isValid() ? length.toLongLong() : -1;
    answer.etag = m_reply->rawHeader("ETag");
    answer.lastModified = m_reply->rawHeader("Last-Modified");
    answer.date = m_reply->rawHeader("Date");
    return answer;
}

/// The headers are there.
void RangeFetch::take()
{
    const RangeAnswer answer = readAnswer();
    if (m_answer.status != 0 || answer.status == 0)
        return;
    if (answer.status >= 300 && answer.status < 400) {
        goOnElsewhere();
        return;
    }
    m_answer = answer;
    m_verdict = judge(m_plan.asked, answer);
    m_isWriting =
        !m_plan.file.isEmpty() && (m_verdict.kind == Kind::Append || m_verdict.kind == Kind::Anew);
    if (!m_isWriting) {
        // What follows is of no interest.
        RangeEnd result = failure();
        if (m_verdict.kind != Kind::Refused)
            result.problem = Problem::None;
        end(result);
    } else if (open()) {
        emit answered(m_answer, m_verdict);
    }
}

/// Pages know what to make of it where we may not follow.
void RangeFetch::goOnElsewhere()
{
    const QUrl from = m_reply->url();
    const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    const QUrl to = from.resolved(target);
    if (target.isEmpty() || !mayBeSentOn(m_plan, from, to) || ++m_timesSentOn > mostTimesSentOn) {
        end({m_answer, {Kind::Page}, Problem::None, m_reply->errorString(), m_received});
        return;
    }
    stop();
    ask(to);
}

bool RangeFetch::open()
{
    m_received = m_verdict.kind == Kind::Append ? m_plan.asked.from : 0;
    errno = 0;
    // Somebody may have cut it meanwhile; what is there beyond the place is not the server's.
    if (m_file.open(QIODevice::ReadWrite | QIODevice::Unbuffered) && m_file.size() >= m_received
        && m_file.resize(m_received) && m_file.seek(m_received))
        return true;
    RangeEnd result = failure();
    const std::error_code error(errno == 0 ? EIO : errno, std::generic_category());
    result.problem = DownloadProblem::of(error);
    result.detail = QString::fromLocal8Bit(error.message().c_str());
    end(result);
    return false;
}

void RangeFetch::read()
{
    while (m_reply && m_isWriting && !m_isPaused && m_reply->bytesAvailable() > 0) {
        if (!write(m_reply->read(piece)))
            return;
    }
    if (!m_reply || !m_isWriting)
        return;
    // Not sooner: the disk may have been slow.
    listen();
    if (!m_tells.isActive())
        m_tells.start(pace);
}

bool RangeFetch::write(const QByteArray &bytes)
{
    RangeEnd result = failure();
    if (m_verdict.size >= 0 && m_received + bytes.size() > m_verdict.size) {
        result.problem = Problem::WrongLength;
        result.detail = u"more than %1 bytes"_s.arg(m_verdict.size);
        end(result);
        return false;
    }
    qsizetype done = 0;
    while (done < bytes.size()) {
        errno = 0;
        const qint64 written = m_file.write(bytes.constData() + done, bytes.size() - done);
        if (written > 0) {
            done += written;
            m_received += written;
            continue;
        }
        const std::error_code error(errno == 0 ? EIO : errno, std::generic_category());
        result.problem = DownloadProblem::of(error);
        result.detail = QString::fromLocal8Bit(error.message().c_str());
        result.received = m_received;
        end(result);
        return false;
    }
    return true;
}

void RangeFetch::finish()
{
    if (!m_reply || (m_isPaused && m_isWriting))
        return;
    // Some answers come with no headers of their own told before.
    const QNetworkReply *reply = m_reply;
    take();
    if (m_reply != reply)
        return;
    read();
    if (!m_reply)
        return;
    RangeEnd result = failure();
    const bool isShort = m_verdict.size >= 0 && m_received < m_verdict.size;
    if (m_isWriting && m_reply->error() == QNetworkReply::NoError && !isShort)
        result.problem = Problem::None;
    else if (isForPages(m_reply->error()))
        result = {m_answer, {Kind::Page}, Problem::None, m_reply->errorString(), m_received};
    end(result);
}

/// The connection's, unless something else is known.
RangeEnd RangeFetch::failure() const
{
    RangeEnd result{m_answer, m_verdict, Problem::ConnectionLost, {}, m_received};
    if (!m_isWriting)
        result.received = m_plan.asked.from;
    if (m_reply)
        result.detail = m_reply->errorString();
    if (m_reply && m_answer.status != 0 && !m_isWriting) {
        const QVariant reason = m_reply->attribute(QNetworkRequest::HttpReasonPhraseAttribute);
        result.problem = Problem::ServerRefused;
        result.detail = u"%1 %2"_s.arg(m_answer.status).arg(reason.toString()).trimmed();
    }
    return result;
}

void RangeFetch::end(const RangeEnd &end)
{
    stop();
    emit ended(end);
}
