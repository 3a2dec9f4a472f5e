#include <QListWidget>
#include <QtTest>

#include "TickDelegate.h"

using namespace Qt::StringLiterals;

/// The boxes of a list stand out from its ground.
class tst_TickDelegate : public QObject {
    Q_OBJECT

private slots:
    void edgeIsSeen_data();
    void edgeIsSeen();
};

void tst_TickDelegate::edgeIsSeen_data()
{
    QTest::addColumn<QColor>("ground");
    QTest::addColumn<QColor>("ink");
    QTest::addColumn<QColor>("window");
    QTest::newRow("dark") << QColor(30, 30, 32) << QColor(230, 230, 230) << QColor(45, 45, 48);
    QTest::newRow("light") << QColor(Qt::white) << QColor(Qt::black) << QColor(239, 239, 239);
}

void tst_TickDelegate::edgeIsSeen()
{
    QFETCH(const QColor, ground);
    QFETCH(const QColor, ink);
    QFETCH(const QColor, window);
    QListWidget list;
    QPalette palette(window);
    palette.setColor(QPalette::Base, ground);
    palette.setColor(QPalette::Text, ink);
    list.setPalette(palette);
    list.setItemDelegate(new TickDelegate(&list));
    // Without a text, all that is seen of it is its box.
    auto *item = new QListWidgetItem(QString(), &list);
    item->setCheckState(Qt::Unchecked);
    list.resize(200, 100);
    list.show();
    QVERIFY(QTest::qWaitForWindowExposed(&list));
    const QImage line = list.viewport()->grab(list.visualItemRect(item)).toImage();
    int most = 0;
    for (int y = 0; y < line.height(); ++y) {
        for (int x = 0; x < line.width(); ++x)
            most = qMax(most, qAbs(qGray(line.pixel(x, y)) - qGray(ground.rgb())));
    }
    QVERIFY2(most > 60, qPrintable(QString::number(most)));
}

QTEST_MAIN(tst_TickDelegate)
#include "tst_tickdelegate.moc"
