// The video router's page: its outputs with their sources, and taking another source.
#pragma once

#include <QWidget>

namespace corvane {

class AppModel;

class RouterPage : public QWidget {
    Q_OBJECT

  public:
    explicit RouterPage(AppModel& model, QWidget* parent = nullptr);

  private:
    AppModel& model_;
};

} // namespace corvane
