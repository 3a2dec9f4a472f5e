#include "DialogRoom.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMap>
#include <QScrollBar>
#include <QStyleOption>
#include <QTabBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {

constexpr QSize leastScreen(1024, 768);
/// A list that is longer than this holds what the machine has, such as fonts.
constexpr int longestOwnList = 12;

QString named(const QWidget &control)
{
    return QLatin1String(control.metaObject()->className()) + u' ' + control.objectName();
}

/// Part of a control that is looked at as a whole.
bool isInside(const QWidget &control)
{
    const QWidget *parent = control.parentWidget();
    return control.objectName().startsWith("qt_"_L1) || qobject_cast<const QScrollBar *>(&control)
        || qobject_cast<const QComboBox *>(parent) || qobject_cast<const QAbstractSpinBox *>(parent)
        || qobject_cast<const QTabBar *>(parent) || qobject_cast<const QLineEdit *>(parent)
        || qobject_cast<const QAbstractItemView *>(parent);
}

QList<QWidget *> controlsOf(const QWidget &window)
{
    QList<QWidget *> result;
    for (QWidget *control : window.findChildren<QWidget *>()) {
        if (control->isVisible() && control->window() == window.window() && !isInside(*control))
            result.append(control);
    }
    return result;
}

bool labelFits(const QLabel &label)
{
    if (label.text().isEmpty())
        return true;
    if (label.wordWrap())
        return label.width() >= label.minimumSizeHint().width()
            && label.height() >= label.heightForWidth(label.width());
    return label.width() >= label.sizeHint().width() && label.height() >= label.sizeHint().height();
}

bool comboFits(const QComboBox &box)
{
    QStyleOptionComboBox option;
    option.initFrom(&box);
    const int room =
        box.style()
            ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &box)
            .width();
    const auto fits = [&](const QString &text) {
        return box.fontMetrics().horizontalAdvance(text) <= room;
    };
    for (int index = 0; index < box.count() && box.count() <= longestOwnList; ++index) {
        if (!box.isEditable() && !fits(box.itemText(index)))
            return false;
    }
    return box.isEditable() || fits(box.currentText());
}

bool headerFits(const QHeaderView &header)
{
    for (int section = 0; section < header.count(); ++section) {
        if (header.sectionSize(section) < header.sectionSizeHint(section))
            return false;
    }
    return true;
}

bool textFits(const QWidget &control)
{
    const QSize size = control.size();
    if (const auto *button = qobject_cast<const QAbstractButton *>(&control))
        return button->text().isEmpty()
            || (size.width() >= button->sizeHint().width()
                && size.height() >= button->minimumSizeHint().height());
    if (const auto *label = qobject_cast<const QLabel *>(&control))
        return labelFits(*label);
    if (const auto *group = qobject_cast<const QGroupBox *>(&control))
        return size.width() >= group->minimumSizeHint().width();
    if (const auto *tabs = qobject_cast<const QTabBar *>(&control))
        return size.width() >= tabs->sizeHint().width();
    if (const auto *box = qobject_cast<const QComboBox *>(&control))
        return comboFits(*box);
    if (const auto *edit = qobject_cast<const QLineEdit *>(&control))
        return edit->fontMetrics().horizontalAdvance(edit->placeholderText()) < size.width();
    return true;
}

bool hasText(const QWidget &control)
{
    return qobject_cast<const QAbstractButton *>(&control) || qobject_cast<const QLabel *>(&control)
        || qobject_cast<const QLineEdit *>(&control) || qobject_cast<const QComboBox *>(&control)
        || qobject_cast<const QAbstractSpinBox *>(&control)
        || qobject_cast<const QGroupBox *>(&control);
}

/// What a scroller shows may be larger than the scroller.
bool isScrolled(const QWidget &control)
{
    const QWidget *parent = control.parentWidget();
    return parent && qobject_cast<const QAbstractScrollArea *>(parent->parentWidget());
}

void addOverlaps(QStringList &faults, const QList<QWidget *> &controls)
{
    for (qsizetype one = 0; one < controls.size(); ++one) {
        for (qsizetype two = one + 1; two < controls.size(); ++two) {
            const QWidget &first = *controls[one];
            const QWidget &second = *controls[two];
            if (first.parentWidget() == second.parentWidget() && hasText(first) && hasText(second)
                && first.geometry().intersects(second.geometry()))
                faults.append(named(first) + " overlaps "_L1 + named(second));
        }
    }
}

QString captionOf(const QWidget &control)
{
    if (const auto *button = qobject_cast<const QAbstractButton *>(&control))
        return button->text();
    if (const auto *label = qobject_cast<const QLabel *>(&control))
        return label->buddy() ? label->text() : QString();
    const auto *group = qobject_cast<const QGroupBox *>(&control);
    return group ? group->title() : QString();
}

}

QStringList roomFaults(const QWidget &window)
{
    QStringList faults;
    const QList<QWidget *> controls = controlsOf(window);
    for (const QWidget *control : controls) {
        if (!textFits(*control))
            faults.append(named(*control) + " clips \""_L1 + captionOf(*control) + u'"');
        if (hasText(*control) && !isScrolled(*control)
            && !control->parentWidget()->rect().contains(control->geometry()))
            faults.append(named(*control) + " reaches out"_L1);
    }
    for (const auto *header : window.findChildren<QHeaderView *>()) {
        if (header->isVisible() && !headerFits(*header))
            faults.append(named(*header) + " clips a column"_L1);
    }
    const auto *more = window.findChild<QToolButton *>(u"qt_toolbar_ext_button"_s);
    if (more && more->isVisible())
        faults.append(u"a tool bar hides its last buttons"_s);
    addOverlaps(faults, controls);
    const QSize size = window.frameSize();
    if (window.isWindow() && size.boundedTo(leastScreen) != size)
        faults.append(u"the window is %1 by %2"_s.arg(size.width()).arg(size.height()));
    return faults;
}

QStringList accessKeyFaults(const QWidget &window)
{
    QStringList faults;
    QMap<QKeySequence, QString> taken;
    const auto take = [&](const QString &caption) {
        const QKeySequence key = QKeySequence::mnemonic(caption);
        if (key.isEmpty())
            return;
        if (taken.contains(key))
            faults.append(caption + " and "_L1 + taken.value(key));
        taken.insert(key, caption);
    };
    for (const QWidget *control : controlsOf(window)) {
        take(captionOf(*control));
        const auto *tabs = qobject_cast<const QTabBar *>(control);
        for (int tab = 0; tabs && tab < tabs->count(); ++tab)
            take(tabs->tabText(tab));
    }
    return faults;
}
