// The pages of the guide: what leads where, and that they name all there is.
#include <QDir>
#include <QRegularExpression>
#include <QTest>

#include "MenuTable.h"
#include "OwnPages.h"
#include "Settings.h"

using namespace Qt::StringLiterals;

class tst_GuidePages : public QObject {
    Q_OBJECT

private slots:
    void everyLinkLeadsToAPlace_data();
    void everyLinkLeadsToAPlace();
    void everyPageIsReached_data() { everyLinkLeadsToAPlace_data(); }
    void everyPageIsReached();
    void translationHasTheSameParts_data();
    void translationHasTheSameParts();
    void everyMenuItemIsNamed();
    void everySettingIsNamed();

private:
    static QStringList languages() { return QDir(u":/guide"_s).entryList(QDir::Dirs); }
    static QStringList pages(const QString &language)
    {
        return QDir(":/guide/"_L1 + language).entryList(QDir::Files);
    }
    /// Empty where there is none.
    static QString text(const QString &language, const QString &page)
    {
        QFile file(":/guide/%1/%2.html"_L1.arg(language, page));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    static QStringList found(const QString &text, const QString &pattern)
    {
        QStringList parts;
        auto each = QRegularExpression(pattern).globalMatch(text);
        while (each.hasNext())
            parts.append(each.next().captured(1));
        return parts;
    }
};

void tst_GuidePages::everyLinkLeadsToAPlace_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("page");
    QVERIFY(languages().contains(u"en"_s));
    for (const QString &language : languages()) {
        for (const QString &file : pages(language)) {
            const QString page = file.section(u'.', 0, 0);
            QTest::addRow("%s, %s", qPrintable(language), qPrintable(page)) << language << page;
        }
    }
}

void tst_GuidePages::everyLinkLeadsToAPlace()
{
    QFETCH(const QString, language);
    QFETCH(const QString, page);
    const QStringList links = found(text(language, page), u"href=\"([^\"]*)\""_s);
    QVERIFY(!links.isEmpty());
    for (const QString &link : links) {
        const QUrl address(link);
        QVERIFY2(!guidePage(address).isEmpty(), qPrintable(link));
        QString target = text(language, guidePage(address));
        if (target.isEmpty())
            target = text(u"en"_s, guidePage(address));
        QVERIFY2(!target.isEmpty(), qPrintable(link));
        const QString place = address.fragment(QUrl::FullyDecoded);
        QVERIFY2(place.isEmpty() || target.contains(" id=\"%1\""_L1.arg(place)), qPrintable(link));
    }
}

/// From the first one.
void tst_GuidePages::everyPageIsReached()
{
    QFETCH(const QString, language);
    QFETCH(const QString, page);
    const QString link = page == "user-guide"_L1 ? u"aria-current"_s : "orvane:guide/"_L1 + page;
    QVERIFY(text(language, u"user-guide"_s).contains(link));
}

void tst_GuidePages::translationHasTheSameParts_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("page");
    QVERIFY(languages().size() > 1);
    for (const QString &language : languages()) {
        for (const QString &file : language == "en"_L1 ? QStringList() : pages(language)) {
            const QString page = file.section(u'.', 0, 0);
            QTest::addRow("%s, %s", qPrintable(language), qPrintable(page)) << language << page;
        }
    }
}

void tst_GuidePages::translationHasTheSameParts()
{
    QFETCH(const QString, language);
    QFETCH(const QString, page);
    for (const QString &part : {u"<h([1-6])"_s, u"<(img)"_s, u"<(tr)>"_s, u"<(pre)>"_s}) {
        const QStringList here = found(text(language, page), part);
        const QStringList there = found(text(u"en"_s, page), part);
        QVERIFY2(here == there,
                 qPrintable(part + ": "_L1 + QString::number(here.size()) + u'/'
                            + QString::number(there.size())));
    }
}

/// As the list of keys calls it, "New > Current".
void tst_GuidePages::everyMenuItemIsNamed()
{
    const QString menus = text(u"en"_s, u"menus"_s);
    QStringList path;
    const std::span<const MenuEntry> table = menuTable();
    for (std::size_t i = 0; i < table.size(); ++i) {
        const MenuEntry &entry = table[i];
        if (entry.kind == MenuEntry::Kind::Separator)
            continue;
        QString caption = QString::fromLatin1(entry.caption).remove(u'&').remove("..."_L1);
        path = path.first(entry.depth) << caption.trimmed();
        const bool hasItems = i + 1 < table.size() && table[i + 1].depth > entry.depth;
        const QString wanted = entry.depth == 0
            ? ">%1</h2>"_L1.arg(path.first())
            : "<td>%1</td>"_L1.arg(path.sliced(1).join(u" &gt; "_s));
        QVERIFY2((entry.depth > 0 && hasItems) || menus.contains(wanted), qPrintable(wanted));
    }
}

void tst_GuidePages::everySettingIsNamed()
{
    const QString files = text(u"en"_s, u"files"_s);
    const auto check = [&files](const auto &setting) {
        const QString key = "<code>%1</code>"_L1.arg(QLatin1StringView(setting.key));
        QVERIFY2(files.contains(key), setting.key);
    };
    for (const Settings::Switch *each : Settings::switches)
        check(*each);
    check(Settings::profileWithWindows);
    check(Settings::defaultBrowserAsked);
    check(Settings::align);
    check(Settings::sleepAfter);
    check(Settings::sleepMemory);
    check(Settings::homeUrl);
    check(Settings::uploadFolder);
    check(Settings::language);
}

QTEST_GUILESS_MAIN(tst_GuidePages)
#include "tst_guidepages.moc"
