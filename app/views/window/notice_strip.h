// What stays true for a while and must stay in sight: a simulated network, a library that couldn't be read or
// written. Along the bottom of the window, so that nothing above it moves when a line comes or goes.
#pragma once

#include <QWidget>

#include <vector>

class QVBoxLayout;

namespace corvane {

class AppModel;

class NoticeStrip : public QWidget {
    Q_OBJECT

  public:
    explicit NoticeStrip(AppModel& model, QWidget* parent = nullptr);
    /// The lines in sight, top to bottom.
    QStringList lines() const;

  private:
    void refresh();

    AppModel& model_;
    QVBoxLayout* layout_;
    std::vector<class NoticeRow*> rows_;
};

} // namespace corvane
