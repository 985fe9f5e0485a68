// Texts that came from tools, files and users, made safe to show: one line, never read as markup or
// mnemonics.
#pragma once

#include <QString>

#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Line breaks and other control characters as blanks; marks that turn the direction of writing are left out.
QString oneLine(const QString& text);
QString oneLine(std::string_view text);
/// The texts as one, joined.
QString joined(const std::vector<std::string>& texts, const QString& separator);
/// For menus and buttons: an ampersand stays an ampersand.
QString withoutMnemonics(const QString& text);
/// For tool tips, which would otherwise guess whether a text is markup. Lines stay lines.
QString plainTip(const QString& text);
/// “name”, on one line.
QString inQuotes(std::string_view name);

/// What stands where a value is absent.
inline const QString absent = QStringLiteral("–");

} // namespace corvane
