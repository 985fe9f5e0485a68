// The window benchmark's subject: the model and the window as the program makes them, on the simulated Mac whose state
// and library stand in the folder given.

#include "app/model/app_model.h"
#include "app/views/widgets/theme.h"
#include "app/views/window/alert_box.h"
#include "app/views/window/main_window.h"
#include "app/views/window/password_dialog.h"
#include "bench/first_paint.h"
#include "platform/simulated/simulated_host.h"

#include <QApplication>

int main(int argc, char** argv) {
    using namespace corvane;
    QApplication application(argc, argv);
    theme::apply(application, theme::Appearance::system);
    SimulatedHostOptions options;
    options.toolRoot = QCoreApplication::applicationDirPath() + "/../libexec/wendrel/sim";
    options.stateFile = QString::fromLocal8Bit(argv[1]) + "/network.json";
    options.applicationSupport = QString::fromLocal8Bit(argv[1]);
    // Told to stand on this machine it would; so it loads the libraries that the program loads.
    const auto host = argc > 2 ? makeHost() : makeSimulatedHost(options);
    PasswordDialog prompt(host->userName, host->passwordHelp);
    AlertBox alerts;
    AppModel model(*host, prompt, alerts);
    MainWindow window(model);
    bench::FirstPaint firstPaint(window);
    window.show();
    return application.exec();
}
