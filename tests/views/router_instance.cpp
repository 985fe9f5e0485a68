// One whole program with a home of its own, for a test that runs two: its window shows the video router,
// "route OUTPUT INPUT" on the standard input is carried out with keys, and after every change the page is
// told in one line.
#include "app/clients/videohub_client.h"
#include "app/views/tools/router/port_list.h"
#include "app/views/widgets/connection_bar.h"
#include "app/views/widgets/elided_label.h"
#include "app/views/window/main_window.h"
#include "tests/app/support/model_home.h"

#include <QApplication>
#include <QLineEdit>
#include <QSocketNotifier>
#include <QTest>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

using namespace corvane;

namespace {

void type(const QString& text) {
    for (const QChar c : text)
        QTest::keyClicks(QApplication::focusWidget(), QString(c)); // the first moves the focus
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
}

void tell(const MainWindow& window) {
    QStringList parts{window.findChild<ConnectionBar*>()->statusText(),
                      window.findChild<ElidedLabel*>(QStringLiteral("plan"))->text()};
    const auto* outputs = window.findChild<PortList*>(QStringLiteral("outputs"))->model();
    for (int row = 0; row < outputs->rowCount(); ++row)
        parts << outputs->index(row, 0).data(Qt::AccessibleTextRole).toString();
    std::printf("%s\n", qPrintable(parts.join(QStringLiteral(" | "))));
    std::fflush(stdout);
}

/// Finds output and input by their numbers, as a user would, and takes.
void route(const MainWindow& window, int output, int input) {
    auto* outputs = window.findChild<PortList*>(QStringLiteral("outputs"));
    auto* sources = window.findChild<PortList*>(QStringLiteral("sources"));
    outputs->setFocus();
    type(QString::number(output));
    sources->setFocus();
    type(QString::number(input));
    QTest::keyClick(sources, Qt::Key_Return);
    for (auto* list : {outputs, sources}) {
        list->setFocus();
        QTest::keyClick(list, Qt::Key_Escape);
    }
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    testing::ModelHome home;
    AppModel& model = home.start();
    MainWindow window(model);
    window.show();
    if (!QTest::qWaitForWindowActive(&window)) return EXIT_FAILURE;
    model.select(SidebarItem::tool(Tool::videohub));
    auto* host = window.findChild<ConnectionBar*>()->findChild<QLineEdit*>();
    host->setFocus();
    type(QString::fromLocal8Bit(argv[1]));

    // After the page, which draws folded as well.
    QTimer soon;
    soon.setSingleShot(true);
    soon.setInterval(20);
    QObject::connect(&soon, &QTimer::timeout, &window, [&] { tell(window); });
    QObject::connect(&model.videohub(), &VideohubClient::statusChanged, &soon, [&] { soon.start(); });
    QObject::connect(&model.videohub(), &VideohubClient::stateChanged, &soon, [&] { soon.start(); });
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &window, [&] {
        char line[64] = {};
        int output = 0, source = 0;
        if (!std::fgets(line, sizeof line, stdin)) return QApplication::exit();
        if (std::sscanf(line, "route %d %d", &output, &source) == 2) route(window, output, source);
    });
    return QApplication::exec();
}
