#include "core/support/json.h"
#include "core/support/text.h"

namespace corvane {

namespace {

class Printer {
  public:
    void print(const JsonValue& value) {
        if (const auto* text = value.string()) {
            printString(*text);
        } else if (const auto* object = value.object()) {
            printSequence('{', '}', *object, [this](const JsonValue::Object::value_type& member) {
                printString(member.first);
                output_ += ": ";
                print(member.second);
            });
        } else if (const auto* array = value.array()) {
            printSequence('[', ']', *array, [this](const JsonValue& element) { print(element); });
        } else if (const auto* number = value.number()) {
            output_ += number->literal;
        } else if (const auto* boolean = value.boolean()) {
            output_ += *boolean ? "true" : "false";
        } else {
            output_ += "null";
        }
    }

    std::string take() { return std::move(output_); }

  private:
    template <typename Sequence, typename PrintOne>
    void printSequence(char open, char close, const Sequence& sequence, const PrintOne& printOne) {
        output_ += open;
        if (!sequence.empty()) {
            indent_ += 2;
            bool first = true;
            for (const auto& item : sequence) {
                if (!first) output_ += ',';
                first = false;
                newLine();
                printOne(item);
            }
            indent_ -= 2;
            newLine();
        }
        output_ += close;
    }

    void newLine() {
        output_ += '\n';
        output_.append(indent_, ' ');
    }

    void printString(std::string_view text) {
        std::string mended;
        if (text::validUtf8Prefix(text) != text.size()) {
            mended = text::validUtf8(text);
            text = mended;
        }
        output_ += '"';
        std::size_t done = 0;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char c = text[i];
            if (static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\') continue;
            output_ += text.substr(done, i - done);
            done = i + 1;
            printEscape(c);
        }
        output_ += text.substr(done);
        output_ += '"';
    }

    void printEscape(char c) {
        constexpr std::string_view hex = "0123456789abcdef";
        output_ += '\\';
        switch (c) {
        case '"':
        case '\\':
            output_ += c;
            break;
        case '\b':
            output_ += 'b';
            break;
        case '\f':
            output_ += 'f';
            break;
        case '\n':
            output_ += 'n';
            break;
        case '\r':
            output_ += 'r';
            break;
        case '\t':
            output_ += 't';
            break;
        default:
            output_ += "u00";
            output_ += c < 0x10 ? '0' : '1';
            output_ += hex[static_cast<unsigned char>(c) & 0x0F];
        }
    }

    std::string output_;
    std::size_t indent_ = 0;
};

} // namespace

std::string JsonValue::prettyPrinted() const {
    Printer printer;
    printer.print(*this);
    return printer.take();
}

} // namespace corvane
