#include <QFile>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>
#include <cstdlib>

// render_icon DRAWING SIDE PICTURE: draws an SVG file into a PNG file of that many pixels a side.
int main(int argc, char **argv)
{
    const int side = argc == 4 ? std::atoi(argv[2]) : 0;
    if (side <= 0) {
        std::fputs("render_icon DRAWING SIDE PICTURE\n", stderr);
        return 2;
    }
    QSvgRenderer renderer(QFile::decodeName(argv[1]));
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    painter.end();
    if (!renderer.isValid() || !image.save(QFile::decodeName(argv[3]), "PNG")) {
        std::fprintf(stderr, "render_icon: %s cannot be drawn into %s\n", argv[1], argv[3]);
        return 1;
    }
    return 0;
}
