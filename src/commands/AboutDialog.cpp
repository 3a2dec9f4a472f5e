#include "AboutDialog.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QFrame>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QtWebEngineCore/qtwebenginecoreglobal.h>

#include "Forms.h"
#include "ProgramInfo.h"
#include "StartSound.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int iconSize = 48;

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
    return "Orvane %1\nQt %2\nQt WebEngine %3\nChromium %4, security patches up to %5"_L1.arg(
        ProgramInfo::version(), QLatin1StringView(qVersion()),
        QLatin1StringView(qWebEngineVersion()), QLatin1StringView(qWebEngineChromiumVersion()),
        QLatin1StringView(qWebEngineChromiumSecurityPatchVersion()));
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
    layout->addWidget(buttons, 6, 0, 1, 2);
    playStartSound();
}
