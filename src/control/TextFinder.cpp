#include "TextFinder.h"

#include "EngineProfile.h"
#include "WordFinder.h"

#include <QWebEngineFindTextResult>
#include <QWebEnginePage>
#include <utility>

TextFinder::TextFinder(QWebEnginePage *page, QObject *parent)
    : QObject(parent)
    , m_page(page)
    , m_words(new WordFinder(page, this))
{
    connect(m_words, &WordFinder::found, this, &TextFinder::found);
}

TextFinder::Query &TextFinder::last()
{
    static Query query;
    return query;
}

/// What is done in another profile than the one that is kept leaves nothing behind.
void TextFinder::remember(const Query &query) const
{
    if (!query.text.isEmpty() && m_page->profile() == engineProfile())
        last() = query;
}

void TextFinder::find(const Query &query, bool backwards)
{
    if (!m_page)
        return;
    if (query.isWhole != m_query.isWhole) {
        end();
        // What the engine found last would look like a hit.
        if (query.isWhole)
            m_page->triggerAction(QWebEnginePage::Unselect);
    }
    const bool isSame = std::exchange(m_query, query) == query;
    remember(query);
    ++m_newest;
    if (query.text.isEmpty())
        end();
    else if (!query.isWhole)
        findByEngine(backwards);
    else if (isSame)
        m_words->step(backwards);
    else
        m_words->findAnew(query.text, query.matchesCase);
}

void TextFinder::findAnew(const Query &query)
{
    end();
    m_query = {};
    find(query, false);
}

void TextFinder::end()
{
    ++m_newest;
    m_words->end();
    if (m_page)
        m_page->findText({});
}

void TextFinder::findByEngine(bool backwards)
{
    QWebEnginePage::FindFlags flags;
    flags.setFlag(QWebEnginePage::FindBackward, backwards);
    flags.setFlag(QWebEnginePage::FindCaseSensitively, m_query.matchesCase);
    m_page->findText(
        m_query.text, flags,
        [finder = QPointer(this), number = m_newest](const QWebEngineFindTextResult &result) {
            if (finder && finder->m_newest == number)
                emit finder->found(result.activeMatch(), result.numberOfMatches(), false);
        });
}
