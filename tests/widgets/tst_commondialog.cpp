#include "CommonDialog.h"
#include "DesktopFileDialog.h"

#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

/// Runs `act` on the next modal widget of class T that is shown.
template <typename T, typename F> void whenShown(QObject *context, F act)
{
    auto *timer = new QTimer(context);
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, context, [timer, act] {
        auto *widget = qobject_cast<T *>(QApplication::activeModalWidget());
        if (!widget || !widget->isVisible())
            return;
        timer->stop();
        timer->deleteLater();
        act(widget);
    });
    timer->start();
}

void makeFile(const QString &path, const QByteArray &bytes = "x")
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

}

class tst_commondialog : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void propertiesAtCreation();
    void propertiesReadBack();
    void filterReachesTheDialogInPairs();
    void cancelKeepsThePreviousName();
    void defaultExtension_data();
    void defaultExtension();
    void openTakesExistingFilesOnly();
    void saveTakesExistingFoldersOnly();
    void longNamesFail();
    void chosenFilterReadsBack();
    void folderName();
    void dialogBelongsToItsOwner();
    void realSaveDialogAppendsTheExtension();
    void realSaveDialogAsksBeforeOverwriting();
    void realSaveDialogRefusesAMissingFolder();
    void realOpenDialogCompletesTheName();
    void realDialogCancelled();
    void currentFolderStays();

private:
    QString path(const QString &name) const { return m_dir->filePath(name); }
    void answer(const QString &name, int filter = 1);

    std::unique_ptr<QTemporaryDir> m_dir;
    FileDialogRequest m_asked;
};

void tst_commondialog::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
}

void tst_commondialog::cleanup()
{
    setFileDialogAnswerer({});
}

void tst_commondialog::answer(const QString &name, int filter)
{
    setFileDialogAnswerer(
        [this, name, filter](const FileDialogRequest &request) -> std::optional<FileDialogAnswer> {
            m_asked = request;
            if (name.isNull())
                return {};
            return FileDialogAnswer{name, filter};
        });
}

void tst_commondialog::propertiesAtCreation()
{
    const CommonDialog dialog;
    QCOMPARE(dialog.fileName(), QString());
    QCOMPARE(dialog.defaultExt(), u"txt"_s);
    QCOMPARE(dialog.fileTitle(), QString(256, QChar(0)));
    QCOMPARE(dialog.dialogTitle(), QString());
    QCOMPARE(dialog.initDir(), QString());
    QCOMPARE(dialog.filter(), QString());
}

void tst_commondialog::propertiesReadBack()
{
    CommonDialog dialog;
    dialog.setFileName(u"a\0b"_s);
    QCOMPARE(dialog.fileName(), u"ab"_s);
    dialog.setDefaultExt(u".htm"_s);
    QCOMPARE(dialog.defaultExt(), u"htm"_s);
    dialog.setDefaultExt(u".tar.gz."_s);
    QCOMPARE(dialog.defaultExt(), u"targz"_s);
    dialog.setDialogTitle(u"A\0 title"_s);
    QCOMPARE(dialog.dialogTitle(), u"A title"_s);
    dialog.setInitDir(u"/tmp\0x"_s);
    QCOMPARE(dialog.initDir(), u"/tmpx"_s);
    dialog.setFileTitle(u"t\0"_s);
    QCOMPARE(dialog.fileTitle(), u"t\0"_s);
    // The two NULs that end the list come back as two bars.
    dialog.setFilter(u"All Files (*.*)|*.*"_s);
    QCOMPARE(dialog.filter(), u"All Files (*.*)|*.*||"_s);
}

void tst_commondialog::filterReachesTheDialogInPairs()
{
    CommonDialog dialog;
    dialog.setFilter(u"HTML Files (*.html)|*.html|All Files (*.*)|*.*"_s);
    answer({});
    dialog.showOpen(nullptr, 2);
    QCOMPARE(m_asked.filters.size(), 2);
    QCOMPARE(m_asked.filters.at(0).description, u"HTML Files (*.html)"_s);
    QCOMPARE(m_asked.filters.at(0).patterns, u"*.html"_s);
    QCOMPARE(m_asked.filters.at(1).description, u"All Files (*.*)"_s);
    QCOMPARE(m_asked.filters.at(1).patterns, u"*.*"_s);
    QCOMPARE(m_asked.filterIndex, 2);

    const DesktopFileDialog real(m_asked);
    QCOMPARE(real.nameFilters(), QStringList({u"HTML Files (*.html)"_s, u"All Files (*)"_s}));
    QCOMPARE(real.selectedNameFilter(), u"All Files (*)"_s);
    QCOMPARE(real.objectName(), u"CommonDialog"_s);
}

void tst_commondialog::cancelKeepsThePreviousName()
{
    CommonDialog dialog;
    dialog.setFileName(u"before.txt"_s);
    answer({});
    QCOMPARE(dialog.showOpen(nullptr, 1), 0);
    QCOMPARE(dialog.fileName(), u"before.txt"_s);
    QCOMPARE(m_asked.fileName, u"before.txt"_s);
    QCOMPARE(dialog.showSave(nullptr, 1), 0);
    QCOMPARE(dialog.fileName(), u"before.txt"_s);
}

void tst_commondialog::defaultExtension_data()
{
    QTest::addColumn<QString>("extension");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("taken");
    QTest::newRow("unset") << QString(u"-"_s) << u"notes"_s << u"notes.txt"_s;
    QTest::newRow("set") << u".html"_s << u"page"_s << u"page.html"_s;
    QTest::newRow("none") << u""_s << u"page"_s << u"page"_s;
    QTest::newRow("has one") << u"html"_s << u"page.htm"_s << u"page.htm"_s;
    QTest::newRow("ends in a dot") << u"html"_s << u"page."_s << u"page."_s;
}

void tst_commondialog::defaultExtension()
{
    QFETCH(QString, extension);
    QFETCH(QString, typed);
    QFETCH(QString, taken);
    CommonDialog dialog;
    if (extension != "-"_L1)
        dialog.setDefaultExt(extension);
    answer(path(typed));
    QCOMPARE(dialog.showSave(nullptr, 1), 1);
    QCOMPARE(dialog.fileName(), path(taken));
    QCOMPARE(dialog.fileTitle(), taken);
}

void tst_commondialog::openTakesExistingFilesOnly()
{
    CommonDialog dialog;
    answer(path(u"missing.txt"_s));
    QCOMPARE(dialog.showOpen(nullptr, 1), 0);
    QCOMPARE(dialog.fileName(), QString());
    makeFile(path(u"there.txt"_s));
    makeFile(path(u"plain"_s));
    answer(path(u"there"_s));
    QCOMPARE(dialog.showOpen(nullptr, 1), 1);
    QCOMPARE(dialog.fileName(), path(u"there.txt"_s));
    answer(path(u"plain"_s));
    QCOMPARE(dialog.showOpen(nullptr, 1), 1);
    QCOMPARE(dialog.fileName(), path(u"plain"_s));
    answer(m_dir->path());
    QCOMPARE(dialog.showOpen(nullptr, 1), 0);
    QCOMPARE(dialog.fileName(), path(u"plain"_s));
}

void tst_commondialog::saveTakesExistingFoldersOnly()
{
    CommonDialog dialog;
    answer(path(u"nowhere/a.txt"_s));
    QCOMPARE(dialog.showSave(nullptr, 1), 0);
    answer(path(u"a.txt"_s));
    QCOMPARE(dialog.showSave(nullptr, 1), 1);
}

void tst_commondialog::longNamesFail()
{
    QString folder = m_dir->path();
    while (folder.size() < 850)
        folder += u'/' + QString(99, u'd');
    QVERIFY(QDir().mkpath(folder));
    CommonDialog dialog;
    dialog.setDefaultExt({});
    const int room = 1023 - int(folder.size()) - 1;
    answer(folder + u'/' + QString(room + 1, u'n'));
    QCOMPARE(dialog.showSave(nullptr, 1), 0);
    QCOMPARE(dialog.fileName(), QString());
    answer(folder + u'/' + QString(room, u'n'));
    QCOMPARE(dialog.showSave(nullptr, 1), 1);
    QCOMPARE(dialog.fileName().size(), 1023);
}

void tst_commondialog::chosenFilterReadsBack()
{
    CommonDialog dialog;
    dialog.setFilter(u"A|*.a|B|*.b"_s);
    answer(path(u"x.b"_s), 2);
    QCOMPARE(dialog.showSave(nullptr, 1), 1);
    QCOMPARE(m_asked.filterIndex, 1);
    QCOMPARE(dialog.filterIndex(), 2);
}

void tst_commondialog::folderName()
{
    CommonDialog dialog;
    answer(m_dir->path());
    QCOMPARE(dialog.getFolderName(u"Pick one"_s), m_dir->path());
    QCOMPARE(m_asked.title, u"Pick one"_s);
    QCOMPARE(m_asked.kind, FileDialogRequest::Kind::Folder);
    answer({});
    QCOMPARE(dialog.getFolderName(u"Pick one"_s), QString());
}

void tst_commondialog::dialogBelongsToItsOwner()
{
    auto *owner = new QWidget;
    whenShown<DesktopFileDialog>(this, [owner](DesktopFileDialog *dialog) {
        QCOMPARE(dialog->parentWidget(), owner);
        dialog->reject();
        delete owner;
    });
    CommonDialog dialog;
    dialog.setDialogTitle(u"Owned"_s);
    QCOMPARE(dialog.showOpen(owner, 1), 0);
}

void tst_commondialog::realSaveDialogAppendsTheExtension()
{
    CommonDialog dialog;
    dialog.setInitDir(m_dir->path());
    dialog.setDialogTitle(u"Save it"_s);
    dialog.setFilter(u"A Files (*.a)|*.a|All Files (*.*)|*.*"_s);
    whenShown<DesktopFileDialog>(this, [](DesktopFileDialog *shown) {
        QCOMPARE(shown->windowTitle(), u"Save it"_s);
        auto *edit = shown->findChild<QLineEdit *>(u"fileNameEdit"_s);
        QTest::keyClicks(edit, u"typed"_s);
        QTest::keyClick(edit, Qt::Key_Return);
    });
    QCOMPARE(dialog.showSave(nullptr, 2), 1);
    QCOMPARE(dialog.fileName(), path(u"typed.txt"_s));
    QCOMPARE(dialog.filterIndex(), 2);
}

void tst_commondialog::realSaveDialogAsksBeforeOverwriting()
{
    makeFile(path(u"old.txt"_s));
    CommonDialog dialog;
    dialog.setInitDir(m_dir->path());
    whenShown<DesktopFileDialog>(this, [this](DesktopFileDialog *shown) {
        auto *edit = shown->findChild<QLineEdit *>(u"fileNameEdit"_s);
        edit->setText(u"old"_s);
        whenShown<QMessageBox>(this, [shown](QMessageBox *box) {
            QTest::mouseClick(box->button(QMessageBox::No), Qt::LeftButton);
            QTimer::singleShot(0, shown, [shown] {
                QVERIFY(shown->isVisible());
                shown->reject();
            });
        });
        QTest::keyClick(edit, Qt::Key_Return);
    });
    QCOMPARE(dialog.showSave(nullptr, 1), 0);
    QCOMPARE(dialog.fileName(), QString());
}

void tst_commondialog::realSaveDialogRefusesAMissingFolder()
{
    CommonDialog dialog;
    dialog.setInitDir(m_dir->path());
    whenShown<DesktopFileDialog>(this, [this](DesktopFileDialog *shown) {
        auto *edit = shown->findChild<QLineEdit *>(u"fileNameEdit"_s);
        edit->setText(u"nowhere/name"_s);
        whenShown<QMessageBox>(this, [shown](QMessageBox *box) {
            box->accept();
            QTimer::singleShot(0, shown, [shown] {
                QVERIFY(shown->isVisible());
                shown->reject();
            });
        });
        QTest::keyClick(edit, Qt::Key_Return);
    });
    QCOMPARE(dialog.showSave(nullptr, 1), 0);
}

void tst_commondialog::realOpenDialogCompletesTheName()
{
    makeFile(path(u"page.txt"_s));
    CommonDialog dialog;
    dialog.setInitDir(m_dir->path());
    whenShown<DesktopFileDialog>(this, [](DesktopFileDialog *shown) {
        auto *edit = shown->findChild<QLineEdit *>(u"fileNameEdit"_s);
        edit->setText(u"page"_s);
        QTest::keyClick(edit, Qt::Key_Return);
    });
    QCOMPARE(dialog.showOpen(nullptr, 1), 1);
    QCOMPARE(dialog.fileName(), path(u"page.txt"_s));
}

void tst_commondialog::realDialogCancelled()
{
    CommonDialog dialog;
    dialog.setInitDir(m_dir->path());
    whenShown<DesktopFileDialog>(
        this, [](DesktopFileDialog *shown) { QTest::keyClick(shown, Qt::Key_Escape); });
    QCOMPARE(dialog.showSave(nullptr, 1), 0);
}

void tst_commondialog::currentFolderStays()
{
    const QString before = QDir::currentPath();
    makeFile(path(u"page.txt"_s));
    CommonDialog dialog;
    dialog.setFileName(path(u"page.txt"_s));
    whenShown<DesktopFileDialog>(this, [](DesktopFileDialog *shown) { shown->accept(); });
    QCOMPARE(dialog.showOpen(nullptr, 1), 1);
    QCOMPARE(dialog.fileName(), path(u"page.txt"_s));
    QCOMPARE(QDir::currentPath(), before);
}

QTEST_MAIN(tst_commondialog)
#include "tst_commondialog.moc"
