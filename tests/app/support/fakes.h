// Stand-ins for the person at the screen and for the system's stores.
#pragma once

#include "app/model/dialogs.h"
#include "platform/host.h"

#include <QStringList>
#include <QThread>

#include <atomic>
#include <deque>
#include <map>
#include <mutex>

namespace corvane::testing {

/// Answers from a list; cancels when it is used up.
class FakePrompt : public PasswordPrompt {
  public:
    struct Call {
        QString purpose;
        bool retry = false;
    };
    std::deque<Answer> answers;
    std::vector<Call> calls;
    std::function<void()> whileAsking;

    void willType(const QString& user, const std::string& password, bool remember = false) {
        answers.push_back({{user.toStdString(), Secret(std::string_view(password))}, remember});
    }
    std::optional<Answer> ask(const QString& purpose, bool retry) override {
        calls.push_back({purpose, retry});
        if (whileAsking) whileAsking();
        if (answers.empty()) return std::nullopt;
        const Answer answer = answers.front();
        answers.pop_front();
        return answer;
    }
};

class FakeAlerts : public Alerts {
  public:
    struct Shown {
        Kind kind;
        QString message, details;
    };
    std::vector<Shown> shown;
    void show(Kind kind, const QString& message, const QString& details) override {
        shown.push_back({kind, message, details});
    }
};

/// Called from a worker thread, as the real ones are.
class FakeKeychain : public Keychain {
  public:
    std::map<std::string, Credentials> items;
    /// "exists <service>" and so on, in order.
    QStringList log;
    std::string saveError;
    bool refusesRemoval = false;
    bool refusesLoading = false;

    bool exists(const std::string& service) override {
        note("exists ", service);
        return items.contains(service);
    }
    std::optional<Credentials> load(const std::string& service) override {
        note("load ", service);
        const auto found = items.find(service);
        if (found == items.end() || refusesLoading) return std::nullopt;
        return found->second;
    }
    void remove(const std::string& service) override {
        note("remove ", service);
        if (!refusesRemoval) items.erase(service);
    }

  protected:
    std::optional<std::string> add(const std::string& service, const std::string&,
                                   const Credentials& credentials) override {
        note("add ", service);
        if (!saveError.empty()) return saveError;
        items[service] = credentials;
        return std::nullopt;
    }

  private:
    void note(const char* what, const std::string& service) {
        log.append(what + QString::fromStdString(service));
    }
};

/// Accepts one password, then gives the results listed (success when there are none left).
class FakeRunner : public PrivilegedRunner {
  public:
    std::string password = "right";
    bool asks = true;
    bool onMainThread = false;
    std::deque<ApplyResult> results;
    std::function<void()> whileRunning;
    std::atomic<int> runs = 0;
    std::atomic<bool> ended = false;
    bool sawCredentials = false;
    QThread* thread = nullptr;

    ApplyResult run(const PrivilegedRequest&, const std::optional<Credentials>& credentials) override {
        ++runs;
        thread = QThread::currentThread();
        sawCredentials = credentials.has_value();
        if (whileRunning) whileRunning();
        ended = true;
        if (credentials && credentials->password.reveal() != password) return ApplyResult::passwordRejected();
        if (results.empty()) return ApplyResult::success();
        const ApplyResult result = results.front();
        results.pop_front();
        return result;
    }
    bool needsMainThread() const override { return onMainThread; }
    bool needsPassword() const override { return asks; }
};

class FakeOwnerCheck : public OwnerCheck {
  public:
    bool present = true;
    bool answer = true;
    bool answersNever = false;
    int asked = 0;
    std::string reason, fallback;
    double reuse = 0;
    bool available() const override { return present; }
    void evaluate(const std::string& why, const std::string& fallbackTitle, double reuseSeconds,
                  std::function<void(bool)> done) override {
        ++asked;
        reason = why;
        fallback = fallbackTitle;
        reuse = reuseSeconds;
        if (!answersNever) done(answer);
    }
};

/// Tools whose answers are held in the program; counts how many run at a time.
class FakeShell : public Shell {
  public:
    std::function<std::string(const std::string& path, const std::vector<std::string>& arguments)> answer;
    mutable std::atomic<int> calls = 0, running = 0, mostRunning = 0;
    std::string run(const std::string& path, const std::vector<std::string>& arguments) const override {
        ++calls;
        const int now = ++running;
        if (now > mostRunning) mostRunning = now;
        const std::string text = answer ? answer(path, arguments) : std::string();
        --running;
        return text;
    }
};

} // namespace corvane::testing
