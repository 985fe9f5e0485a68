// Texts laid out once and drawn often: hundreds of them stand on the router's page at a time.
#pragma once

#include <QFont>
#include <QHash>
#include <QStaticText>

#include <array>

class QPainter;

namespace corvane {

class PortTexts {
  public:
    enum Style { plain, number, caption, slanted, styles };

    /// The list's font; those of the styles follow from it. Another one forgets what was laid out.
    void setFont(const QFont& font);
    /// Of a line of plain text.
    int height() const { return height_; }
    int average() const { return average_; }
    int digit() const { return digit_; }
    /// Of the text as a whole.
    int width(const QString& text, Style style);
    /// On one line in the middle of the room, cut off with an ellipsis where it ends.
    void draw(QPainter& painter, const QRect& room, const QString& text, Style style, const QColor& colour,
              Qt::Alignment side = Qt::AlignLeft);

  private:
    struct Key {
        QString text;
        int style, room;
        friend bool operator==(const Key&, const Key&) = default;
        friend size_t qHash(const Key& key, size_t seed = 0) {
            return qHashMulti(seed, key.text, key.style, key.room);
        }
    };
    const QStaticText& laidOut(const QString& text, Style style, int room);
    QFont font_;
    std::array<QFont, styles> fonts_;
    int height_ = 0, average_ = 0, digit_ = 0;
    QHash<Key, QStaticText> laidOut_;
};

} // namespace corvane
