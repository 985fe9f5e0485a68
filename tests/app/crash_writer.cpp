// Edits the library without end and says on standard output what is safely on the disk: one line a save,
// "<presets>". Ends by being killed.
#include "app/model/library_editor.h"
#include "app/model/library_store.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>
#include <map>

using namespace corvane;

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    LibraryStore store(QString::fromLocal8Bit(argv[1]));
    LibraryEditor editor(store.load());
    if (!store.loadProblem().isEmpty()) return 3;
    std::map<quint64, std::size_t> given;
    QObject::connect(&editor, &LibraryEditor::changed, &store,
                     [&] { given[store.save(editor.snapshot())] = editor.library().presets.size(); });
    QObject::connect(&store, &LibraryStore::saved, &editor, [&](quint64 revision) {
        std::printf("%zu\n", given[revision]);
        std::fflush(stdout);
    });
    QTimer typing;
    QObject::connect(&typing, &QTimer::timeout, &editor, [&] {
        NetworkPreset preset;
        preset.name = std::to_string(editor.library().presets.size() + 1);
        preset.service = "Wi-Fi";
        editor.addPreset(preset);
    });
    typing.start(5);
    return QCoreApplication::exec();
}
