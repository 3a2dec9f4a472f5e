#include "LoginFields.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_LoginFields : public QObject {
    Q_OBJECT

private slots:
    void keepingIsOfferedOnlyWhereItCanBe();
    void keptIsFilledIn();
    void whatTheUserEntersStays();
    void tickOfTheUserStays();
};

void tst_LoginFields::keepingIsOfferedOnlyWhereItCanBe()
{
    const LoginFields without({}, false, nullptr);
    QVERIFY(!without.findChild<QCheckBox *>());
    QVERIFY(!without.isToBeKept());
    const LoginFields with({}, true, nullptr);
    const auto *keep = with.findChild<QCheckBox *>(u"chkKeep"_s);
    QVERIFY(keep && !keep->isChecked());
    QCOMPARE(QString(keep->text()).remove(u'&'), u"Keep in the desktop's keyring"_s);
    QVERIFY(!with.isToBeKept() && !with.wasKept());
}

void tst_LoginFields::keptIsFilledIn()
{
    LoginFields fields({}, true, nullptr);
    fields.fillIn(u"me"_s, u"secret"_s);
    QCOMPARE(fields.user(), u"me"_s);
    QCOMPARE(fields.password(), u"secret"_s);
    QVERIFY(fields.isToBeKept() && fields.wasKept());
}

/// The keyring may answer while he types.
void tst_LoginFields::whatTheUserEntersStays()
{
    for (const char *name : {"txtUser", "txtPassword"}) {
        LoginFields fields({}, true, nullptr);
        QTest::keyClicks(fields.findChild<QLineEdit *>(QLatin1String(name)), u"x"_s);
        fields.fillIn(u"me"_s, u"secret"_s);
        QCOMPARE(fields.user() + fields.password(), u"x"_s);
        QVERIFY(fields.wasKept());
    }
}

void tst_LoginFields::tickOfTheUserStays()
{
    LoginFields fields({}, true, nullptr);
    auto *keep = fields.findChild<QCheckBox *>();
    keep->click();
    keep->click();
    fields.noteKept();
    QVERIFY(fields.wasKept() && !fields.isToBeKept());
}

QTEST_MAIN(tst_LoginFields)
#include "tst_loginfields.moc"
