#include "app/views/widgets/list_closing.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QPointer>

namespace corvane {

namespace {

class ListWatcher : public QObject {
  public:
    ListWatcher(QObject* parent, QObject* context, std::function<void()> refill)
        : QObject(parent), context_(context), refill_(std::move(refill)) {}

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Hide && context_)
            QMetaObject::invokeMethod(context_, refill_, Qt::QueuedConnection);
        return false;
    }

  private:
    QPointer<QObject> context_;
    std::function<void()> refill_;
};

} // namespace

void whenListCloses(QComboBox& box, QObject* context, std::function<void()> refill) {
    box.view()->installEventFilter(new ListWatcher(&box, context, std::move(refill)));
}

} // namespace corvane
