#include "PageQuestionBox.h"

#include <QLabel>
#include <QtTest>

using namespace Qt::StringLiterals;

/// What stands in a question is seen.
class tst_PageQuestionBox : public QObject {
    Q_OBJECT

private slots:
    void wholeSiteIsSeen_data();
    void wholeSiteIsSeen();
    void whoTypesOnAnswersNothing();
};

void tst_PageQuestionBox::wholeSiteIsSeen_data()
{
    QTest::addColumn<QString>("site");
    QTest::addColumn<int>("width");
    const QString label(63, u'w');
    QTest::newRow("short") << u"https://bank.example"_s << 600;
    QTest::newRow("long label") << u"http://…"_s + label + u".evil.example:8191"_s << 600;
    QTest::newRow("long label, narrow") << u"http://…"_s + label + u".evil.example:8191"_s << 200;
    QTest::newRow("long label of letters")
        << u"http://"_s + QString(63, u'ж') + u".example"_s << 320;
}

/// Whose it is stands at the end of a host, which a label that fits no line pushes out of sight.
void tst_PageQuestionBox::wholeSiteIsSeen()
{
    QFETCH(QString, site);
    QFETCH(int, width);
    QWidget window;
    window.resize(width, 400);
    PageQuestion question;
    question.shape = PageQuestion::Shape::Box;
    question.title = site;
    question.text = u"Question"_s;
    question.yes = u"Yes"_s;
    question.no = u"No"_s;
    PageQuestionBox box(question, false, &window);
    box.fitInto(window.size());
    window.show();
    const auto *title = box.findChild<QLabel *>(u"lblTitle"_s);
    QVERIFY(title);
    const QRect room(QPoint(), QSize(title->width(), 10'000));
    const QSize taken =
        title->fontMetrics().boundingRect(room, int(Qt::TextWordWrap), title->text()).size();
    QVERIFY2(taken.width() <= title->width(), qPrintable(title->text()));
    QVERIFY(taken.height() <= title->height());
    QVERIFY(box.accessibleName().startsWith(site));
    QCOMPARE(title->accessibleName(), site);
}

/// A script asks while he types: a blank or the end of a line is not meant for its question.
void tst_PageQuestionBox::whoTypesOnAnswersNothing()
{
    QWidget window;
    window.resize(600, 400);
    PageQuestion question;
    question.shape = PageQuestion::Shape::Box;
    question.title = u"Message"_s;
    question.yes = u"Yes"_s;
    question.no = u"No"_s;
    PageQuestionBox box(question, false, &window);
    box.fitInto(window.size());
    const QSignalSpy answered(&box, &PageQuestionBox::answered);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    box.takeFocus();
    QElapsedTimer sinceKey;
    sinceKey.start();
    int left = 20;
    QTimer types;
    connect(&types, &QTimer::timeout, &box, [&] {
        if (box.isAnswerable() || left-- <= 0)
            return;
        sinceKey.restart();
        QTest::keyClick(window.focusWidget(), left % 4 == 0 ? Qt::Key_Space : Qt::Key_A);
    });
    types.start(50);
    QTRY_VERIFY(box.isAnswerable());
    QVERIFY(sinceKey.elapsed() >= 500);
    QCOMPARE(answered.size(), 0);
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    QCOMPARE(answered.size(), 1);
}

QTEST_MAIN(tst_PageQuestionBox)
#include "tst_pagequestionbox.moc"
