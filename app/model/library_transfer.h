// Export and import of the library, off the main thread.
#pragma once

#include "app/model/background.h"
#include "core/netconfig/preset_library.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace corvane {

class LibraryTransfer {
  public:
    struct Message {
        QString text;
        bool isError = false;
    };
    using Done = std::function<void(const Message&)>;
    /// The library that was read, or nothing and why.
    using Read = std::function<void(const std::optional<PresetLibrary>&, const QString& error)>;

    /// `done` comes on the main thread, and not at all once this object is gone.
    void exportTo(const QString& file, std::shared_ptr<const PresetLibrary> library, Done done);
    void importFrom(const QString& file, Read read);

    /// "Imported 3 presets and 1 global", with a remark when some of them were in the library already.
    static QString importedText(const PresetLibrary& imported, const PresetLibrary& before,
                                const PresetLibrary& after);

  private:
    Background background_;
};

} // namespace corvane
