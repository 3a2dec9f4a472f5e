#include "ToolBarAccessible.h"

#include "ToolBarButton.h"

#include <QAccessibleWidget>

namespace {
class ButtonInterface : public QAccessibleWidget {
public:
    explicit ButtonInterface(ToolBarButton *button)
        : QAccessibleWidget(button, QAccessible::Button)
        , m_button(button)
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.focusable = true; // with the arrow keys, also where the Tab key does not stop
        state.checkable = m_button->buttonStyle() == ToolBar::Style::Check;
        state.checked = m_button->isPressed();
        state.hasPopup = isDropDown();
        return state;
    }

    QStringList actionNames() const override
    {
        QStringList names;
        if (m_button->isEnabled())
            names << pressAction();
        if (m_button->isEnabled() && isDropDown())
            names << showMenuAction();
        return names << setFocusAction();
    }

    void doAction(const QString &name) override
    {
        if (name == pressAction())
            m_button->click();
        else if (name == showMenuAction() && isDropDown())
            m_button->openDropDown();
        else
            QAccessibleWidget::doAction(name);
    }

private:
    bool isDropDown() const { return ToolBar::hasArrow(m_button->buttonStyle()); }

    ToolBarButton *m_button;
};

QAccessibleInterface *create(const QString &, QObject *object)
{
    if (auto *button = qobject_cast<ToolBarButton *>(object))
        return new ButtonInterface(button);
    if (auto *bar = qobject_cast<ToolBar *>(object))
        return new QAccessibleWidget(bar, QAccessible::ToolBar);
    return nullptr;
}
}

void ToolBarAccessible::install()
{
    static const bool installed = [] {
        QAccessible::installFactory(create);
        return true;
    }();
    Q_UNUSED(installed)
}
