#include "PageQuestionBox.h"

#include <QLabel>
#include <QPushButton>
#include <QTextLayout>
#include <QtTest>

using namespace Qt::StringLiterals;

/// What stands in a question is seen.
class tst_PageQuestionBox : public QObject {
    Q_OBJECT

private slots:
    void wholeSiteIsSeen_data();
    void wholeSiteIsSeen();
    void siteKeepsItsLine();
    void hostInTheTextKeepsItsLine();
    void longestHostInTheTextIsSeen();
    void keyboardIsSeen();
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

/// The buttons make room where the site fits into one line without them.
void tst_PageQuestionBox::siteKeepsItsLine()
{
    QWidget window;
    PageQuestion question;
    question.asker = QUrl(u"http://maps.example.localhost:8601/"_s);
    question.text = u"Question"_s;
    question.yes = u"Allow"_s;
    question.no = u"Refuse"_s;
    PageQuestionBox box(question, false, &window);
    const auto *asker = box.findChild<QLabel *>(u"lblAsker"_s);
    const int line = asker->fontMetrics().horizontalAdvance(asker->accessibleName());
    window.resize(line + 100, 400);
    box.fitInto(window.size());
    window.show();
    QVERIFY2(asker->width() >= line, qPrintable(QString::number(asker->width())));
    const auto *yes = box.findChild<QPushButton *>(u"cmdYes"_s);
    QVERIFY(yes->mapTo(&box, QPoint()).y() > asker->mapTo(&box, QPoint()).y());
    window.resize(line + 600, 400);
    box.fitInto(window.size());
    QVERIFY(yes->mapTo(&box, QPoint()).x() > asker->mapTo(&box, QPoint(line, 0)).x());
}

/// The lines in which `label` shows its text.
static QStringList linesOf(const QLabel *label)
{
    QTextOption option;
    option.setWrapMode(QTextOption::WordWrap);
    QTextLayout layout(label->text(), label->font());
    layout.setTextOption(option);
    layout.beginLayout();
    QStringList lines;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(label->width());
        lines.append(label->text()
                         .sliced(line.textStart(), line.textLength())
                         .remove(QChar(0x200b))
                         .trimmed());
    }
    layout.endLayout();
    return lines;
}

/// A part of a host may read like another one.
void tst_PageQuestionBox::hostInTheTextKeepsItsLine()
{
    const QString host = u"members-of-maps.example.localhost.example.org"_s;
    QWidget window;
    PageQuestion question;
    question.text = u"What you entered would be sent unencrypted to "_s + host + u". Send it?"_s;
    question.yes = u"Send"_s;
    question.no = u"Do not send"_s;
    PageQuestionBox box(question, false, &window);
    window.show();
    const auto *text = box.findChild<QLabel *>(u"lblText"_s);
    for (int width = 700; width >= 420; width -= 20) {
        window.resize(width, 400);
        box.fitInto(window.size());
        QVERIFY(!linesOf(text).filter(u"example.localhost.example.org"_s).isEmpty());
        QCOMPARE(text->accessibleName(), question.text);
    }
}

void tst_PageQuestionBox::longestHostInTheTextIsSeen()
{
    QWidget window;
    window.resize(300, 600);
    PageQuestion question;
    question.text = u"Sent to "_s + QString(63, u'w') + u".example.org"_s;
    question.yes = u"Send"_s;
    PageQuestionBox box(question, false, &window);
    box.fitInto(window.size());
    window.show();
    const auto *text = box.findChild<QLabel *>(u"lblText"_s);
    for (const QString &line : linesOf(text))
        QVERIFY2(text->fontMetrics().horizontalAdvance(line) <= text->width(), qPrintable(line));
}

/// Return presses the button that has it, also where no key has brought it there.
void tst_PageQuestionBox::keyboardIsSeen()
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
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    box.takeFocus();
    auto *yes = box.findChild<QPushButton *>(u"cmdYes"_s);
    QTRY_VERIFY(yes->hasFocus());
    QVERIFY(!window.testAttribute(Qt::WA_KeyboardFocusChange));
    const QImage focused = yes->grab().toImage();
    box.findChild<QPushButton *>(u"cmdNo"_s)->setFocus(Qt::OtherFocusReason);
    QVERIFY(yes->grab().toImage() != focused);
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
