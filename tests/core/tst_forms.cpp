#include "Forms.h"

#include <QTest>
#include <QWidget>
#include <memory>

using namespace Qt::StringLiterals;

class tst_forms : public QObject {
    Q_OBJECT

private slots:
    void cleanup();
    void keepsLoadOrder();
    void addedOnce();
    void namedBySoleName();
    void leavesWhenDestroyed();
    void leavesWhenRemoved();
    void walkedWhileFormsClose();
};

static std::unique_ptr<QWidget> form(const QString &name)
{
    auto widget = std::make_unique<QWidget>();
    widget->setObjectName(name);
    Forms::add(widget.get());
    return widget;
}

void tst_forms::cleanup()
{
    QVERIFY(Forms::all().isEmpty());
}

void tst_forms::keepsLoadOrder()
{
    const auto frame = form(u"frmMain"_s);
    const auto first = form(u"frmBrowser"_s);
    const auto second = form(u"frmBrowser"_s);
    QCOMPARE(Forms::all(), (QList<QWidget *>{frame.get(), first.get(), second.get()}));
    QCOMPARE(Forms::named("frmBrowser"), (QList<QWidget *>{first.get(), second.get()}));
}

void tst_forms::addedOnce()
{
    const auto frame = form(u"frmMain"_s);
    Forms::add(frame.get());
    QCOMPARE(Forms::all().size(), 1);
}

void tst_forms::namedBySoleName()
{
    const auto frame = form(u"frmMain"_s);
    QVERIFY(Forms::named("frmmain").isEmpty());
    QVERIFY(Forms::named("frm").isEmpty());
    frame->setObjectName(u"frmSource"_s);
    QCOMPARE(Forms::named("frmSource"), QList<QWidget *>{frame.get()});
}

void tst_forms::leavesWhenDestroyed()
{
    auto first = form(u"frmBrowser"_s);
    const auto second = form(u"frmBrowser"_s);
    first.reset();
    QCOMPARE(Forms::all(), QList<QWidget *>{second.get()});
}

void tst_forms::leavesWhenRemoved()
{
    const auto first = form(u"frmBrowser"_s);
    Forms::remove(first.get());
    QVERIFY(Forms::all().isEmpty());
    Forms::remove(first.get());
    Forms::add(first.get());
    QCOMPARE(Forms::all().size(), 1);
}

void tst_forms::walkedWhileFormsClose()
{
    for (int i = 0; i < 5; ++i)
        (void)form(u"frmBrowser"_s).release();
    int closed = 0;
    for (QWidget *open : Forms::all()) {
        delete open;
        ++closed;
    }
    QCOMPARE(closed, 5);
}

QTEST_MAIN(tst_forms)
#include "tst_forms.moc"
