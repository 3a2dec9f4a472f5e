#include <QDrag>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QProcess>
#include <QStandardPaths>

#include "../Session.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "EngineTest.h"
#include "StatusStrip.h"
#include "WaylandPointer.h"

using namespace Qt::StringLiterals;

namespace {
/// A window that a file can be dragged out of.
class FileSource : public QWidget {
public:
    explicit FileSource(const QString &file)
        : m_file(file)
    {
    }

protected:
    void mousePressEvent(QMouseEvent *) override
    {
        auto *files = new QMimeData;
        files->setUrls({QUrl::fromLocalFile(m_file)});
        auto *drag = new QDrag(this);
        drag->setMimeData(files);
        drag->exec(Qt::CopyAction | Qt::MoveAction | Qt::LinkAction);
    }

private:
    QString m_file;
};

/// How often something was dragged over a widget.
class DragCount : public QObject {
public:
    explicit DragCount(QWidget *over)
        : m_over(over)
    {
        qApp->installEventFilter(this);
    }
    int moves = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *widget = qobject_cast<QWidget *>(watched);
        if (event->type() == QEvent::DragMove && widget && widget->window() == m_over)
            ++moves;
        return false;
    }

private:
    QWidget *m_over;
};
}

/// The program on a Wayland compositor, used with a mouse of the compositor's.
class tst_Wayland : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup() { m_session.reset(); }

    void frameAndPageAreShown();
    void menusOpenAndClose();
    void bandIsDragged();
    void profileIsDropped();
    void textIsCopiedToOtherPrograms();
    void textIsPastedFromOtherPrograms();
    void keysAreTyped();
    void linkIsNamedUnderThePointer();

private:
    QPoint at(const QWidget *widget, QPoint place) const;
    QPoint at(const QWidget *widget) const { return at(widget, widget->rect().center()); }
    QLineEdit *addressField() const { return m_session->address().findChild<QLineEdit *>(); }
    static QImage screen();
    static QString output(const QString &program, const QStringList &arguments);

    std::unique_ptr<Session> m_session;
    WaylandPointer m_pointer;
};

void tst_Wayland::initTestCase()
{
    if (!QGuiApplication::platformName().startsWith("wayland"_L1) || !m_pointer.isValid())
        QSKIP("This is for scripts/with-display --wayland.");
}

void tst_Wayland::init()
{
    m_session = std::make_unique<Session>();
    m_session->server.page("/home", "<title>Green</title><body style='background:#30c060'>");
    m_session->start();
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
    // The compositor gives the only window the whole screen.
    QTRY_COMPARE(m_session->frame->size(), QGuiApplication::primaryScreen()->size());
}

/// Where on the screen a place of a widget is. No program is told where its windows are; the
/// frame's is in the corner, and what pops up stands where it was asked to.
QPoint tst_Wayland::at(const QWidget *widget, QPoint place) const
{
    return widget->mapToGlobal(place) - m_session->frame->mapToGlobal(QPoint(0, 0));
}

/// What the compositor shows.
QImage tst_Wayland::screen()
{
    QProcess grim;
    grim.start(u"grim"_s, {u"-t"_s, u"ppm"_s, u"-"_s});
    return grim.waitForFinished() ? QImage::fromData(grim.readAllStandardOutput()) : QImage();
}

QString tst_Wayland::output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    // What this program owns is asked of it while the other one runs.
    QSignalSpy(&process, &QProcess::finished).wait();
    return QString::fromUtf8(process.readAllStandardOutput());
}

void tst_Wayland::frameAndPageAreShown()
{
    const QPoint page = at(m_session->active()->browser()->widget());
    QTRY_COMPARE(screen().pixelColor(page), QColor(0x30, 0xc0, 0x60));
    const QImage bars =
        screen().copy(QRect(at(m_session->frame->menuWidget(), QPoint(0, 0)), QSize(1000, 100)));
    QVERIFY2(bars.convertToFormat(QImage::Format_Indexed8).colorCount() > 8, "bands are drawn");
}

void tst_Wayland::menusOpenAndClose()
{
    const auto *bar = m_session->frame->findChild<QMenuBar *>();
    QAction *file = bar->actions().constFirst();
    const QPoint title = at(bar, bar->actionGeometry(file).center());
    m_pointer.click(title);
    QTRY_VERIFY(file->menu()->isVisible());
    m_pointer.click(at(m_session->active()->browser()->widget()));
    QTRY_VERIFY(!file->menu()->isVisible());
    QCOMPARE(m_session->windows(), 1);

    QAction *view = bar->actions().at(2);
    QAction *searchBar = m_session->item("mnuViewSearchBar");
    QVERIFY(!searchBar->isChecked());
    m_pointer.click(at(bar, bar->actionGeometry(view).center()));
    QTRY_VERIFY(view->menu()->isVisible() && view->menu()->windowHandle()->isExposed());
    m_pointer.click(at(view->menu(), view->menu()->actionGeometry(searchBar).center()));
    QTRY_VERIFY(searchBar->isChecked());
    QVERIFY(!view->menu()->isVisible());
}

void tst_Wayland::bandIsDragged()
{
    auto &bar = *m_session->frame->findChild<CoolBar *>();
    QCOMPARE(bar.band(1)->key(), u"Functions"_s);
    const QPoint from = bar.band(u"Functions"_s)->handle().center();
    const QPoint to = bar.band(u"Browser"_s)->handle().center() + QPoint(60, 0);
    m_pointer.moveTo(at(&bar, from));
    m_pointer.press();
    m_pointer.moveTo(at(&bar, (from + to) / 2));
    m_pointer.moveTo(at(&bar, to));
    m_pointer.release();
    QTRY_COMPARE(bar.band(1)->key(), u"Browser"_s);
}

void tst_Wayland::profileIsDropped()
{
    const QByteArray one = m_session->server.url(u"/one"_s).toUtf8();
    QVERIFY(m_session->folder.write(
        u"day.orp"_s, "[Profile_URLS]\r\nURL1=" + one + "\r\n[URL_Count]\r\nCount=1\r\n"));
    const QSize whole = m_session->frame->size();
    FileSource source(m_session->folder.file(u"day.orp"_s));
    source.show();
    QTRY_COMPARE(m_session->frame->width(), whole.width() / 2);
    QTRY_COMPARE(source.width(), whole.width() / 2);

    // The drag is an event loop of its own. Let go before the frame has answered the first move,
    // the file would go nowhere.
    const QPoint page = at(m_session->active()->browser()->widget());
    const DragCount dragged(m_session->frame.get());
    QTimer user;
    int ticks = 0;
    connect(&user, &QTimer::timeout, this, [&] {
        m_pointer.moveTo(page + QPoint(++ticks % 20, 0));
        if (dragged.moves > 2) {
            m_pointer.release();
            user.stop();
        }
    });
    m_pointer.moveTo(QPoint(whole.width() * 3 / 4, whole.height() / 2));
    m_pointer.press();
    user.start(20);
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_VERIFY(m_session->shows(QString::fromUtf8(one)));
}

void tst_Wayland::textIsCopiedToOtherPrograms()
{
    addressField()->setText(u"copied here"_s);
    m_pointer.click(at(addressField()));
    QTRY_VERIFY(addressField()->hasFocus());
    addressField()->selectAll();
    m_session->choose("mnuEditCopy");
    QTRY_COMPARE(output(u"wl-paste"_s, {u"--no-newline"_s}), u"copied here"_s);
}

void tst_Wayland::textIsPastedFromOtherPrograms()
{
    m_pointer.click(at(addressField()));
    QTRY_VERIFY(addressField()->hasFocus());
    output(u"wl-copy"_s, {u"from elsewhere"_s});
    QTRY_COMPARE(QGuiApplication::clipboard()->text(), u"from elsewhere"_s);
    addressField()->selectAll();
    m_session->choose("mnuEditPaste");
    QTRY_COMPARE(addressField()->text(), u"from elsewhere"_s);
}

void tst_Wayland::keysAreTyped()
{
    // A keyboard that comes with its first key would lose it: this one is there, and rests.
    QProcess keyboard;
    keyboard.start(u"wtype"_s, {u"-s"_s, u"100000"_s});
    const QString address = m_session->server.url(u"/two"_s);
    m_pointer.click(at(addressField()));
    QTRY_VERIFY(addressField()->hasFocus());
    const auto isTyped = [&] {
        addressField()->selectAll();
        output(u"wtype"_s, {address});
        return addressField()->text() == address;
    };
    QTRY_VERIFY(isTyped());
    output(u"wtype"_s, {u"-k"_s, u"Return"_s});
    QTRY_VERIFY(m_session->shows(address));
    keyboard.kill();
    keyboard.waitForFinished();
}

void tst_Wayland::linkIsNamedUnderThePointer()
{
    const QString address = m_session->server.url(u"/link"_s);
    m_session->server.page("/link",
                           "<body style='margin:0'><a href='http://named.example/' "
                           "style='display:block;height:400px'>link</a>");
    m_session->frame->navigateActive(address);
    QTRY_VERIFY(m_session->shows(address));
    const auto *strip = m_session->active()->findChild<StatusStrip *>();
    const QPoint link = at(m_session->active()->browser()->widget(), QPoint(60, 60));
    int moved = 0;
    const auto isNamed = [&] {
        m_pointer.moveTo(link + QPoint(++moved % 9, 0));
        return strip->text().contains(u"named.example"_s);
    };
    QTRY_VERIFY(isNamed());
}

ORVANE_ENGINE_TEST_MAIN(tst_Wayland)
#include "tst_wayland.moc"
