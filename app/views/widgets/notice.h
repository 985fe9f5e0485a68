// A sentence about something that needs attention, with a shape for its kind in front.
#pragma once

#include <QString>
#include <QWidget>

#include <vector>

class QPainter;

namespace corvane {

struct Notice {
    /// An error keeps something from working; a warning and an advice don't; a hint is plain help.
    enum class Kind { error, warning, advice, hint };
    Kind kind = Kind::hint;
    QString text;
    /// "Error: …": the text as it is read aloud.
    QString spoken() const;
    friend bool operator==(const Notice&, const Notice&) = default;
};

QColor noticeColour(Notice::Kind kind, const QPalette& palette);
/// Draws the shape into a square; a hint has none.
void paintNoticeMark(QPainter& painter, const QRectF& square, Notice::Kind kind, const QPalette& palette);

/// Wraps its text; keeps the height of one line even when it is empty, so that nothing moves when a text
/// comes.
class NoticeLines : public QWidget {
    Q_OBJECT

  public:
    enum class Room { oneLineAtLeast, onlyWhatIsNeeded };
    explicit NoticeLines(Room room, QWidget* parent = nullptr);
    void setNotices(std::vector<Notice> notices);
    const std::vector<Notice>& notices() const { return notices_; }

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    int indentOf(const Notice& notice) const;
    std::vector<Notice> notices_;
    Room room_;
};

} // namespace corvane
