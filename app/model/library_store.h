// The library's file: read once at start, written by one thread, the newest state only, each write whole and
// synced.
//
// A write begins at save(); states that come while it runs wait as one, the newest. It ends in saved() or,
// with the reason, in failed(); a failed state is tried again at the next save() and once at flush().
#pragma once

#include "app/model/background.h"
#include "core/netconfig/preset_library.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace corvane {

class LibraryStore : public QObject {
    Q_OBJECT

  public:
    using Clock = std::function<QDateTime()>;
    explicit LibraryStore(QString path, Clock clock = &QDateTime::currentDateTime, QObject* parent = nullptr);
    /// Flushes.
    ~LibraryStore() override;

    const QString& path() const { return path_; }
    /// Reads the file; empty when there is none or it can't be read. Nothing is written before this was
    /// called.
    PresetLibrary load();
    /// Writes that state; the number under which saved() will acknowledge it (higher ones include lower
    /// ones).
    quint64 save(std::shared_ptr<const PresetLibrary> library);
    /// Blocks until the newest state is on the disk or its last attempt failed.
    void flush();

    /// Why the file couldn't be read at start, and where it is kept once something was saved; else empty.
    const QString& loadProblem() const { return loadProblem_; }
    /// Why the newest state isn't on the disk; else empty.
    const QString& saveProblem() const { return saveProblem_; }

  signals:
    void saved(quint64 revision);
    void failed(const QString& sentence);
    /// loadProblem or saveProblem changed.
    void problemChanged();

  private:
    struct State {
        quint64 revision = 0;
        std::shared_ptr<const PresetLibrary> library;
    };
    struct Outcome {
        quint64 revision = 0;
        QString error;
        QString setAside;
    };

    void write();
    void collect();
    void setProblems(const QString& load, const QString& save);

    const QString path_;
    const Clock clock_;
    bool loaded_ = false;
    QString loadError_, loadProblem_, saveProblem_;
    State newest_;
    quint64 savedRevision_ = 0;

    std::mutex mutex_;
    State pending_;
    std::optional<Outcome> outcome_;
    // The writer's own: whether the file in place is one that couldn't be read.
    bool unreadable_ = false;

    // Last: its thread ends before what it uses.
    Background writer_;
};

} // namespace corvane
