#include "Splash.h"

#include "AppFolder.h"
#include "Forms.h"
#include "Log.h"
#include "ProgramInfo.h"
#include "StartSound.h"
#include "Yield.h"

#include <QCloseEvent>
#include <QImageReader>
#include <QLabel>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// The largest picture shown, in logical pixels; a larger file is scaled down while it is read.
constexpr QSize logoRoom(480, 200);

QPixmap loadLogo(qreal ratio)
{
    QImageReader reader(AppFolder::appData(u"Logo.jpg"_s));
    reader.setDecideFormatFromContent(true);
    const QSize room = logoRoom * ratio;
    const QSize size = reader.size();
    if (size.width() > room.width() || size.height() > room.height())
        reader.setScaledSize(size.scaled(room, Qt::KeepAspectRatio));
    QPixmap logo = QPixmap::fromImage(reader.read());
    if (logo.isNull())
        qCWarning(lcStart) << "splash without a picture:" << reader.errorString();
    logo.setDevicePixelRatio(ratio);
    return logo;
}

QLabel *addLabel(QWidget *form, const char *name, const QString &text)
{
    auto *label = new QLabel(form);
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    return label;
}

QLabel *addLogo(QWidget *form)
{
    auto *logo = new QLabel(form);
    logo->setObjectName("imgLogo"_L1);
    logo->setAccessibleName(ProgramInfo::title());
    logo->setPixmap(loadLogo(form->devicePixelRatioF()));
    logo->setVisible(!logo->pixmap(Qt::ReturnByValue).isNull());
    return logo;
}

void setLabelFont(QLabel *label, qreal scale, QFont::Weight weight)
{
    QFont font = label->font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * scale);
    else
        font.setPixelSize(qRound(font.pixelSize() * scale));
    font.setWeight(weight);
    label->setFont(font);
}

}

Splash::Splash(QWidget *owner)
    : QFrame(owner, Qt::Dialog | Qt::FramelessWindowHint)
    , m_tmrExit(new QTimer(this))
{
    setObjectName("frmSplash"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(ProgramInfo::title());
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setFocusPolicy(Qt::StrongFocus);
    Forms::add(this);

    layOut();
    centreOn(owner);

    m_tmrExit->setObjectName("tmrExit"_L1);
    m_tmrExit->setSingleShot(true);
    m_tmrExit->callOnTimeout(this, [this] { close(); });
    m_tmrExit->start(3000ms);
    playStartSound();
}

void Splash::layOut()
{
    QLabel *title = addLabel(this, "lblTitle", ProgramInfo::title());
    setLabelFont(title, 1.9, QFont::DemiBold);
    QLabel *description = addLabel(this, "lblDescription", ProgramInfo::fileDescription());
    QLabel *version = addLabel(this, "lblVersion", "Version "_L1 + ProgramInfo::version());
    QLabel *legal = addLabel(this, "lblLegal",
                             ProgramInfo::copyright() + "\n\n"_L1 + ProgramInfo::trademarks());
    setLabelFont(legal, 0.9, QFont::Normal);
    QLabel *contact = addLabel(this, "lblContactInformation",
                               "Website URL: "_L1 + ProgramInfo::makerUrl() + "\nEMail Address: "_L1
                                   + ProgramInfo::makerEmail());
    setLabelFont(contact, 0.9, QFont::Normal);

    auto *texts = new QVBoxLayout;
    texts->setContentsMargins(24, 14, 24, 18);
    texts->setSpacing(2);
    for (QLabel *centred : {title, description, version})
        texts->addWidget(centred, 0, Qt::AlignHCenter);
    texts->addSpacing(14);
    texts->addWidget(legal);
    texts->addSpacing(10);
    texts->addWidget(contact);

    auto *form = new QVBoxLayout(this);
    form->setContentsMargins({});
    form->setSpacing(0);
    form->addWidget(addLogo(this), 0, Qt::AlignHCenter);
    form->addLayout(texts);
    form->setSizeConstraint(QLayout::SetFixedSize);
    setMinimumWidth(logoRoom.width());
}

void Splash::centreOn(const QWidget *owner)
{
    adjustSize();
    QRect place = rect();
    place.moveCenter(owner ? owner->frameGeometry().center()
                           : screen()->availableGeometry().center());
    move(place.topLeft());
}

void Splash::mouseReleaseEvent(QMouseEvent *)
{
    close();
}

void Splash::keyPressEvent(QKeyEvent *)
{
    close();
}

void Splash::closeEvent(QCloseEvent *event)
{
    m_tmrExit->stop();
    Forms::remove(this);
    event->accept();
}

bool Splash::focusNextPrevChild(bool)
{
    return false;
}

Splash *showSplash(QWidget *frame)
{
    auto *splash = new Splash(frame);
    splash->show();
    splash->repaint();
    letPendingEventsRun();
    return splash;
}
