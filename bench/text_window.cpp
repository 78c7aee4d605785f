// A second peer of the whole-program benchmarks: the empty window with a few words in the weights and sizes that ours
// has. What it costs more than the empty one is what any program pays for its first text.

#include <QApplication>
#include <QLabel>
#include <QWidget>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Text"));
    window.resize(1000, 680);
    int y = 20;
    for (const auto weight : {QFont::Normal, QFont::Medium, QFont::DemiBold, QFont::Bold}) {
        for (const int size : {10, 11, 12, 13}) {
            auto *label = new QLabel(QStringLiteral("Target 40.0°C ⌘⌥W"), &window);
            QFont font = label->font();
            font.setPixelSize(size);
            font.setWeight(weight);
            label->setFont(font);
            label->move(20, y += 25);
        }
    }
    window.show();
    return QApplication::exec();
}
