#pragma once

#include <QFile>
#include <QFileDialog>
#include <QPrintDialog>
#include <QWebEnginePage>
#include <QWebEngineView>

#include "Session.h"

/// What a user does in the dialogs of the page commands.
namespace PageDialogs {

inline QWebEnginePage &page(const Session &session)
{
    return *session.active()->findChild<QWebEngineView *>()->page();
}

/// The modal dialog of that kind that is there by 10 s from now; null without one.
template <typename Dialog> Dialog *waitFor()
{
    Dialog *dialog = nullptr;
    const auto find = [&] {
        dialog = qobject_cast<Dialog *>(QApplication::activeModalWidget());
        return dialog != nullptr;
    };
    return QTest::qWaitFor(find, 10000) ? dialog : nullptr;
}

/// Saves the active page as `file`; `kind` counts from 0 in the order of the dialog.
inline void save(const Session &session, const QString &file, int kind)
{
    session.choose("mnuFileSaveAs");
    auto *dialog = waitFor<QFileDialog>();
    QVERIFY(dialog);
    QVERIFY(kind < dialog->nameFilters().size());
    // What is there already is replaced without a question that a test would have to answer.
    dialog->setOption(QFileDialog::DontConfirmOverwrite);
    dialog->selectNameFilter(dialog->nameFilters().at(kind));
    dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(file);
    QVERIFY(QMetaObject::invokeMethod(dialog, "accept"));
}

/// Prints the active page to `file`.
inline void print(const Session &session, const QString &file)
{
    session.choose("mnuFilePrint");
    auto *dialog = waitFor<QPrintDialog>();
    QVERIFY(dialog);
    dialog->findChild<QLineEdit *>(QStringLiteral("filename"))->setText(file);
    dialog->accept();
}

inline QByteArray read(const QString &file)
{
    QFile source(file);
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}

}
