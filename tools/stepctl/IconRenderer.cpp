#include "IconRenderer.h"

#ifdef STEPCTL_DRAWS_ICONS
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>

using namespace StepHost;

namespace
{
constexpr QSize drawnSize(64, 64);

// A drawing of one colour may be an icon; one that nobody can see is none.
bool isBlank(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) != 0)
                return false;
        }
    }
    return true;
}

QImage draw(const QString &path)
{
    QImageReader reader(path);
    reader.setScaledSize(drawnSize);
    return reader.read();
}

IconDrawing drawIcon(const QString &path)
{
    const QByteArray suffix = QFileInfo(path).suffix().toLower().toLatin1();
    IconDrawing drawing;
    drawing.isSupported = QImageReader::supportedImageFormats().contains(suffix);
    if (!drawing.isSupported)
        return drawing;
    const QImage image = draw(path);
    drawing.isImage = !image.isNull();
    drawing.isBlank = image.isNull() || isBlank(image);
    return drawing;
}
} // namespace

std::unique_ptr<QCoreApplication> createDrawingApplication(int &argc, char **argv)
{
    // No window system, and unlike "offscreen" it frees all it allocates.
    qputenv("QT_QPA_PLATFORM", "minimal");
    return std::make_unique<QGuiApplication>(argc, argv);
}

IconRenderer iconRenderer()
{
    return drawIcon;
}
#else
std::unique_ptr<QCoreApplication> createDrawingApplication(int &argc, char **argv)
{
    return std::make_unique<QCoreApplication>(argc, argv);
}

StepHost::IconRenderer iconRenderer()
{
    return {};
}
#endif
