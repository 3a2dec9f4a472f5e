#include "ThemedIcon.h"

#include "Log.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QLibraryInfo>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <QVersionNumber>

using namespace Qt::StringLiterals;

// A static library's resources are dropped by the linker unless something asks for them, and the
// macro must not stand in a namespace.
static void initIconResources()
{
    Q_INIT_RESOURCE(icons);
}

namespace {
struct Colours {
    QColor ink;    // stands as #000 in the pictures
    QColor accent; // stands as #00f
};

Colours coloursFor(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled: {
        const QColor grey = palette.color(QPalette::Disabled, QPalette::ButtonText);
        return {grey, grey};
    }
    case QIcon::Selected: {
        const QColor text = palette.color(QPalette::Active, QPalette::HighlightedText);
        return {text, text};
    }
    default: {
        const QColor ink = palette.color(QPalette::Active, QPalette::ButtonText);
        QColor accent = palette.color(QPalette::Active, QPalette::Highlight);
        // On a dark ground many highlight colours are too dark for a thin line.
        if (ink.lightnessF() > 0.5F && accent.lightnessF() < 0.6F)
            accent.setHslF(accent.hslHueF(), accent.hslSaturationF(), 0.65F);
        return {ink, accent};
    }
    }
}

class ThemedIconEngine : public QIconEngine {
public:
    ThemedIconEngine(const QString &name, const QByteArray &svg)
        : m_name(name)
        , m_svg(svg)
    {
    }

    QString key() const override { return u"OrvaneThemedIcon"_s; }
    QString iconName() override { return m_name; }
    bool isNull() override { return false; }
    QIconEngine *clone() const override { return new ThemedIconEngine(*this); }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1;
        QPixmap picture = rendered(rect.size() * ratio, mode);
        picture.setDevicePixelRatio(ratio);
        painter->drawPixmap(rect, picture);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State) override
    {
        return rendered(size, mode);
    }

    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State, qreal ratio) override
    {
        // Since Qt 6.8 the size is asked for before the screen's ratio, until then after it.
        static const bool isUnscaled = QLibraryInfo::version() >= QVersionNumber(6, 8);
        return rendered(isUnscaled ? size * ratio : size, mode);
    }

private:
    QPixmap rendered(const QSize &size, QIcon::Mode mode) const;

    QString m_name;
    QByteArray m_svg;
};

QPixmap ThemedIconEngine::rendered(const QSize &size, QIcon::Mode mode) const
{
    const Colours colours = coloursFor(mode);
    const QString id = u"themed %1 %2x%3 %4 %5"_s.arg(m_name)
                           .arg(size.width())
                           .arg(size.height())
                           .arg(colours.ink.rgba(), 0, 16)
                           .arg(colours.accent.rgba(), 0, 16);
    QPixmap picture;
    if (size.isEmpty() || QPixmapCache::find(id, &picture))
        return picture;
    QByteArray svg = m_svg;
    svg.replace("#000", colours.ink.name().toLatin1());
    svg.replace("#00f", colours.accent.name().toLatin1());
    QSvgRenderer renderer(svg);
    picture = QPixmap(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    // Square pictures, centred where the place is not square.
    const int side = std::min(size.width(), size.height());
    renderer.render(&painter,
                    QRectF((size.width() - side) / 2.0, (size.height() - side) / 2.0, side, side));
    painter.end();
    QPixmapCache::insert(id, picture);
    return picture;
}
}

QIcon themedIcon(const QString &name)
{
    initIconResources();
    QFile file(u":/icons/"_s + name + u".svg"_s);
    if (name.isEmpty() || !file.open(QIODevice::ReadOnly)) {
        qCWarning(lcStart) << "no picture named" << name;
        return {};
    }
    return QIcon(new ThemedIconEngine(name, file.readAll()));
}
