#include "app/model/library_transfer.h"

#include "app/model/durable_file.h"
#include "core/support/text.h"

namespace corvane {

namespace {

QString sentence(const QString& start, QString reason) {
    while (reason.endsWith(QLatin1Char('.'))) reason.chop(1);
    return start + QStringLiteral(": ") + reason + QLatin1Char('.');
}

QString counted(std::size_t count, const char* noun) {
    return QString::fromStdString(text::counted(count, noun));
}

} // namespace

void LibraryTransfer::exportTo(const QString& file, std::shared_ptr<const PresetLibrary> library, Done done) {
    background_.start(
        [file, library = std::move(library)]() -> Message {
            if (const auto error = DurableFile::write(file, library->encoded()))
                return {sentence(QStringLiteral("Couldn't export the presets"), *error), true};
            return {QStringLiteral("Exported ") + counted(library->presets.size(), "preset"), false};
        },
        std::move(done));
}

void LibraryTransfer::importFrom(const QString& file, Read read) {
    background_.start(
        [file]() -> PresetLibrary::DecodeResult {
            const auto contents = DurableFile::read(file);
            if (contents.bytes) return PresetLibrary::decode(*contents.bytes);
            return {std::nullopt,
                    contents.error.isEmpty() ? "The file doesn't exist" : contents.error.toStdString()};
        },
        [read = std::move(read)](const PresetLibrary::DecodeResult& result) {
            read(result.library, result.library ? QString()
                                                : sentence(QStringLiteral("Couldn't import the presets"),
                                                           QString::fromStdString(result.error)));
        });
}

QString LibraryTransfer::importedText(const PresetLibrary& imported, const PresetLibrary& before,
                                      const PresetLibrary& after) {
    const std::size_t total = imported.presets.size() + imported.globals.size();
    const std::size_t fresh =
        after.presets.size() + after.globals.size() - before.presets.size() - before.globals.size();
    QString text = QStringLiteral("Imported ") + counted(imported.presets.size(), "preset") +
                   QStringLiteral(" and ") + counted(imported.globals.size(), "global");
    if (fresh < total)
        text += fresh == 0 ? QStringLiteral(" (nothing new)") : QStringLiteral(" (%1 new)").arg(fresh);
    return text;
}

} // namespace corvane
