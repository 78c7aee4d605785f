// tray_look PICTURE     Draws the status item's icon in every size on panels of several shades, magnified, for eyes.

#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cstdio>

#include "platform/qt/StatusIcon.h"

int main(int argc, char **argv)
{
    using namespace orvalen;

    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (argc < 2) {
        std::fputs("tray_look PICTURE\n", stderr);
        return 64;
    }
    const QGuiApplication application(argc, argv);
    constexpr int scale = 4;
    constexpr int gap = 6;
    const QColor panels[] = {QColor(0xff000000), QColor(0xff2b2e34), QColor(0xff808080), QColor(0xffe9ebef),
                             QColor(0xffffffff)};
    const StatusLook looks[] = {{"shield.lefthalf.filled", "39", true},  {"flame.fill", "39", true},
                                {"shield.lefthalf.filled", "104", true}, {"flame.fill", "8", true},
                                {"shield.lefthalf.filled", "-12", true}, {"flame.fill", "", true}};
    int width = gap;
    for (const int size : statusIconSizes)
        width += size + gap;
    const int row = 64 + gap;
    const int rows = static_cast<int>(std::size(looks));
    QImage sheet(width * 2, row * rows * static_cast<int>(std::size(panels)), QImage::Format_RGB32);
    QPainter painter(&sheet);
    int y = 0;
    for (const auto &panel : panels) {
        painter.fillRect(0, y, sheet.width(), row * rows, panel);
        for (auto look : looks) {
            int x = gap;
            for (const bool onDark : {true, false}) {
                look.onDark = onDark;
                for (const int size : statusIconSizes) {
                    painter.drawImage(x, y + gap / 2, paintStatusIcon(look, size));
                    x += size + gap;
                }
                x += gap;
            }
            y += row;
        }
    }
    painter.end();
    return sheet.scaled(sheet.size() * scale).save(argv[1]) ? 0 : 1;
}
