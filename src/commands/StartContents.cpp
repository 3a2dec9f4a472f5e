#include "StartContents.h"

#include "ClosedWindows.h"
#include "Frame.h"
#include "LinksFolder.h"
#include "RecentProfiles.h"
#include "ReopenWindow.h"
#include "SearchBar.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "Texts.h"

#include <QDir>
#include <QJsonArray>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"StartPage"> texts;

/// The engine follows it by itself, as when it is opened in a window of its own.
QString followed(const QString &address)
{
    const QUrl url(address);
    const bool isWeb = url.scheme() == "http"_L1 || url.scheme() == "https"_L1;
    return isWeb ? QString::fromLatin1(url.toEncoded()) : QString();
}

QJsonObject entry(const QString &text, const QString &hint, const QString &value,
                  const QString &address = {})
{
    return {{u"text"_s, shownText(text)},
            {u"hint"_s, shownText(hint)},
            {u"value"_s, value},
            {u"address"_s, address}};
}

void addGroup(QJsonArray &groups, const QString &kind, const QString &title,
              const QJsonArray &entries)
{
    if (!entries.isEmpty())
        groups.append(QJsonObject{{u"kind"_s, kind}, {u"title"_s, title}, {u"entries"_s, entries}});
}

QJsonArray favorites()
{
    QJsonArray entries;
    for (const auto folder : {LinksReading::Of::Links, LinksReading::Of::Favorites}) {
        LinksReading reading(folder);
        while (!reading.atEnd() && entries.size() < StartContents::mostFavorites) {
            if (const auto link = reading.readNext())
                entries.append(
                    entry(link->caption, shownAddress(link->url), link->url, followed(link->url)));
        }
    }
    return entries;
}

QJsonArray profiles()
{
    QJsonArray entries;
    const QStringList files = RecentProfiles::files();
    const QStringList captions = RecentProfiles::captions(files);
    for (qsizetype i = 0; i < files.size(); ++i)
        entries.append(entry(captions.at(i), QDir::toNativeSeparators(files.at(i)), files.at(i)));
    return entries;
}

QJsonArray closedWindows()
{
    QJsonArray entries;
    for (const ClosedWindow &window : ClosedWindows::all()) {
        const QString address = shownAddress(window.address);
        entries.append(entry(window.title.isEmpty() ? address : window.title, address,
                             QString::number(window.number)));
    }
    return entries;
}
}

StartContents::StartContents(Frame &frame, const SearchBar &search)
    : QObject(frame.window())
    , m_frame(frame)
    , m_search(search)
{
    StartPage::setParts(this);
}

StartContents::~StartContents()
{
    StartPage::setParts(nullptr);
}

QJsonObject StartContents::contents() const
{
    QJsonArray groups;
    addGroup(groups, u"favorite"_s, texts.at<"strFavorites", "Favorites">(), favorites());
    addGroup(groups, u"profile"_s, texts.at<"strProfiles", "Recent Profiles">(), profiles());
    addGroup(groups, u"closed"_s, texts.at<"strClosed", "Recently Closed Windows">(),
             closedWindows());
    QJsonObject contents{{u"groups"_s, groups}};
    const SearchBar::Engine engine = m_search.chosenEngine();
    if (!engine.addressTemplate.isEmpty()) {
        contents.insert(u"search"_s,
                        QJsonObject{{u"label"_s,
                                     texts.at<"strSearch", "Search with %1">().replace(
                                         "%1"_L1, shownText(engine.name))},
                                    {u"button"_s, texts.at<"cmdSearch", "Search">()}});
    }
    return contents;
}

void StartContents::choose(const QString &kind, const QString &value)
{
    if (kind == "favorite"_L1) {
        m_frame.navigateActive(value);
    } else if (kind == "search"_L1) {
        m_frame.navigateActive(m_search.answerTo(value));
    } else if (kind == "profile"_L1) {
        RecentProfiles::open(m_frame, value);
    } else if (kind == "closed"_L1) {
        if (const auto closed = ClosedWindows::take(value.toInt()))
            reopenWindow(m_frame, *closed);
    }
}
