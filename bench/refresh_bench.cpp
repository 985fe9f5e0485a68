// One refresh of 20 services beside the bare cost of starting the same processes, and how long a refresh of the model
// holds the main thread.

#include "app/model/app_model.h"
#include "bench/report.h"
#include "bench/simulated_bench_state.h"
#include "platform/posix/posix_shell.h"
#include "platform/simulated/simulated_host.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <chrono>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace {

using namespace corvane;
using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration duration) { return std::chrono::duration<double, std::milli>(duration).count(); }

using CommandLine = std::pair<std::string, std::vector<std::string>>;

/// Notes which processes a refresh starts.
class RecordingShell final : public Shell {
  public:
    RecordingShell(const Shell& inner, std::vector<CommandLine>& lines) : inner_(inner), lines_(lines) {}
    std::string run(const std::string& path, const std::vector<std::string>& arguments) const override {
        lines_.emplace_back(path, arguments);
        return inner_.run(path, arguments);
    }

  private:
    const Shell& inner_;
    std::vector<CommandLine>& lines_;
};

/// The least that starting a process and reading what it prints can cost: no decoding, no keeping, no watchdog.
void spawnBare(const std::string& root, const CommandLine& line) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) std::abort();
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 1);
    posix_spawn_file_actions_adddup2(&actions, ends[1], 2);
    const std::string path = root + line.first;
    std::vector<char*> arguments{const_cast<char*>(path.c_str())};
    for (const std::string& argument : line.second) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawn(&child, path.c_str(), &actions, nullptr, arguments.data(), environ) != 0) std::abort();
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    char buffer[4096];
    while (read(ends[0], buffer, sizeof buffer) > 0) {}
    close(ends[0]);
    waitpid(child, nullptr, 0);
}

/// Times every event that the main thread handles.
class TimedApplication : public QCoreApplication {
  public:
    using QCoreApplication::QCoreApplication;
    bool notify(QObject* receiver, QEvent* event) override {
        if (depth_++ > 0) {
            const bool handled = QCoreApplication::notify(receiver, event);
            --depth_;
            return handled;
        }
        const auto start = Clock::now();
        const bool handled = QCoreApplication::notify(receiver, event);
        longest = std::max(longest, milliseconds(Clock::now() - start));
        --depth_;
        return handled;
    }
    double longest = 0;

  private:
    int depth_ = 0;
};

class NoPrompt final : public PasswordPrompt {
    std::optional<Answer> ask(const QString&, bool) override { return std::nullopt; }
};
class NoAlerts final : public Alerts {
    void show(Kind, const QString&, const QString&) override {}
};

} // namespace

int main(int argc, char** argv) {
    TimedApplication application(argc, argv);
    QTemporaryDir folder;
    const std::string base = folder.path().toStdString();
    const std::string state = base + "/network.json";
    const std::string root = (QCoreApplication::applicationDirPath() + "/../libexec/wendrel/sim").toStdString();
    bench::writeState(state, 20);
    qputenv("WENDREL_SIMULATED_NETWORK", state.c_str());

    const PosixShell shell(root);
    std::vector<CommandLine> lines;
    if (NetworkReader(RecordingShell(shell, lines)).snapshot().services.size() != 20) {
        std::fprintf(stderr, "The simulated tools don't answer under %s.\n", root.c_str());
        return 1;
    }
    std::vector<double> bare, read;
    for (int round = 0; round < 21; ++round) {
        auto start = Clock::now();
        for (const CommandLine& line : lines) spawnBare(root, line);
        bare.push_back(milliseconds(Clock::now() - start));
        start = Clock::now();
        (void)NetworkReader(shell).snapshot();
        read.push_back(milliseconds(Clock::now() - start));
    }
    std::printf("One refresh of 20 services starts %zu processes.\n", lines.size());
    bench::reportRatio("one refresh of 20 services", 1.1, bench::median(bare), bench::median(read), "ms");

    SimulatedHostOptions options;
    options.toolRoot = QString::fromStdString(root);
    options.stateFile = QString::fromStdString(state);
    options.applicationSupport = folder.path();
    const auto host = makeSimulatedHost(options);
    NoPrompt prompt;
    NoAlerts alerts;
    AppModel model(*host, prompt, alerts);
    int refreshes = 0;
    QEventLoop loop;
    QObject::connect(&model, &AppModel::refreshed, &loop, [&] {
        if (++refreshes == 10) return loop.quit();
        // Changes what is read, so that every refresh publishes.
        bench::writeState(state, 20 - refreshes);
        QTimer::singleShot(0, &model, [&] { model.refresh(); });
    });
    application.longest = 0;
    loop.exec();
    bench::reportLimit("main thread held by one event, 10 refreshes", 16, application.longest, "ms");
    return 0;
}
