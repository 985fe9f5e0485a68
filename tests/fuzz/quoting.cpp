// Quoting for the shell and for the script interpreter, read back by small readers of their two grammars.
#include "fuzz.h"

#include "core/netconfig/privileged_script.h"

#include <optional>

using namespace corvane;

namespace {

/// The words of a POSIX shell line of '…' and \' only (IEEE Std 1003.1, 2.2); nothing if anything else stands
/// bare.
std::optional<NetworkSetup::Command> unquoteShell(std::string_view line) {
    NetworkSetup::Command words(1);
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\'') {
            const auto end = line.find('\'', i + 1);
            if (end == std::string_view::npos) return std::nullopt;
            words.back() += line.substr(i + 1, end - i - 1);
            i = end;
        } else if (line.substr(i, 2) == "\\'") {
            words.back() += '\'';
            ++i;
        } else if (line[i] == ' ') {
            words.emplace_back();
        } else {
            return std::nullopt;
        }
    }
    return words;
}

/// The text of a script interpreter's literal with its length in the source; nothing if it isn't closed.
std::optional<std::pair<std::string, std::size_t>> unquoteLiteral(std::string_view source) {
    if (!source.starts_with('"')) return std::nullopt;
    std::string text;
    for (std::size_t i = 1; i < source.size(); ++i) {
        if (source[i] == '"') return std::pair(text, i + 1);
        if (source[i] == '\\' && ++i == source.size()) return std::nullopt;
        text += source[i];
    }
    return std::nullopt;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = asText(data, size);
    const NetworkSetup::Command command = {"tool", std::string(text.substr(0, size / 2)),
                                           std::string(text.substr(size / 2))};
    const PrivilegedRequest request{{command}, std::string(text), {}};
    require(unquoteShell(NetworkSetup::shellScript({command})) == command,
            "the shell reads the arguments back");

    auto source = PrivilegedScript::source(request, text, text);
    std::string_view rest = source;
    for (const auto& [keyword, value] :
         {std::pair<std::string_view, std::string>{"do shell script ", PrivilegedScript::script(request)},
          {" user name ", std::string(text)},
          {" password ", std::string(text)}}) {
        require(rest.starts_with(keyword), "the keyword follows the literal");
        const auto literal = unquoteLiteral(rest.substr(keyword.size()));
        require(literal && literal->first == value, "the interpreter reads the text back");
        rest.remove_prefix(keyword.size() + literal->second);
    }
    require(rest == " with administrator privileges", "nothing else is said");
    return 0;
}
