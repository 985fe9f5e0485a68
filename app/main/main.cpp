// Starts the program: chooses the host, makes the dialogs, the model and the window, and ends in order.
#include "app/gallery/gallery.h"
#include "app/main/options.h"
#include "app/main/single_instance.h"
#include "app/main/unix_signals.h"
#include "app/model/app_model.h"
#include "app/views/widgets/symbols.h"
#include "app/views/widgets/theme.h"
#include "app/views/window/alert_box.h"
#include "app/views/window/conventions.h"
#include "app/views/window/main_window.h"
#include "app/views/window/password_dialog.h"
#include "app/views/window/tray.h"
#include "platform/simulated/simulated_host.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace corvane;

/// Qt ends the program when it finds no screen to draw on; this says what to do about it.
void explainMissingDisplay(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type != QtFatalMsg) return;
    std::fprintf(stderr,
                 "Wendrel found no display to open its window on.\n"
                 "Start it in a desktop session. Without one, ./run in the source folder serves the window "
                 "over VNC on\n"
                 "127.0.0.1, and `wendrel --gallery FOLDER` writes pictures of every screen.\n\n%s\n",
                 qPrintable(text));
    std::_Exit(exitNoDisplay);
}

int runWindow(QApplication& application, bool simulated) {
    theme::apply(application, theme::Appearance::system);
    application.setWindowIcon(symbols::application());
    const auto host = simulated ? makeSimulatedHost() : makeHost();
    const SingleInstance instance(host->applicationSupport);
    if (!instance.isFirst()) {
        std::fputs("Wendrel is running already; its window comes to the front.\n", stdout);
        return exitFine;
    }
    PasswordDialog prompt(host->userName, host->passwordHelp);
    AlertBox alerts;
    AppModel model(*host, prompt, alerts);
    MainWindow window(model);
    prompt.setWindow(&window);
    alerts.setWindow(&window);
    window.show();
    QObject::connect(&instance, &SingleInstance::asked, &window, &MainWindow::present);

    const Tray tray(model, window);
    QApplication::setQuitOnLastWindowClosed(!conventions::keepsRunningWithoutWindow(tray.isShown()));
    // A click on the Mac's dock brings a closed window back.
    QObject::connect(&application, &QGuiApplication::applicationStateChanged, &window,
                     [&](Qt::ApplicationState state) {
                         if (conventions::isMac() && state == Qt::ApplicationActive && !window.isVisible())
                             window.present();
                     });
    const UnixSignals unixSignals([] { QCoreApplication::exit(exitFine); });
    const int code = QApplication::exec();
    window.savePlace();
    model.flush();
    return code;
}

} // namespace

int main(int argc, char** argv) {
    const Options options = Options::read(argc, argv);
    if (!options.error.empty()) {
        std::fprintf(stderr, "%s\n\n%s", options.error.c_str(), Options::usage());
        return exitUsage;
    }
    if (options.help || options.version) {
        std::fputs(options.help ? Options::usage() : "Wendrel " WENDREL_VERSION "\n", stdout);
        return exitFine;
    }
    if (options.gallery) qputenv("QT_QPA_PLATFORM", "offscreen");

    const auto usual = qInstallMessageHandler(explainMissingDisplay);
    QApplication application(argc, argv);
    qInstallMessageHandler(usual);
    QApplication::setApplicationName(QStringLiteral("Wendrel"));
    QApplication::setOrganizationName(QStringLiteral("Wendrel"));
    QApplication::setApplicationVersion(QStringLiteral(WENDREL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("wendrel"));
    if (options.gallery)
        return writeGallery(application, QString::fromStdString(*options.gallery)) ? exitFine : exitFailed;
    return runWindow(application, options.simulated);
}
