#include "ThemedIcon.h"

#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_themedicon : public QObject {
    Q_OBJECT

private slots:
    void everyPictureDraws_data();
    void everyPictureDraws();
    void unknownNames();
    void sharpAtEveryRatio();
    void followsThePalette();
    void disabledIsPaler();

private:
    static QPalette inked(const QColor &ink);
    static bool holds(const QImage &image, const QColor &colour);
};

QPalette tst_themedicon::inked(const QColor &ink)
{
    QPalette palette = QGuiApplication::palette();
    palette.setColor(QPalette::Active, QPalette::ButtonText, ink);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::gray);
    return palette;
}

bool tst_themedicon::holds(const QImage &image, const QColor &colour)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == colour)
                return true;
        }
    }
    return false;
}

void tst_themedicon::everyPictureDraws_data()
{
    QTest::addColumn<QString>("name");
    themedIcon(u"new"_s); // brings the resources in
    const QStringList files = QDir(u":/icons"_s).entryList({u"*.svg"_s});
    QVERIFY(files.size() >= 29);
    for (const QString &file : files)
        QTest::newRow(qPrintable(file)) << file.chopped(4);
}

void tst_themedicon::everyPictureDraws()
{
    QFETCH(QString, name);
    QGuiApplication::setPalette(inked(Qt::red));
    const QImage image = themedIcon(name).pixmap(QSize(40, 40), 1.0).toImage();
    QCOMPARE(image.size(), QSize(40, 40));
    QVERIFY(holds(image, Qt::red));
    // Nothing is cut off at the edges.
    for (int i = 0; i < 40; ++i) {
        QCOMPARE(image.pixelColor(i, 0).alpha(), 0);
        QCOMPARE(image.pixelColor(i, 39).alpha(), 0);
        QCOMPARE(image.pixelColor(0, i).alpha(), 0);
        QCOMPARE(image.pixelColor(39, i).alpha(), 0);
    }
}

void tst_themedicon::unknownNames()
{
    for (const QString &name : {QString(), u"no such picture"_s}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no picture named"_s));
        QVERIFY(themedIcon(name).isNull());
    }
}

void tst_themedicon::sharpAtEveryRatio()
{
    const QIcon icon = themedIcon(u"home"_s);
    for (const qreal ratio : {1.0, 1.5, 2.0}) {
        const QPixmap picture = icon.pixmap(QSize(20, 20), ratio);
        QCOMPARE(picture.size(), QSize(20, 20) * ratio);
        QCOMPARE(picture.devicePixelRatio(), ratio);
    }
    // Painting on a device of a high ratio uses its pixels too.
    QImage canvas(40, 40, QImage::Format_ARGB32_Premultiplied);
    canvas.setDevicePixelRatio(2);
    canvas.fill(Qt::transparent);
    QPainter painter(&canvas);
    icon.paint(&painter, QRect(0, 0, 20, 20));
    painter.end();
    QCOMPARE(canvas, icon.pixmap(QSize(20, 20), 2.0).toImage().convertToFormat(canvas.format()));
}

void tst_themedicon::followsThePalette()
{
    const QIcon icon = themedIcon(u"stop"_s);
    QGuiApplication::setPalette(inked(Qt::red));
    QVERIFY(holds(icon.pixmap(QSize(40, 40), 1.0).toImage(), Qt::red));
    QGuiApplication::setPalette(inked(Qt::white));
    const QImage white = icon.pixmap(QSize(40, 40), 1.0).toImage();
    QVERIFY(holds(white, Qt::white));
    QVERIFY(!holds(white, Qt::red));
}

void tst_themedicon::disabledIsPaler()
{
    QGuiApplication::setPalette(inked(Qt::red));
    const QIcon icon = themedIcon(u"save"_s);
    const QImage grey = icon.pixmap(QSize(40, 40), 1.0, QIcon::Disabled).toImage();
    QVERIFY(holds(grey, QColor(Qt::gray)));
    QVERIFY(!holds(grey, Qt::red));
}

QTEST_MAIN(tst_themedicon)
#include "tst_themedicon.moc"
