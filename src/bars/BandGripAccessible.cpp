#include "BandGripAccessible.h"

#include "BandGrip.h"

#include <QAccessibleWidget>

using namespace Qt::StringLiterals;

namespace {

struct Action {
    QLatin1StringView name;
    int key;
};

constexpr Action moves[] = {
    {"moveLeft"_L1, Qt::Key_Left},
    {"moveRight"_L1, Qt::Key_Right},
    {"moveUp"_L1, Qt::Key_Up},
    {"moveDown"_L1, Qt::Key_Down},
};

/// A button, for screen readers have no word for grippers: it is pressed to make its band wide or
/// narrow, has an action for each way the band can go, and tells where the band stands.
class GripInterface : public QAccessibleWidget {
public:
    explicit GripInterface(BandGrip *grip)
        : QAccessibleWidget(grip, QAccessible::Button)
        , m_grip(grip)
    {
    }

    QString text(QAccessible::Text which) const override
    {
        return which == QAccessible::Description ? m_grip->placeText()
                                                 : QAccessibleWidget::text(which);
    }

    QStringList actionNames() const override
    {
        QStringList names{pressAction()};
        for (const Action &move : moves)
            names += QString(move.name);
        return names << setFocusAction();
    }

    void doAction(const QString &name) override
    {
        if (name == pressAction())
            return m_grip->act(Qt::Key_Space);
        for (const Action &move : moves) {
            if (name == move.name)
                return m_grip->act(move.key);
        }
        QAccessibleWidget::doAction(name);
    }

private:
    BandGrip *m_grip;
};

QAccessibleInterface *create(const QString &, QObject *object)
{
    auto *grip = qobject_cast<BandGrip *>(object);
    return grip ? new GripInterface(grip) : nullptr;
}

}

void installBandGripAccessible()
{
    static const bool installed = [] {
        QAccessible::installFactory(create);
        return true;
    }();
    Q_UNUSED(installed)
}
