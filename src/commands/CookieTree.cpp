#include "CookieTree.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QMap>
#include <QSet>

#include "EngineData.h"
#include "Texts.h"

using namespace Qt::StringLiterals;

namespace {

/// Milliseconds.
constexpr int refreshInterval = 100;
constexpr int nameColumn = 0;
constexpr int pathColumn = 1;
constexpr int expiresColumn = 2;
/// Pixels.
constexpr int pathWidth = 80;
constexpr int cellMargins = 20;

constexpr Texts<"frmInternetOptions"> texts;

QString sessionText()
{
    return texts.at<"strSession", "With the program">();
}

QString siteOf(const StoredCookie &cookie)
{
    return cookie.domain.startsWith(u'.') ? cookie.domain.mid(1) : cookie.domain;
}

/// A cookie's item knows its cookie, a site's has children.
class CookieItem : public QTreeWidgetItem {
public:
    CookieItem(QTreeWidgetItem *site, const StoredCookie &shown, const QString &session)
        : QTreeWidgetItem(site)
        , cookie(shown)
    {
        setText(nameColumn, QString::fromUtf8(shown.name));
        setText(pathColumn, shown.path);
        setText(expiresColumn,
                shown.expires.isValid()
                    ? QLocale().toString(shown.expires.toLocalTime().date(), QLocale::ShortFormat)
                    : session);
    }
    StoredCookie cookie;
};

/// Sites by name, in them cookies by name.
using Sites = QMap<QString, QMap<QByteArray, StoredCookie>>;

Sites bySite(const QList<StoredCookie> &cookies)
{
    Sites sites;
    for (const StoredCookie &cookie : cookies)
        sites[siteOf(cookie)].insert(cookie.name + '\n' + cookie.key(), cookie);
    return sites;
}

}

CookieTree::CookieTree(EngineData &engine)
    : m_data(engine)
{
    setObjectName("lstCookies"_L1);
    setSelectionMode(ExtendedSelection);
    setUniformRowHeights(true);
    setHeaderLabels({texts.at<"strSite", "Site">(), texts.at<"strPath", "Path">(),
                     texts.at<"strExpires", "Expires">()});
    setColumnWidths();
    m_refresh.setSingleShot(true);
    m_refresh.setInterval(refreshInterval);
    connect(&m_refresh, &QTimer::timeout, this, &CookieTree::refresh);
    connect(&engine, &EngineData::cookiesChanged, this, [this] {
        if (!m_refresh.isActive())
            m_refresh.start();
    });
    refresh();
}

/// The end of a cookie is always seen whole; its name has what is left.
void CookieTree::setColumnWidths()
{
    const QDate wide(2028, 12, 28);
    const QString date = QLocale().toString(wide, QLocale::ShortFormat);
    int width = header()->sectionSizeHint(expiresColumn);
    for (const QString &text : {date, sessionText()})
        width = qMax(width, fontMetrics().horizontalAdvance(text) + cellMargins);
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
    header()->resizeSection(pathColumn, pathWidth);
    header()->resizeSection(expiresColumn, width);
}

void CookieTree::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Delete))
        deleteSelected();
    else
        QTreeWidget::keyPressEvent(event);
}

/// What is open or selected stays so, by its name.
void CookieTree::refresh()
{
    QSet<QString> open;
    QSet<QByteArray> selected;
    QSet<QString> selectedSites;
    for (int index = 0; index < topLevelItemCount(); ++index) {
        const QTreeWidgetItem &site = *topLevelItem(index);
        if (site.isExpanded())
            open.insert(site.text(nameColumn));
        if (site.isSelected())
            selectedSites.insert(site.text(nameColumn));
        for (int child = 0; child < site.childCount(); ++child) {
            const auto *item = static_cast<const CookieItem *>(site.child(child));
            if (item->isSelected())
                selected.insert(item->cookie.key());
        }
    }
    fill(m_data.cookies());
    for (int index = 0; index < topLevelItemCount(); ++index) {
        QTreeWidgetItem &site = *topLevelItem(index);
        site.setExpanded(open.contains(site.text(nameColumn)));
        site.setSelected(selectedSites.contains(site.text(nameColumn)));
        for (int child = 0; !selected.isEmpty() && child < site.childCount(); ++child) {
            auto *item = static_cast<CookieItem *>(site.child(child));
            item->setSelected(selected.contains(item->cookie.key()));
        }
    }
    emit refreshed();
}

void CookieTree::fill(const QList<StoredCookie> &cookies)
{
    const QString session = sessionText();
    QList<QTreeWidgetItem *> items;
    for (const auto &[name, held] : bySite(cookies).asKeyValueRange()) {
        auto *site = new QTreeWidgetItem({name});
        for (const StoredCookie &cookie : held)
            new CookieItem(site, cookie, session);
        items.append(site);
    }
    clear();
    addTopLevelItems(items);
}

QList<StoredCookie> CookieTree::selectedCookies() const
{
    QList<StoredCookie> result;
    for (int index = 0; index < topLevelItemCount(); ++index) {
        const QTreeWidgetItem &site = *topLevelItem(index);
        for (int child = 0; child < site.childCount(); ++child) {
            const auto *item = static_cast<const CookieItem *>(site.child(child));
            if (site.isSelected() || item->isSelected())
                result.append(item->cookie);
        }
    }
    return result;
}

void CookieTree::deleteSelected()
{
    m_data.deleteCookies(selectedCookies());
}
