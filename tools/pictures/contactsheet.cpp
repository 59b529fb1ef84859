// Draws the icons of a plug-in's steps, in several sizes on light and on dark, into one PNG.

#include "hostapi/IOperationPlugin.h"
#include "hostapi/Operation.h"

#include <QFileInfo>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPluginLoader>
#include <QSvgRenderer>
#include <QTextStream>

namespace
{
constexpr int columns = 5;
constexpr int largeSize = 200;
constexpr int smallSizes[] = {48, 24, 16};
constexpr int margin = 16;
constexpr int captionHeight = 56;
constexpr QSize panelSize(margin + largeSize + margin + smallSizes[0] + margin, largeSize + 2 * margin);
constexpr QSize cellSize(panelSize.width() + margin, 2 * panelSize.height() + captionHeight);
constexpr QRgb backgrounds[] = {0xFFFFFF, 0x1E1E1E};

struct Icon
{
    QString caption;
    QString path;
};

/// The icons in the order of the plug-in's prototypes. Without a font for Chinese their captions are the
/// type ids alone.
QVector<Icon> iconsOf(IOperationPlugin &plugin, bool withDisplayNames)
{
    QVector<Icon> icons;
    const QList<Operation *> prototypes = plugin.createPrototypes();
    for (const Operation *prototype : prototypes) {
        QString caption = prototype->typeId();
        if (withDisplayNames)
            caption.prepend(prototype->typeName() + '\n');
        icons.append({caption, prototype->icon()});
    }
    qDeleteAll(prototypes);
    return icons;
}

/// The drawing as a host shows it: what reaches beyond its edges is cut off.
QImage rendered(QSvgRenderer &drawing, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    return image;
}

/// The large drawing on the left, the small ones below each other on the right.
void drawPanel(QPainter &painter, const QRect &panel, QRgb background, QSvgRenderer &drawing)
{
    painter.fillRect(panel, QColor(background));
    const QRect content = panel.adjusted(margin, margin, -margin, -margin);
    painter.drawImage(content.topLeft(), rendered(drawing, largeSize));

    const int center = content.right() + 1 - smallSizes[0] / 2;
    int top = content.top();
    for (int size : smallSizes) {
        painter.drawImage(center - size / 2, top, rendered(drawing, size));
        top += size + margin;
    }
}

/// Null when a file cannot be drawn; \a error then tells which.
QImage contactSheet(const QVector<Icon> &icons, const QFont &font, QString *error)
{
    const int rows = (icons.size() + columns - 1) / columns;
    QImage sheet(columns * cellSize.width() + margin, rows * cellSize.height() + margin,
                 QImage::Format_RGB32);
    sheet.fill(QColor(0xE4E4E4));
    QPainter painter(&sheet);
    painter.setFont(font);

    for (int i = 0; i < icons.size(); ++i) {
        QSvgRenderer drawing(icons[i].path);
        if (!drawing.isValid()) {
            *error = icons[i].path + ": this is no SVG drawing that the plug-in brings along";
            return {};
        }
        const QPoint cell(margin + i % columns * cellSize.width(), i / columns * cellSize.height());
        painter.drawText(QRect(cell, QSize(panelSize.width(), captionHeight)), Qt::AlignCenter,
                         icons[i].caption);
        QRect panel(cell + QPoint(0, captionHeight), panelSize);
        for (QRgb background : backgrounds) {
            drawPanel(painter, panel, background, drawing);
            panel.translate(0, panelSize.height());
        }
    }
    return sheet;
}

int failure(const QString &message)
{
    QTextStream(stderr) << "contactsheet: " << message << '\n';
    return 1;
}
} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 3) {
        QTextStream(stderr) << "usage: contactsheet PLUGIN PNG\n"
                               "Draws the icons of the steps in the module PLUGIN into the file PNG.\n";
        return 2;
    }

    // An absolute name, because a relative one is searched for among Qt's own plug-ins.
    const QString pluginFile = QFileInfo(arguments[1]).absoluteFilePath();
    QPluginLoader loader(pluginFile);
    auto *plugin = qobject_cast<IOperationPlugin *>(loader.instance());
    if (!plugin) {
        return failure(pluginFile + ": "
                       + (loader.isLoaded() ? "this plug-in offers no steps" : loader.errorString()));
    }

    const QStringList chinese = QFontDatabase().families(QFontDatabase::SimplifiedChinese);
    if (chinese.isEmpty())
        QTextStream(stderr) << "contactsheet: no font for Chinese was found: the captions are type ids\n";
    const QString preferred = QStringLiteral("Noto Sans CJK SC");
    QFont font(chinese.contains(preferred) ? preferred : chinese.value(0));
    font.setPixelSize(18);

    QString error;
    const QImage sheet = contactSheet(iconsOf(*plugin, !chinese.isEmpty()), font, &error);
    if (sheet.isNull())
        return failure(error);
    if (!sheet.save(arguments[2], "PNG"))
        return failure(arguments[2] + ": the picture cannot be written there");
    return 0;
}
