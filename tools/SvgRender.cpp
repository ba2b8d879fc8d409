// SPDX-License-Identifier: GPL-3.0-or-later
// Renders one of the project's SVG drawings to a PNG of a given size, optionally with one
// colour swapped for another, so that the blue and yellow sets of icons come from one
// drawing. Used by the build to make the images the pages name.
//
//   brinholt-svgrender <in.svg> <out.png> <width> <height> [<colour> <replacement>]...

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QTextStream>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtSvg/QSvgRenderer>

int main(int argc, char* argv[])
{
    // Text in the drawings needs the font database, which needs a platform; the build
    // has no display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QTextStream err(stderr);

    const QStringList args = QCoreApplication::arguments();
    if (args.size() < 5 || (args.size() - 5) % 2 != 0) {
        err << "usage: brinholt-svgrender <in.svg> <out.png> <width> <height> [<colour> <replacement>]...\n";
        return 2;
    }

    QFile in(args.at(1));
    if (!in.open(QIODevice::ReadOnly)) {
        err << "cannot read " << args.at(1) << "\n";
        return 1;
    }
    QByteArray svg = in.readAll();
    for (int i = 5; i + 1 < args.size(); i += 2)
        svg.replace(args.at(i).toLatin1(), args.at(i + 1).toLatin1());

    QSvgRenderer renderer(svg);
    if (!renderer.isValid()) {
        err << "not a valid drawing: " << args.at(1) << "\n";
        return 1;
    }

    const int width = args.at(3).toInt();
    const int height = args.at(4).toInt();
    if (width <= 0 || height <= 0) {
        err << "bad size " << args.at(3) << "x" << args.at(4) << "\n";
        return 2;
    }
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setRenderHint(QPainter::TextAntialiasing);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        renderer.render(&painter);
    }
    if (!image.save(args.at(2), "PNG")) {
        err << "cannot write " << args.at(2) << "\n";
        return 1;
    }
    return 0;
}
