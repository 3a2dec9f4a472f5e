#include "WordFinder.h"

#include "HitOverlay.h"
#include "PageScripts.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QWebEnginePage>
#include <QWebEngineScript>
#include <QWebEngineView>
#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {
/// Marks follow a page that scrolls so often.
constexpr auto lookInterval = 40ms;
/// What the script gives at most; more of it is not looked at.
constexpr int mostBoxes = 501;
constexpr int mostMarks = 1001;

HitOverlay::Marks marksOf(const QVariantMap &result, double factor)
{
    HitOverlay::Marks marks;
    const QVariantList boxes = result[u"boxes"_s].toList();
    for (const QVariant &each : boxes.first(qMin(boxes.size(), qsizetype(mostBoxes)))) {
        const QVariantList numbers = each.toList();
        if (numbers.size() != 5)
            continue;
        const auto number = [&](int i) { return factor * numbers.at(i).toDouble(); };
        const QRectF box(number(0), number(1), number(2), number(3));
        marks.hits.append(box);
        if (numbers.at(4).toInt() == 1)
            marks.current = box;
    }
    const QVariantList along = result[u"marks"_s].toList();
    for (const QVariant &each : along.first(qMin(along.size(), qsizetype(mostMarks))))
        marks.along.append(qBound(0.0, each.toDouble(), 1.0));
    marks.barWidth = factor * result[u"bar"_s].toDouble();
    return marks;
}
}

WordFinder::WordFinder(QWebEnginePage *page, QObject *parent)
    : QObject(parent)
    , m_page(page)
{
    m_look.setSingleShot(true);
    m_look.setInterval(lookInterval);
    connect(&m_look, &QTimer::timeout, this, &WordFinder::lookAgain);
    const auto lookSoon = [this] {
        if (m_isOn && !m_look.isActive())
            m_look.start();
    };
    connect(page, &QWebEnginePage::scrollPositionChanged, this, lookSoon);
    // Of the page that goes.
    connect(page, &QWebEnginePage::loadStarted, this, [this] {
        if (m_overlay)
            m_overlay->hide();
    });
    connect(page, &QWebEnginePage::contentsSizeChanged, this, lookSoon);
}

WordFinder::~WordFinder()
{
    delete m_overlay;
}

void WordFinder::findAnew(const QString &text, bool matchCase)
{
    m_isOn = true;
    run({{u"text"_s, text}, {u"matchCase"_s, matchCase}, {u"isNew"_s, true}, {u"step"_s, 0}}, true);
}

void WordFinder::step(bool backwards)
{
    if (m_isOn)
        run({{u"step"_s, backwards ? -1 : 1}}, true);
}

void WordFinder::lookAgain()
{
    if (m_isOn)
        run({{u"step"_s, 0}}, false);
}

void WordFinder::end()
{
    if (std::exchange(m_isOn, false))
        run({{u"isEnd"_s, true}}, false);
    ++m_newest;
    delete m_overlay;
}

void WordFinder::run(const QJsonObject &query, bool tells)
{
    if (!m_page)
        return;
    if (tells)
        ++m_newest;
    const QString text = QString::fromUtf8(QJsonDocument(query).toJson(QJsonDocument::Compact));
    m_page->runJavaScript(
        PageScripts::isolatedSource(u"find-words.js"_s).replace("%QUERY%"_L1, text),
        QWebEngineScript::ApplicationWorld,
        [finder = QPointer(this), number = m_newest, tells](const QVariant &result) {
            if (finder && finder->m_isOn && finder->m_newest == number)
                finder->take(result.toMap(), tells);
        });
}

void WordFinder::take(const QVariantMap &result, bool tells)
{
    QWebEngineView *view = m_page ? QWebEngineView::forPage(m_page) : nullptr;
    if (view) {
        if (!m_overlay)
            m_overlay = new HitOverlay(view);
        m_overlay->show(marksOf(result, m_page->zoomFactor()));
    }
    if (tells)
        emit found(result[u"active"_s].toInt(), result[u"hits"_s].toInt(),
                   result[u"isMore"_s].toBool());
}
