// The reference of the window benchmark: a Qt application with one empty main window.

#include "bench/first_paint.h"

#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1100, 720);
    corvane::bench::FirstPaint firstPaint(window);
    window.show();
    return application.exec();
}
