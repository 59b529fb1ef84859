#include "ThemedIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

namespace Workbench
{
namespace
{
class ThemedIconEngine : public QIconEngine
{
public:
    explicit ThemedIconEngine(const QByteArray &svg) : m_svg(svg) { }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const QPalette palette = QGuiApplication::palette();
        const QPalette::ColorGroup group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QPalette::ColorRole role =
            mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::ButtonText;
        QByteArray svg = m_svg;
        svg.replace("#000000", palette.color(group, role).name().toLatin1());
        QSvgRenderer(svg).render(painter, rect);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override
    {
        return new ThemedIconEngine(m_svg);
    }

private:
    QByteArray m_svg;
};
} // namespace

QIcon themedIcon(const QString &name)
{
    QFile file(QStringLiteral(":/workbench/images/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        return QIcon();
    return QIcon(new ThemedIconEngine(file.readAll()));
}

QIcon stepIcon(const QString &path)
{
    const QIcon icon(path);
    return icon.pixmap(16, 16).isNull() ? themedIcon(QStringLiteral("step")) : icon;
}
} // namespace Workbench
