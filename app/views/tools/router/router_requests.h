// What the user has asked of the router and the router hasn't reported yet.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>

#include <map>
#include <optional>
#include <vector>

namespace corvane {

class VideohubClient;

/// A request is sent at once. It stands as pending from `shownAfter` on, so that a quick answer doesn't
/// flicker, until the router reports what was asked for, refuses it, is lost, or has said nothing for
/// `forgottenAfter`.
class RouterRequests : public QObject {
    Q_OBJECT

  public:
    /// Milliseconds.
    static constexpr int shownAfter = 150, forgottenAfter = 2000;
    enum class LockWish { take, release, force };
    /// What the user's last action met with; an action may be several requests.
    enum class Trouble { none, refused, unanswered, unsent };

    /// The client outlives the requests.
    explicit RouterRequests(VideohubClient& client, QObject* parent = nullptr);

    void route(const std::vector<int>& outputs, int input);
    void lock(const std::vector<int>& outputs, LockWish wish);
    void renameInput(int input, const QString& name);
    void renameOutput(int output, const QString& name);

    Trouble trouble() const { return trouble_; }
    /// Also before it stands as pending.
    std::optional<int> routeAsked(int output) const;
    std::optional<int> routePending(int output) const;
    bool lockPending(int output) const;
    std::optional<QString> inputNamePending(int input) const;
    std::optional<QString> outputNamePending(int output) const;

  signals:
    /// What is pending, or the trouble.
    void changed();

  private:
    enum class Kind { route, lock, inputName, outputName };
    struct Request {
        /// The client's number; 0 when it wasn't sent.
        std::uint64_t id = 0;
        /// Of a route its input.
        int input = 0;
        LockWish wish = LockWish::take;
        QString name;
        bool isShown = false, isAnswered = false;
        QElapsedTimer age = {};
    };
    void remember(Kind kind, int port, Request request);
    void meet(Trouble trouble);
    const Request* shown(Kind kind, int port) const;
    bool isDone(Kind kind, int port, const Request& request) const;
    /// Forgets those that the predicate names.
    template <typename Ended>
    void end(Ended ended);
    void followStatus();
    void followState();
    void followAnswer(std::uint64_t id, bool accepted);
    void tick();

    VideohubClient& client_;
    std::map<std::pair<Kind, int>, Request> requests_;
    Trouble trouble_ = Trouble::none;
    QTimer clock_;
};

} // namespace corvane
