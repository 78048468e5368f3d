#include <QApplication>
#include <QWidget>

// The least that a window program of the same toolkit does before its window is shown.
int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(QStringLiteral("Empty"));
    window.resize(1024, 670);
    window.show();
    return QApplication::exec();
}
