#include "app/views/widgets/display_text.h"

#include <algorithm>

namespace corvane {

QString oneLine(const QString& text) {
    QString line = text;
    std::replace_if(
        line.begin(), line.end(),
        [](QChar c) {
            return c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
                   c == QChar::ParagraphSeparator;
        },
        QLatin1Char(' '));
    // Marks that turn the direction of what follows would turn the rest of a sentence round too.
    line.removeIf([](QChar c) {
        return (c >= QChar(0x202A) && c <= QChar(0x202E)) || (c >= QChar(0x2066) && c <= QChar(0x2069));
    });
    return line;
}

QString oneLine(std::string_view text) {
    return oneLine(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

QString joined(const std::vector<std::string>& texts, const QString& separator) {
    QString all;
    for (const std::string& text : texts) {
        if (!all.isEmpty()) all += separator;
        all += oneLine(text);
    }
    return all;
}

QString withoutMnemonics(const QString& text) {
    return QString(text).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

QString plainTip(const QString& text) {
    if (text.isEmpty()) return {};
    QString markup = text.toHtmlEscaped();
    markup.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
    return QStringLiteral("<qt>") + markup + QStringLiteral("</qt>");
}

QString inQuotes(std::string_view name) {
    return QStringLiteral("“") + oneLine(name) + QStringLiteral("”");
}

} // namespace corvane
