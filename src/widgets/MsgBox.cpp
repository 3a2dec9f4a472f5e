#include "MsgBox.h"

#include "ProgramInfo.h"
#include "TypedAhead.h"
#include "Yield.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

QMessageBox *makeBox(QWidget *owner, QMessageBox::Icon icon, const QString &text,
                     const QString &title, QMessageBox::StandardButtons buttons)
{
    auto *box = new QMessageBox(owner);
    box->setObjectName("MsgBox"_L1);
    box->setIcon(icon);
    box->setWindowTitle(title.isEmpty() ? ProgramInfo::title() : title);
    // Texts hold addresses and page titles: their markup is shown, never rendered.
    box->setTextFormat(Qt::PlainText);
    box->setText(QString(text).replace("\r\n"_L1, "\n"_L1));
    box->setStandardButtons(buttons);
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

QMessageBox *makeQuestion(QWidget *owner, const QString &text, const QString &title)
{
    QMessageBox *box =
        makeBox(owner, QMessageBox::Question, text, title, QMessageBox::Yes | QMessageBox::No);
    box->setDefaultButton(QMessageBox::Yes);
    box->setEscapeButton(QMessageBox::No);
    return box;
}

MsgBox::Answer answerOf(int result)
{
    return result == QMessageBox::Yes ? MsgBox::Answer::Yes : MsgBox::Answer::No;
}

void open(QMessageBox *box, const std::function<void(MsgBox::Answer)> &done)
{
    // Whichever comes first answers: the user, or the box going away with its owner.
    auto answerOnce = [pending = std::make_shared<bool>(true), done](MsgBox::Answer answer) {
        if (std::exchange(*pending, false) && done)
            done(answer);
    };
    QObject::connect(box, &QDialog::finished, box,
                     [answerOnce](int result) { answerOnce(answerOf(result)); });
    QObject::connect(box, &QObject::destroyed, qApp,
                     [answerOnce] { answerOnce(MsgBox::Answer::No); });
    box->open();
}

}

namespace MsgBox {

void ask(QWidget *owner, const QString &text, const QString &title,
         const std::function<void(Answer)> &done)
{
    open(makeQuestion(owner, text, title), done);
}

void askLate(QWidget *owner, const QString &text, const std::function<void(Answer)> &done)
{
    QMessageBox *box = makeQuestion(owner, text, {});
    new TypedAhead(*box);
    open(box, done);
}

Answer askAndWait(QWidget *owner, const QString &text, const QString &title)
{
    Q_ASSERT(!EngineCallbackScope::active());
    QPointer<QMessageBox> box = makeQuestion(owner, text, title);
    // The answer is taken from the signal: the box is gone by now if its owner went away.
    Answer answer = Answer::No;
    QObject::connect(box, &QDialog::finished, box,
                     [&answer](int result) { answer = answerOf(result); });
    box->exec();
    return answer;
}

void inform(QWidget *owner, const QString &text)
{
    makeBox(owner, QMessageBox::Information, text, {}, QMessageBox::Ok)->open();
}

void tell(QWidget *owner, const QString &text, const QString &more)
{
    QMessageBox *box = makeBox(owner, QMessageBox::NoIcon, text, {}, QMessageBox::Ok);
    box->setInformativeText(more);
    box->open();
}

}
