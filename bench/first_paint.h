// Says on standard output when a window's first frame has been painted, and the process' memory on request.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <cstdlib>

namespace corvane::bench {

/// Prints "painted", then after BENCH_IDLE_MS milliseconds "rss <KiB>", and quits. Without BENCH_IDLE_MS it quits at
/// once.
class FirstPaint : public QObject {
  public:
    explicit FirstPaint(QWidget& window) : QObject(&window) { window.installEventFilter(this); }

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() != QEvent::Paint || seen_) return false;
        seen_ = true;
        // Behind the frame that is being painted, when the backing store has been flushed.
        QTimer::singleShot(0, this, [this] { painted(); });
        return false;
    }

  private:
    void painted() {
        std::puts("painted");
        std::fflush(stdout);
        const char* idle = std::getenv("BENCH_IDLE_MS");
        if (!idle) {
            std::_Exit(0);
        }
        QTimer::singleShot(std::atoi(idle), this, [] {
            QFile rollup("/proc/self/smaps_rollup");
            if (rollup.open(QIODevice::ReadOnly)) {
                for (const QByteArray& line : rollup.readAll().split('\n'))
                    if (line.startsWith("Rss:")) std::printf("rss %s\n", line.mid(4).trimmed().split(' ')[0].constData());
            }
            std::fflush(stdout);
            std::_Exit(0);
        });
    }
    bool seen_ = false;
};

} // namespace corvane::bench
