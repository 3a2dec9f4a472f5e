#include "CertificateNotice.h"

#include "Captioned.h"
#include "CertificateDetails.h"
#include "CertificateReason.h"
#include "FlowRows.h"
#include "ShownAddress.h"
#include "SteadySight.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
/// Pixels.
constexpr int widestText = 560;
constexpr int around = 24;

constexpr Texts<"Certificate"> texts;

/// The engine asks no more for that certificate of the host, whatever the port.
QString scopeOf(const CertificateFailure &failure)
{
    return texts
        .at<"strScope",
            "If you go on, this certificate passes at every port of %1 until Orvane ends.">()
        .arg(failure.url.host());
}

QLabel *addLabel(QVBoxLayout &column, const char *name, const QString &text)
{
    auto *label = new QLabel(text);
    label->setObjectName(QLatin1StringView(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    column.addWidget(label);
    return label;
}
}

CertificateNotice::CertificateNotice(const CertificateFailure &failure, QWidget *parent)
    : QWidget(parent)
    , m_failure(failure)
{
    setObjectName("CertificateNotice"_L1);
    setAutoFillBackground(true);
    auto *contents = new QWidget;
    contents->setMaximumWidth(widestText);
    auto *column = new QVBoxLayout(contents);
    column->setContentsMargins(around, around, around, around);
    column->setSpacing(12);
    column->addStretch(1);
    addTexts(*column);
    addButtons(*column);
    column->addStretch(2);

    auto *middle = new QWidget;
    auto *row = new QHBoxLayout(middle);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch();
    row->addWidget(contents, 100);
    row->addStretch();
    auto *scroll = new QScrollArea(this);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidgetResizable(true);
    scroll->setWidget(middle);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->addWidget(scroll);
}

void CertificateNotice::addTexts(QVBoxLayout &column)
{
    const QString site = shownSite(m_failure.url);
    const QString words = texts.at<"strHeading", "%1 could not prove who it is">();
    const QString headline = words.arg(site);
    QLabel *title = addLabel(column, "lblHeading", words.arg(breakableSite(site)));
    title->setAccessibleName(headline);
    QFont large = title->font();
    large.setBold(true);
    large.setPointSizeF(large.pointSizeF() * 1.3);
    title->setFont(large);
    const QString reasons = CertificateReason::reasonsFor(m_failure).join(u'\n');
    addLabel(column, "lblReason", reasons)->setTextInteractionFlags(Qt::TextSelectableByMouse);
    const QString cause = CertificateReason::causeOf(m_failure);
    addLabel(column, "lblCause", cause);
    const QString why = CertificateReason::whyNoWay(m_failure);
    if (!why.isEmpty())
        addLabel(column, "lblNoWay", why);
    const QString scope = m_failure.isOverridable ? scopeOf(m_failure) : QString();
    if (!scope.isEmpty())
        addLabel(column, "lblScope", scope);
    setAccessibleName(headline);
    setAccessibleDescription(QStringList{reasons, cause, scope}.join(u'\n').trimmed());
}

void CertificateNotice::addButtons(QVBoxLayout &column)
{
    auto *row = new FlowRows;
    const auto add = [&](const Text &caption) {
        auto *button = captioned<QPushButton>(caption);
        button->setAutoDefault(true);
        row->addWidget(button);
        return button;
    };
    QPushButton *back = add(texts.at<"cmdBack", "&Back">);
    back->setDefault(true);
    setFocusProxy(back);
    connect(back, &QPushButton::clicked, this, &CertificateNotice::backPressed);
    QPushButton *details = add(texts.at<"cmdDetails", "&Details...">);
    details->setEnabled(!m_failure.chain.isEmpty());
    connect(details, &QPushButton::clicked, this, &CertificateNotice::openDetails);
    if (m_failure.isOverridable)
        takeTime(*add(texts.at<"cmdGoOn", "&Go on, until Orvane ends">));
    column.addSpacing(8);
    column.addLayout(row);
}

/// A click that was meant for what stood there before does nothing.
void CertificateNotice::takeTime(QPushButton &goOn)
{
    goOn.setEnabled(false);
    auto *sight = new SteadySight(&goOn, [&goOn] { return QRegion(goOn.rect()); });
    connect(sight, &SteadySight::changed, this, [this, &goOn](bool isOver) {
        if (!isOver && goOn.hasFocus())
            setFocus();
        goOn.setEnabled(isOver);
    });
    connect(&goOn, &QPushButton::clicked, this, [this, sight] {
        if (sight->isOver())
            emit goOnPressed(CertificateFailure(m_failure));
    });
}

void CertificateNotice::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

/// It goes with the notice, and with the window.
void CertificateNotice::openDetails()
{
    auto *details = new CertificateDetails(shownSite(m_failure.url), this);
    details->setNote(CertificateReason::reasonsFor(m_failure).join(u'\n'));
    details->setChain(m_failure.chain);
    details->open();
}

bool CertificateNotice::event(QEvent *event)
{
    // The key is a menu item's as well.
    if (event->type() == QEvent::ShortcutOverride
        && static_cast<QKeyEvent *>(event)->matches(QKeySequence::Cancel)) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void CertificateNotice::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel) && !event->isAutoRepeat())
        emit backPressed();
    else
        QWidget::keyPressEvent(event);
}
