#include <QApplication>
#include <QLabel>

// The lower bound for the start of a program: one that only shows an empty window with Qt. With an argument
// the window shows it as text, so that Qt has to look for fonts too.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QLabel window(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());
    window.setWindowTitle(QStringLiteral("Empty"));
    window.resize(1024, 670);
    window.show();
    return QApplication::exec();
}
