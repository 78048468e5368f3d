#include <QApplication>
#include <QLabel>

// The least that a window program of the same toolkit does before its window is shown. With a text as
// argument the window shows that, which makes the toolkit look for fonts.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QLabel window(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());
    window.setWindowTitle(QStringLiteral("Empty"));
    window.resize(1024, 670);
    window.show();
    return QApplication::exec();
}
