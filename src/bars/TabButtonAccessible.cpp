#include "TabButtonAccessible.h"

#include "TabButton.h"

#include <QAccessibleWidget>

namespace {
class TabAccessible : public QAccessibleWidget {
public:
    explicit TabAccessible(TabButton *tab)
        : QAccessibleWidget(tab, QAccessible::Button)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State result = QAccessibleWidget::state();
        result.checkable = true;
        result.checked = tab()->isPressed();
        result.focusable = true;
        return result;
    }

    QStringList actionNames() const override
    {
        QStringList names(pressAction());
        if (tab()->sound() != PageSound::None)
            names.append(toggleAction());
        return names + QAccessibleWidget::actionNames();
    }

    void doAction(const QString &name) override
    {
        if (name == pressAction())
            tab()->click();
        else if (name == toggleAction() && tab()->sound() != PageSound::None)
            emit tab()->soundClicked();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    TabButton *tab() const { return static_cast<TabButton *>(object()); }
};

QAccessibleInterface *makeTabAccessible(const QString &, QObject *object)
{
    auto *tab = qobject_cast<TabButton *>(object);
    return tab ? new TabAccessible(tab) : nullptr;
}
}

void installTabAccessible()
{
    QAccessible::installFactory(makeTabAccessible);
}
