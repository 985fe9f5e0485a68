// The outputs or the sources of a router: caption, search field and the list below.
#pragma once

#include "app/views/tools/router/port_list.h"

class QHBoxLayout;
class QLabel;
class QLineEdit;

namespace corvane {

class PortDelegate;

class PortPane : public QWidget {
    Q_OBJECT

  public:
    /// Takes the delegate.
    PortPane(const QString& title, PortList::Shape shape, PortModel& ports, PortDelegate* delegate,
             QWidget* parent = nullptr);
    PortList& list() { return *list_; }
    PortFilter& filter() { return *filter_; }
    /// For a control between caption and search field.
    void addControl(QWidget* control);
    /// Another restriction than the search; `name` as in "no output is locked".
    void setKeep(PortFilter::Keep keep, const QString& nothing);
    void setStale(bool stale);
    /// The keyboard goes to the search field.
    void find(const QString& text = {});
    bool isSearching() const;
    void clearSearch();
    void refreshCount();

  signals:
    /// The search or another restriction has changed which rows stand in the list.
    void filtered();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    /// From the search field into the list.
    void enterList();
    QString title_, nothing_;
    PortModel& ports_;
    PortFilter* filter_;
    PortList* list_;
    PortDelegate* delegate_;
    QLabel* count_;
    QLineEdit* search_;
    QHBoxLayout* head_;
};

} // namespace corvane
