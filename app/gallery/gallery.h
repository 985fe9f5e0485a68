// Writes every screen as a picture.
#pragma once

#include <QString>

class QApplication;

namespace corvane {

/// Into `folder`, made when missing, as "<screen>-<light or dark>.png". False when something couldn't be
/// written or shown; standard error then says what.
bool writeGallery(QApplication& application, const QString& folder);

} // namespace corvane
