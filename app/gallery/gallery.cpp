#include "app/gallery/gallery.h"

#include "app/gallery/screens.h"
#include "app/views/widgets/theme.h"

#include <QApplication>
#include <QDir>
#include <QRegularExpression>

#include <cstdio>

namespace corvane {

bool writeGallery(QApplication& application, const QString& folder) {
    const QDir directory(folder);
    if (!directory.mkpath(QStringLiteral("."))) {
        std::fprintf(stderr, "Can't make the folder %s.\n", qPrintable(folder));
        return false;
    }
    QApplication::setQuitOnLastWindowClosed(false);
    // For working on a few of them: a pattern that their names have to match.
    const QRegularExpression wanted(qEnvironmentVariable("WENDREL_GALLERY_ONLY"));
    bool fine = true;
    for (const bool dark : {false, true}) {
        theme::apply(application, dark ? theme::Appearance::dark : theme::Appearance::light);
        for (const auto& screen : gallery::screens()) {
            if (!wanted.match(QLatin1String(screen.name)).hasMatch()) continue;
            gallery::Stage stage;
            const QPixmap picture = screen.shoot(stage);
            const QString file = directory.filePath(
                QStringLiteral("%1-%2.png").arg(QLatin1String(screen.name), dark ? "dark" : "light"));
            const bool written = !picture.isNull() && picture.save(file, "PNG");
            if (!written)
                std::fprintf(stderr, "Couldn't write %s.\n", qPrintable(file));
            else
                std::printf("%s\n", qPrintable(file));
            std::fflush(stdout);
            fine = fine && written;
        }
    }
    return fine;
}

} // namespace corvane
