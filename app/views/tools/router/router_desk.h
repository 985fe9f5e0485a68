// Where routing is done: outputs at the left, sources at the right, and below what the next take would do.
#pragma once

#include <QWidget>

#include <memory>

namespace corvane {

class RouterActions;
class VideohubClient;

class RouterDesk : public QWidget {
    Q_OBJECT

  public:
    /// The client outlives the desk.
    explicit RouterDesk(VideohubClient& client, QWidget* parent = nullptr);
    ~RouterDesk() override;

    /// Takes over what the router says.
    void showLive();
    /// Keeps what stands there; `since` says how old it is.
    void showStale(const QString& since);
    void clear();
    const RouterActions& actions() const;
    /// The keyboard goes to the outputs.
    void focusOutputs();

  signals:
    /// Something that it shows beside the router's state has changed.
    void refreshNeeded();

  private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace corvane
