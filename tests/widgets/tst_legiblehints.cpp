#include <QApplication>
#include <QPalette>
#include <QWidget>
#include <QtTest>

#include "LegibleHints.h"

/// Hints stand out from their ground, whatever the desktop's palette says of them.
class tst_LegibleHints : public QObject {
    Q_OBJECT

private slots:
    void init() { m_before = QApplication::palette(); }
    void cleanup() { QApplication::setPalette(m_before); }
    void darkPaletteWithoutHints();
    void paletteThatChanges();
    void legibleOnesStay();

private:
    static QPalette paletteOf(const QColor &ground, const QColor &ink, const QColor &hint)
    {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Base, ground);
        palette.setColor(QPalette::Text, ink);
        palette.setColor(QPalette::PlaceholderText, hint);
        return palette;
    }
    /// As it is seen, of 255 grey levels.
    static int contrast()
    {
        const QPalette palette = QApplication::palette();
        const QColor hint = palette.color(QPalette::PlaceholderText);
        const int difference = qGray(hint.rgb()) - qGray(palette.color(QPalette::Base).rgb());
        return int(double(hint.alphaF()) * difference);
    }

    QPalette m_before;
};

void tst_LegibleHints::darkPaletteWithoutHints()
{
    QApplication::setPalette(
        paletteOf(QColor(35, 38, 41), QColor(239, 240, 241), QColor(0, 0, 0, 128)));
    QVERIFY(contrast() < 0);
    QWidget window;
    new LegibleHints(window);
    QVERIFY(contrast() > 100);
    QCOMPARE(QApplication::palette().color(QPalette::Base), QColor(35, 38, 41));
}

void tst_LegibleHints::paletteThatChanges()
{
    QWidget window;
    window.show();
    new LegibleHints(window);
    QApplication::setPalette(paletteOf(Qt::black, Qt::white, QColor(0, 0, 0, 128)));
    QTRY_VERIFY(contrast() > 100);
    QApplication::setPalette(paletteOf(Qt::white, Qt::black, QColor(255, 255, 255, 178)));
    QTRY_VERIFY(contrast() < -100);
}

void tst_LegibleHints::legibleOnesStay()
{
    const QColor hint(0, 0, 0, 128);
    QApplication::setPalette(paletteOf(Qt::white, Qt::black, hint));
    QWidget window;
    new LegibleHints(window);
    QCOMPARE(QApplication::palette().color(QPalette::PlaceholderText), hint);
}

QTEST_MAIN(tst_LegibleHints)
#include "tst_legiblehints.moc"
