#include "ScriptDialogs.h"

#include "ProgramInfo.h"

#include <QInputDialog>
#include <QMessageBox>
#include <QPointer>
#include <QUrl>
#include <QWebEnginePage>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {
/// A page may hand over any length; what nobody can read is cut.
constexpr int longestMessage = 2000;

QString titleFor(const QUrl &origin)
{
    const QString site =
        origin.host().isEmpty() ? origin.toDisplayString().left(60) : origin.host();
    return site.isEmpty() ? ProgramInfo::title() : site + " - "_L1 + ProgramInfo::title();
}

QWidget *ownerOf(QWebEnginePage *page)
{
    QWidget *view = QWebEngineView::forPage(page);
    return view ? view->window() : nullptr;
}

int run(QWebEnginePage *page, const QUrl &origin, const QString &message,
        QMessageBox::StandardButtons buttons)
{
    const QPointer<QMessageBox> box =
        new QMessageBox(QMessageBox::NoIcon, titleFor(origin), message.left(longestMessage),
                        buttons, ownerOf(page));
    box->setTextFormat(Qt::PlainText);
    const int answer = box->exec();
    delete box;
    return answer;
}
}

namespace ScriptDialogs {

void alert(QWebEnginePage *page, const QUrl &origin, const QString &message)
{
    run(page, origin, message, QMessageBox::Ok);
}

bool confirm(QWebEnginePage *page, const QUrl &origin, const QString &message)
{
    return run(page, origin, message, QMessageBox::Ok | QMessageBox::Cancel) == QMessageBox::Ok;
}

bool prompt(QWebEnginePage *page, const QUrl &origin, const QString &message,
            const QString &defaultValue, QString *result)
{
    const QPointer<QInputDialog> box = new QInputDialog(ownerOf(page));
    box->setWindowTitle(titleFor(origin));
    box->setLabelText(message.left(longestMessage).toHtmlEscaped());
    box->setTextValue(defaultValue);
    const bool accepted = box->exec() == QDialog::Accepted && box;
    if (accepted)
        *result = box->textValue();
    delete box;
    return accepted;
}

}
