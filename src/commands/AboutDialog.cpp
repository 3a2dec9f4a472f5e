#include "AboutDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QDir>
#include <QFrame>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "AppFolder.h"
#include "EngineAge.h"
#include "Forms.h"
#include "ProgramInfo.h"
#include "StartSound.h"
#include "Texts.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int iconSize = 48;
constexpr Texts<"frmAbout"> texts;

QLabel *label(const QString &name, const QString &text)
{
    auto *result = new QLabel(text);
    result->setObjectName(name);
    result->setTextFormat(Qt::PlainText);
    return result;
}

QLabel *titleLabel()
{
    QLabel *title = label(u"lblTitle"_s, ProgramInfo::title());
    QFont font = title->font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    font.setBold(true);
    title->setFont(font);
    return title;
}

QLabel *descriptionLabel()
{
    return label(u"lblDescription"_s,
                 ProgramInfo::title()
                     + " is a webbrowser allowing users to open as many windows as"
                       " they need to inside a single application task.\r\n"
                       "This allows users to have just a single window tab on their task bar!"_L1);
}

/// What follows from the engine's age; null while it is not old.
QLabel *ageLabel()
{
    const QDate released = EngineAge::ofEngine();
    if (!EngineAge::isOld(released, QDate::currentDate()))
        return nullptr;
    const QString age =
        texts.at<"strOldEngine",
                 "The page engine is of %1, more than a year old: it has security holes that have "
                 "been found since. Open only pages you trust.">();
    QLabel *result =
        label(u"lblOldEngine"_s, QString(age).replace("%1"_L1, released.toString(u"yyyy-MM"_s)));
    result->setWordWrap(true);
    return result;
}

/// Where the user's files are; a path may be longer than any label.
QLineEdit *folderField()
{
    auto *result = new QLineEdit(QDir::toNativeSeparators(AppFolder::path()));
    result->setObjectName("txtFolder"_L1);
    result->setReadOnly(true);
    result->setCursorPosition(0);
    return result;
}

QFrame *line()
{
    auto *result = new QFrame;
    result->setObjectName("Line1"_L1);
    result->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    return result;
}

}

void AboutDialog::showOver(QWidget *owner)
{
    const QList<QWidget *> open = Forms::named("frmAbout");
    QWidget *box = open.isEmpty() ? new AboutDialog(owner) : open.first();
    box->show();
    box->raise();
    box->activateWindow();
}

QString AboutDialog::versionDetails()
{
    return "Orvane %1\nQt %2\n"_L1.arg(ProgramInfo::version(), QLatin1StringView(qVersion()))
        + EngineAge::versions().join(u'\n');
}

AboutDialog::AboutDialog(QWidget *owner)
    : QDialog(owner)
{
    setObjectName("frmAbout"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle("About \"%1\"..."_L1.arg(ProgramInfo::title()));
    Forms::add(this);

    QLabel *icon = label(u"imgIcon"_s, {});
    icon->setPixmap(owner->windowIcon().pixmap(QSize(iconSize, iconSize), devicePixelRatio()));
    QLabel *details = label(u"lblDetails"_s, versionDetails());
    details->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);

    auto *buttons = new QDialogButtonBox;
    QPushButton *copy = buttons->addButton(u"&Copy Versions"_s, QDialogButtonBox::ActionRole);
    copy->setObjectName("cmdCopyVersions"_L1);
    QPushButton *ok = buttons->addButton(u"OK"_s, QDialogButtonBox::AcceptRole);
    ok->setObjectName("cmdOK"_L1);
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::close);
    connect(copy, &QPushButton::clicked, this,
            [] { QApplication::clipboard()->setText(versionDetails()); });

    auto *layout = new QGridLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->setHorizontalSpacing(16);
    layout->addWidget(icon, 0, 0, 3, 1, Qt::AlignTop);
    layout->addWidget(titleLabel(), 0, 1);
    layout->addWidget(label(u"lblVersion"_s, "Version "_L1 + ProgramInfo::version()), 1, 1);
    layout->addWidget(descriptionLabel(), 2, 1);
    layout->addWidget(label(u"lblCopyright"_s, ProgramInfo::copyright()), 3, 1);
    layout->addWidget(line(), 4, 0, 1, 2);
    layout->addWidget(details, 5, 1);
    if (QLabel *age = ageLabel())
        layout->addWidget(age, 6, 1);
    QLabel *folderLabel =
        label(u"lblFolder"_s, texts.at<"lblFolder", "Settings, lists and profiles are in:">());
    QLineEdit *folder = folderField();
    folderLabel->setBuddy(folder);
    layout->addWidget(folderLabel, 7, 1);
    layout->addWidget(folder, 8, 1);
    layout->addWidget(buttons, 9, 0, 1, 2);
    playStartSound();
}
