// The peer of the whole-program benchmarks: the smallest Qt program with a window of the same size.

#include <QApplication>
#include <QWidget>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Empty"));
    window.resize(1000, 680);
    window.show();
    return QApplication::exec();
}
