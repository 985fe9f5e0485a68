// Edits a buffer of one global preset: which preset each service gets, in which order, who carries internet,
// and which hosts are then watched.
#pragma once

#include "core/netconfig/global_preset.h"

#include <QDialog>

#include <string>
#include <vector>

class QComboBox;
class QGridLayout;
class QLineEdit;
class QPushButton;

namespace corvane {

class AppModel;
class NoticeLines;
class RowList;
class StateDot;

class GlobalEditor : public QDialog {
    Q_OBJECT

  public:
    GlobalEditor(const AppModel& model, const GlobalPreset& global, bool isNew, QWidget* parent = nullptr);
    ~GlobalEditor() override;
    /// As it would be saved now.
    const GlobalPreset& global() const { return global_; }

  signals:
    void saved(const GlobalPreset& global, bool applyNow);

  private:
    struct ServiceLine {
        std::string service;
        StateDot* state;
        QComboBox* choice;
    };
    QWidget* buildServices();
    QWidget* buildOrder();
    void build();
    /// The machine's services and those of the presets in the library, each once.
    std::vector<std::string> servicesToOffer() const;
    /// Draws everything from the buffer and the model.
    void fill();
    void fillInternet();
    void fillPing();
    /// What follows from the buffer: the order, the words, what may be pressed.
    void judge();
    void moveMember(const Uuid& id, const std::optional<Uuid>& before);
    void save(bool applyNow);

    const AppModel& model_;
    GlobalPreset global_;
    bool isNew_;
    bool touched_ = false;
    QLineEdit* name_;
    QGridLayout* services_ = nullptr;
    std::vector<ServiceLine> lines_;
    RowList* order_ = nullptr;
    QPushButton* up_ = nullptr;
    QPushButton* down_ = nullptr;
    QComboBox *internet_, *ping_;
    NoticeLines* words_ = nullptr;
    NoticeLines* notices_ = nullptr;
    QPushButton* saveAndApply_ = nullptr;
};

} // namespace corvane
