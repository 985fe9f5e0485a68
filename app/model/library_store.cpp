#include "app/model/library_store.h"

#include "app/model/dated_copies.h"
#include "app/model/durable_file.h"

#include <QDir>
#include <QFileInfo>

#include <future>

namespace corvane {

LibraryStore::LibraryStore(QString path, Clock clock, QObject* parent)
    : QObject(parent), path_(std::move(path)), clock_(std::move(clock)) {}

LibraryStore::~LibraryStore() {
    flush();
}

PresetLibrary LibraryStore::load() {
    loaded_ = true;
    const auto read = DurableFile::read(path_);
    if (read.bytes) {
        auto decoded = PresetLibrary::decode(*read.bytes);
        if (decoded.library) return std::move(*decoded.library);
        loadError_ = QString::fromStdString(decoded.error);
    } else if (!read.error.isEmpty()) {
        loadError_ = read.error;
    } else {
        return {};
    }
    while (loadError_.endsWith(QLatin1Char('.'))) loadError_.chop(1);
    unreadable_ = true;
    setProblems(
        QStringLiteral("The preset library couldn't be read (%1). The file stays as it is until you change "
                       "something; then a copy is kept first.")
            .arg(loadError_),
        saveProblem_);
    return {};
}

quint64 LibraryStore::save(std::shared_ptr<const PresetLibrary> library) {
    newest_ = {newest_.revision + 1, std::move(library)};
    if (!loaded_) return newest_.revision;
    bool idle;
    {
        const std::lock_guard lock(mutex_);
        idle = !pending_.library;
        pending_ = newest_;
    }
    if (idle) writer_.start([this] { write(); }, [this] { collect(); });
    return newest_.revision;
}

void LibraryStore::flush() {
    const auto wait = [this] {
        // Shared: the promise may still be at work in the writer when the wait has ended here.
        const auto reached = std::make_shared<std::promise<void>>();
        auto end = reached->get_future();
        writer_.start([reached] { reached->set_value(); }, [] {});
        end.wait();
        collect();
    };
    if (savedRevision_ == newest_.revision) return;
    wait();
    if (!loaded_ || savedRevision_ == newest_.revision) return;
    {
        const std::lock_guard lock(mutex_);
        pending_ = newest_;
    }
    writer_.start([this] { write(); }, [] {});
    wait();
}

// On the writer's thread.
void LibraryStore::write() {
    State state;
    {
        const std::lock_guard lock(mutex_);
        state = std::exchange(pending_, {});
    }
    if (!state.library) return;
    Outcome outcome{state.revision, {}, {}};
    const std::string bytes = state.library->encoded();
    state.library.reset();
    const QDateTime now = clock_();
    if (unreadable_) {
        const auto kept = DatedCopies::keepUnreadable(path_, now);
        outcome.setAside = kept.name;
        if (kept.name.isEmpty())
            outcome.error = QStringLiteral("the unreadable file couldn't be copied first: ") + kept.error;
        else
            unreadable_ = false;
    } else {
        // A day without its copy is no reason to leave the newest state unsaved.
        DatedCopies::keepDay(path_, now.date());
    }
    if (outcome.error.isEmpty()) outcome.error = DurableFile::write(path_, bytes).value_or(QString());

    const std::lock_guard lock(mutex_);
    if (outcome_ && outcome.setAside.isEmpty()) outcome.setAside = outcome_->setAside;
    outcome_ = std::move(outcome);
}

void LibraryStore::collect() {
    std::optional<Outcome> outcome;
    {
        const std::lock_guard lock(mutex_);
        outcome = std::exchange(outcome_, std::nullopt);
    }
    if (!outcome) return;
    QString load = loadProblem_;
    if (!outcome->setAside.isEmpty())
        load = QStringLiteral("The preset library couldn't be read at start (%1); it is kept as “%2”.")
                   .arg(loadError_, outcome->setAside);
    if (outcome->error.isEmpty()) {
        savedRevision_ = outcome->revision;
        setProblems(load, {});
        emit saved(outcome->revision);
    } else {
        QString reason = outcome->error;
        while (reason.endsWith(QLatin1Char('.'))) reason.chop(1);
        const QString sentence = QStringLiteral("Couldn't save the preset library: %1.").arg(reason);
        setProblems(load, sentence);
        emit failed(sentence);
    }
}

void LibraryStore::setProblems(const QString& load, const QString& save) {
    if (load == loadProblem_ && save == saveProblem_) return;
    loadProblem_ = load;
    saveProblem_ = save;
    emit problemChanged();
}

} // namespace corvane
