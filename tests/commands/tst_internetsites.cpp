#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QUrl>
#include <QtTest>

#include "FakeEngineData.h"
#include "InternetOptionsDialog.h"
#include "ProgramWithoutEngine.h"
#include "ScreenReader.h"
#include "SitePermissions.h"
#include "Unlogged.h"
#include "ZoomKeeper.h"

using namespace Qt::StringLiterals;
using SitePermissions::Answer;
using SitePermissions::Word;

/// The page of the internet options that lists what the user had remembered of sites.
class tst_InternetSites : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void pageStandsBehindTheOthers();
    void withoutAFileItIsEmpty();
    void answersAreListed();
    void looksAlikeAreToldApart();
    void siteIsWholeWhereThereIsRoom();
    void selectedAreRemoved();
    void delRemoves();
    void keyboardStaysInTheList();
    void allAreRemovedAfterAQuestion();
    void removedStayRemovedAfterCancel();
    void listIsAsTheFileIsNow();
    void whatCannotBeWrittenIsTold();
    void screenReaderReadsTheRows();
    void fiveHundredSites();
    void zoomIsListed();
    void zoomIsRemoved();
    void zoomGoesWithAll();

private:
    static constexpr auto file = "AppData/Permissions.ini"_L1;
    static constexpr auto zoomFile = "AppData/Zoom.ini"_L1;

    void open()
    {
        m_program->choose("mnuToolsInternetOptions");
        find<QTabWidget>("tabPages")->setCurrentIndex(2);
        QVERIFY(list()->isVisible());
    }
    static QWidget *form() { return Forms::named("frmInternetOptions").value(0); }
    template <typename Control> static Control *find(const char *name)
    {
        return form()->findChild<Control *>(QLatin1String(name));
    }
    static QTreeWidget *list() { return find<QTreeWidget>("lstSites"); }
    static QStringList rows()
    {
        QStringList result;
        for (int index = 0; index < list()->topLevelItemCount(); ++index) {
            const QTreeWidgetItem *row = list()->topLevelItem(index);
            QStringList cells;
            for (int column = 0; column < list()->columnCount(); ++column)
                cells.append(row->text(column));
            cells.removeAll(QString());
            result.append(cells.join(" | "_L1));
        }
        return result;
    }
    static void click(const char *name)
    {
        QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton);
    }
    QByteArray stored() const { return m_program->folder.read(file); }

    std::unique_ptr<ProgramWithoutEngine> m_program;
    std::unique_ptr<FakeData> m_data;
    QByteArray m_path;
};

void tst_InternetSites::init()
{
    m_path = qgetenv("PATH");
    m_program = std::make_unique<ProgramWithoutEngine>();
    QVERIFY(m_program->folder.isValid());
    qputenv("PATH", m_program->folder.file(u"bin"_s).toUtf8());
    m_data = std::make_unique<FakeData>();
    QVERIFY(m_program->folder.write(file,
                                    "[https://shop.example]\r\nCamera=Allow\r\nPlace=Refuse\r\n"
                                    "[https://ads.example https://shop.example]\r\n"
                                    "Notifications=Refuse\r\n"));
    m_program->start();
}

void tst_InternetSites::cleanup()
{
    m_program.reset();
    m_data.reset();
    qputenv("PATH", m_path);
}

void tst_InternetSites::pageStandsBehindTheOthers()
{
    m_program->choose("mnuToolsInternetOptions");
    const auto *pages = find<QTabWidget>("tabPages");
    QVERIFY(pages->count() > 2);
    QCOMPARE(pages->currentIndex(), 0);
    QCOMPARE(pages->tabText(2).remove(u'&'), u"Sites"_s);
}

void tst_InternetSites::withoutAFileItIsEmpty()
{
    QVERIFY(QFile::remove(m_program->folder.file(file)));
    open();
    QVERIFY(rows().isEmpty());
    QVERIFY(!find<QPushButton>("cmdRemoveSite")->isEnabled());
    QVERIFY(!find<QPushButton>("cmdRemoveAllSites")->isEnabled());
    QTest::keyClick(list(), Qt::Key_Delete);
    QVERIFY(!m_program->folder.exists(file));
}

void tst_InternetSites::answersAreListed()
{
    open();
    QCOMPARE(rows(),
             QStringList({u"https://shop.example | Where you are | Refused"_s,
                          u"https://shop.example | Camera | Allowed"_s,
                          u"https://ads.example | https://shop.example | Notifications | "
                          "Refused"_s}));
    QVERIFY(!find<QPushButton>("cmdRemoveSite")->isEnabled());
    QVERIFY(find<QPushButton>("cmdRemoveAllSites")->isEnabled());
}

void tst_InternetSites::looksAlikeAreToldApart()
{
    // A small Cyrillic letter in the place of an "a".
    const QUrl url(u"https://b\u0430nk.example/"_s);
    QVERIFY(SitePermissions::keep(AskingSite::of(url, url), {Permission::Place}, Word::Allow));
    open();
    QVERIFY(rows().last().startsWith("https://xn--"_L1));
}

/// A site that nobody is around takes the room of both.
void tst_InternetSites::siteIsWholeWhereThereIsRoom()
{
    QVERIFY(m_program->folder.write(file, "[http://maps.example.localhost:8601]\nPlace=Allow\n"));
    open();
    const auto isWhole = [](int column) {
        return list()->columnWidth(column)
            >= static_cast<const QAbstractItemView *>(list())->sizeHintForColumn(column);
    };
    QVERIFY2(isWhole(0), qPrintable(QString::number(list()->columnWidth(0))));
    const QByteArray site =
        "http://" + QByteArray(40, 'a') + '.' + QByteArray(40, 'a') + ".example";
    QVERIFY(m_program->folder.write(file, '[' + site + ' ' + site + "b]\nPlace=Allow\n"));
    form()->close();
    open();
    QVERIFY(!isWhole(0) && !isWhole(1));
    QVERIFY(qAbs(list()->columnWidth(0) - list()->columnWidth(1)) <= 2);
}

void tst_InternetSites::selectedAreRemoved()
{
    open();
    list()->topLevelItem(0)->setSelected(true);
    list()->topLevelItem(2)->setSelected(true);
    click("cmdRemoveSite");
    QCOMPARE(rows(), QStringList(u"https://shop.example | Camera | Allowed"_s));
    QCOMPARE(stored(), QByteArray("[https://shop.example]\r\nCamera=Allow\r\n"));
    QVERIFY(!find<QPushButton>("cmdRemoveSite")->isEnabled());
}

void tst_InternetSites::delRemoves()
{
    open();
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Home);
    QTest::keyClick(list(), Qt::Key_Down);
    QTest::keyClick(list(), Qt::Key_Delete);
    QCOMPARE(rows().size(), 2);
    QVERIFY(!stored().contains("Camera"));
    QVERIFY(stored().contains("Place=Refuse"));
}

void tst_InternetSites::keyboardStaysInTheList()
{
    open();
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Home);
    for (int left = 2; left >= 0; --left) {
        QTest::keyClick(list(), Qt::Key_Space);
        click("cmdRemoveSite");
        QCOMPARE(rows().size(), left);
        QCOMPARE(form()->focusWidget(), list());
        QVERIFY(left == 0 || list()->currentItem());
    }
    QVERIFY(!find<QPushButton>("cmdRemoveAllSites")->isEnabled());
}

void tst_InternetSites::allAreRemovedAfterAQuestion()
{
    open();
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        click("cmdRemoveAllSites");
        QTRY_VERIFY(form()->findChild<QMessageBox *>());
        QPointer<QMessageBox> box = form()->findChild<QMessageBox *>();
        QTest::mouseClick(box->button(answer), Qt::LeftButton);
        QTRY_VERIFY(!box);
        QTRY_COMPARE(rows().size(), answer == QMessageBox::Yes ? 0 : 3);
    }
    QCOMPARE(stored(), QByteArray(""));
    QVERIFY(!find<QPushButton>("cmdRemoveAllSites")->isEnabled());
}

void tst_InternetSites::removedStayRemovedAfterCancel()
{
    open();
    list()->topLevelItem(0)->setSelected(true);
    click("cmdRemoveSite");
    click("cmdCancel");
    QTRY_VERIFY(!form());
    QVERIFY(!stored().contains("Place"));
}

void tst_InternetSites::listIsAsTheFileIsNow()
{
    open();
    QVERIFY(m_program->folder.write(file, "[https://new.example]\nFonts=Allow\n"));
    find<QTabWidget>("tabPages")->setCurrentIndex(0);
    find<QTabWidget>("tabPages")->setCurrentIndex(2);
    QCOMPARE(rows(), QStringList(u"https://new.example | List of your fonts | Allowed"_s));
}

void tst_InternetSites::whatCannotBeWrittenIsTold()
{
    const Unlogged quiet;
    open();
    const QString path = m_program->folder.file(file);
    QVERIFY(QFile::remove(path) && QDir().mkpath(path));
    list()->topLevelItem(0)->setSelected(true);
    click("cmdRemoveSite");
    QTRY_VERIFY(form()->findChild<QMessageBox *>());
    QVERIFY(form()->findChild<QMessageBox *>()->text().contains(path));
}

void tst_InternetSites::screenReaderReadsTheRows()
{
    open();
    ScreenReader reader;
    const QString text = reader.read(list());
    for (const char *part :
         {"Answers by site", "https://shop.example", "Camera", "Allowed", "https://ads.example"})
        QVERIFY2(text.contains(QLatin1String(part)), qPrintable(text));
}

void tst_InternetSites::fiveHundredSites()
{
    QByteArray bytes;
    for (int number = 0; number < SitePermissions::mostSites; ++number) {
        bytes += "[https://" + QByteArray(60, 'a') + QByteArray::number(number) + ".example]\n";
        for (const char *key : {"Place", "Notifications", "Camera", "Microphone", "Screen",
                                "Clipboard", "Fonts", "Pointer", "Downloads"})
            bytes += QByteArray(key) + "=Allow\n";
    }
    QVERIFY(m_program->folder.write(file, bytes));
    open();
    QCOMPARE(rows().size(), 9 * SitePermissions::mostSites);
    list()->selectAll();
    click("cmdRemoveSite");
    QVERIFY(rows().isEmpty());
    QCOMPARE(stored(), QByteArray(""));
}

void tst_InternetSites::zoomIsListed()
{
    QVERIFY(
        m_program->folder.write(zoomFile, "[Sites]\nmaps.example=150\nxn--bnk-7cd.example=50\n"));
    open();
    QCOMPARE(rows().mid(3),
             QStringList({u"maps.example | Zoom | 150%"_s, u"xn--bnk-7cd.example | Zoom | 50%"_s}));
}

/// And from the pages that are open.
void tst_InternetSites::zoomIsRemoved()
{
    QVERIFY(m_program->folder.write(zoomFile, "[Sites]\nmaps.example=150\nshop.example=50\n"));
    open();
    const QSignalSpy changed(&ZoomKeeper::instance(), &ZoomKeeper::changed);
    // Beside an answer of another site.
    list()->topLevelItem(0)->setSelected(true);
    list()->topLevelItem(3)->setSelected(true);
    click("cmdRemoveSite");
    QCOMPARE(m_program->folder.read(zoomFile), QByteArray("[Sites]\nshop.example=50\n"));
    QVERIFY(!stored().contains("Place"));
    QCOMPARE(rows().size(), 3);
    QCOMPARE(changed.size(), 1);
    QCOMPARE(changed.first(), QVariantList({u"maps.example"_s, 100}));
}

void tst_InternetSites::zoomGoesWithAll()
{
    QVERIFY(QFile::remove(m_program->folder.file(file)));
    QVERIFY(m_program->folder.write(zoomFile, "[Sites]\nmaps.example=150\n"));
    open();
    const QSignalSpy changed(&ZoomKeeper::instance(), &ZoomKeeper::changed);
    QVERIFY(find<QPushButton>("cmdRemoveAllSites")->isEnabled());
    click("cmdRemoveAllSites");
    QTRY_VERIFY(form()->findChild<QMessageBox *>());
    QTest::mouseClick(form()->findChild<QMessageBox *>()->button(QMessageBox::Yes), Qt::LeftButton);
    QTRY_VERIFY(rows().isEmpty());
    QCOMPARE(m_program->folder.read(zoomFile), QByteArray());
    QCOMPARE(changed.size(), 1);
}

QTEST_MAIN(tst_InternetSites)
#include "tst_internetsites.moc"
