// Library files: a library or a sentence; saving loses nothing; a library merged with itself is itself.
#include "fuzz.h"

#include "core/netconfig/preset_library.h"

#include <unordered_set>

using namespace corvane;

namespace {

template <typename Record>
bool idsDiffer(const std::vector<Record>& records) {
    std::unordered_set<Uuid> ids;
    for (const auto& record : records) ids.insert(record.id);
    return ids.size() == records.size();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto first = PresetLibrary::decode(asText(data, size));
    require(first.library.has_value() == first.error.empty(), "a library or a sentence");
    if (!first.library) return 0;
    const auto& library = *first.library;
    const auto second = PresetLibrary::decode(library.encoded());
    require(second.library == library, "saving and loading lose nothing");

    const auto merged = library.merging(library);
    require(merged.presets.size() >= library.presets.size(), "merging removes nothing");
    if (idsDiffer(library.presets) && idsDiffer(library.globals) && idsDiffer(library.plannedVLANs)) {
        require(merged.presets == library.presets && merged.globals == library.globals,
                "merging adds nothing twice");
    }
    for (const auto& global : library.globals) global.resolve(library.presets);
    for (const auto& preset : library.presets) {
        preset.errors();
        preset.warnings();
        preset.summary();
        require(preset.matches(CurrentConfig()) == preset.differences(CurrentConfig()).empty(),
                "a mismatch has a reason");
    }
    return 0;
}
