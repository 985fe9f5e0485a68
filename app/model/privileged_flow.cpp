#include "app/model/privileged_flow.h"

namespace corvane {

namespace {

bool isSaved(Keychain& keychain) {
    return keychain.exists(Keychain::currentService) || keychain.exists(Keychain::olderService);
}

std::optional<Credentials> loadSaved(Keychain& keychain) {
    auto credentials = keychain.load(Keychain::currentService);
    return credentials ? credentials : keychain.load(Keychain::olderService);
}

void removeAll(Keychain& keychain) {
    keychain.remove(Keychain::currentService);
    keychain.remove(Keychain::olderService);
}

} // namespace

PrivilegedFlow::PrivilegedFlow(Host& host, PasswordPrompt& prompt, Alerts& alerts, QObject* parent)
    : QObject(parent), host_(host), prompt_(prompt), alerts_(alerts), gate_(*host.ownerCheck) {}

bool PrivilegedFlow::run(const Job& job) {
    if (busy_) return false;
    const QPointer<PrivilegedFlow> alive(this);
    setBusy(true);
    const ApplyResult result = perform(job);
    if (!alive) return result.kind() == ApplyResult::Kind::success;
    setBusy(false);
    const QString keychainProblem = std::exchange(keychainProblem_, {});
    switch (result.kind()) {
    case ApplyResult::Kind::success:
        emit succeeded(job.success);
        if (alive && !keychainProblem.isEmpty()) emit keychainFailed(keychainProblem);
        return true;
    case ApplyResult::Kind::failed:
        emit failed();
        if (!alive) return false;
        alerts_.show(Alerts::Kind::warning, job.failure, QString::fromStdString(result.message()));
        return false;
    case ApplyResult::Kind::cancelled:
    case ApplyResult::Kind::passwordRejected:
        return false;
    }
    return false;
}

ApplyResult PrivilegedFlow::perform(const Job& job) {
    const QPointer<PrivilegedFlow> alive(this);
    const PrivilegedRequest request{job.commands, job.purpose.toStdString(), std::nullopt};
    if (!host_.privileged->needsPassword()) return runScript(request, std::nullopt);

    Keychain& keychain = *host_.keychain;
    if (!background_.await([&keychain] { return isSaved(keychain); }))
        return alive ? askAndPerform(job, request, false) : ApplyResult::cancelled();
    if (!alive || !gate_.authorize(request.purpose) || !alive) return ApplyResult::cancelled();

    const auto saved = background_.await([&keychain] { return loadSaved(keychain); });
    if (!alive) return ApplyResult::cancelled();
    if (!saved) return askAndPerform(job, request, false);
    const ApplyResult result = runScript(request, saved);
    if (result.kind() != ApplyResult::Kind::passwordRejected || !alive) return result;
    // Never tried again.
    removeSaved();
    return alive ? askAndPerform(job, request, true) : ApplyResult::cancelled();
}

ApplyResult PrivilegedFlow::askAndPerform(const Job& job, const PrivilegedRequest& request, bool retry) {
    const QPointer<PrivilegedFlow> alive(this);
    for (;; retry = true) {
        const auto answer = prompt_.ask(job.purpose, retry);
        if (!answer || !alive) return ApplyResult::cancelled();
        const ApplyResult result = runScript(request, answer->credentials);
        if (!alive) return result;
        if (result.kind() == ApplyResult::Kind::passwordRejected) continue;
        if (result.kind() == ApplyResult::Kind::success && answer->remember) {
            const auto problem = background_.await([&] { return host_.keychain->save(answer->credentials); });
            if (!alive) return result;
            if (problem) keychainProblem_ = QString::fromStdString(*problem);
            setHasSavedPassword(!problem);
        }
        return result;
    }
}

ApplyResult PrivilegedFlow::runScript(const PrivilegedRequest& request,
                                      const std::optional<Credentials>& credentials) {
    PrivilegedRunner& runner = *host_.privileged;
    if (runner.needsMainThread()) return runner.run(request, credentials);
    return background_.await([&] { return runner.run(request, credentials); });
}

void PrivilegedFlow::removeSaved() {
    const QPointer<PrivilegedFlow> alive(this);
    Keychain& keychain = *host_.keychain;
    const bool stillThere = background_.await([&keychain] {
        removeAll(keychain);
        return isSaved(keychain);
    });
    if (!alive) return;
    setHasSavedPassword(stillThere);
    if (stillThere)
        keychainProblem_ =
            QStringLiteral("The saved password was rejected and couldn't be removed from the keychain.");
}

void PrivilegedFlow::lookForSavedPassword() {
    Keychain& keychain = *host_.keychain;
    background_.start([&keychain] { return isSaved(keychain); },
                      [this](bool saved) { setHasSavedPassword(saved); });
}

void PrivilegedFlow::forgetSavedPassword() {
    Keychain& keychain = *host_.keychain;
    background_.start(
        [&keychain] {
            removeAll(keychain);
            return isSaved(keychain);
        },
        [this](bool stillThere) {
            setHasSavedPassword(stillThere);
            if (stillThere)
                emit keychainFailed(
                    QStringLiteral("The saved password couldn't be removed from the keychain."));
            else
                emit passwordForgotten();
        });
}

void PrivilegedFlow::setBusy(bool busy) {
    busy_ = busy;
    emit busyChanged();
}

void PrivilegedFlow::setHasSavedPassword(bool has) {
    if (has == hasSavedPassword_) return;
    hasSavedPassword_ = has;
    emit passwordStateChanged();
}

} // namespace corvane
