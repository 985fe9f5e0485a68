// Asks every address of a service's subnet once, shows who answers, and adds those chosen to a group. Closing
// it ends the sweep.
#pragma once

#include "core/diagnostics/ping_group.h"

#include <QDialog>

#include <string>
#include <unordered_map>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QTreeView;

namespace corvane {

class AppModel;
class CopyLabel;
class ElidedLabel;
class FoundModel;
class NoticeLines;

class SweepSheet : public QDialog {
    Q_OBJECT

  public:
    /// `group` is the one proposed for what is found.
    SweepSheet(AppModel& model, const std::optional<Uuid>& group, QWidget* parent = nullptr);
    ~SweepSheet() override;

    /// "10.8.0.0/22"; empty when the texts are no address and mask.
    static QString subnetName(const std::string& address, const std::string& mask);

  public slots:
    void done(int result) override;

  signals:
    void hostsAsked(const corvane::Uuid& group, const std::vector<corvane::PingTarget>& targets);
    void groupAsked(const std::string& name, const std::vector<corvane::PingTarget>& targets);

  private:
    struct Subnet {
        QString title;
        std::string device, address, mask;
        std::size_t count = 0;
        /// Why it can't be swept; empty when it can.
        QString refusal;
        friend bool operator==(const Subnet&, const Subnet&) = default;
    };
    void build();
    QWidget* buildFound();
    std::vector<Subnet> subnetsNow() const;
    /// The services and groups to choose from, while no list is open and no sweep runs.
    void fill();
    void fillGroups();
    /// What follows from all of it: texts, bar, what may be pressed.
    void judge();
    void startOrStop();
    void add();
    /// What is known of addresses beforehand.
    void readNotes();
    QString stateWords() const;

    AppModel& model_;
    std::optional<Uuid> group_;
    std::vector<Subnet> subnets_;
    /// Of the sweep that this sheet began; the model's may be an older one's.
    std::optional<Subnet> swept_;
    bool stopped_ = false;
    std::unordered_map<std::string, QString> notes_;
    FoundModel* found_;
    QComboBox *services_, *groups_;
    ElidedLabel* subnet_;
    QPushButton *start_, *add_;
    QProgressBar* bar_;
    QLabel* words_;
    NoticeLines* notices_;
    CopyLabel* remedy_;
    QTreeView* list_;
    QCheckBox* all_;
};

} // namespace corvane
