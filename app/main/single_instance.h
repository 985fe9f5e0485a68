// One program at a time over one library: two would overwrite each other's edits. A second start asks the
// running one to show its window and ends.
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>

namespace corvane {

class SingleInstance : public QObject {
    Q_OBJECT

  public:
    /// `applicationSupport` is the folder in which the program's own one stands.
    explicit SingleInstance(const QString& applicationSupport);
    /// False when another one runs; it has been asked to show itself. True as well where no lock can be made.
    bool isFirst() const { return first_; }

  signals:
    /// Another start wants the window shown.
    void asked();

  private:
    void listen(const QString& socket);
    QLockFile lock_;
    QLocalServer server_;
    bool first_ = true;
};

} // namespace corvane
