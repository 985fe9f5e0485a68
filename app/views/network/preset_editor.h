// Edits a buffer of one preset; what is wrong or odd stands under each field while it is typed. The buffer
// follows the model only as long as nobody has touched it.
#pragma once

#include "core/netconfig/network_preset.h"

#include <QDialog>
#include <QSet>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace corvane {

class AppModel;
class NoticeLines;
class SegmentedControl;

class PresetEditor : public QDialog {
    Q_OBJECT

  public:
    PresetEditor(const AppModel& model, const NetworkPreset& preset, bool isNew, QWidget* parent = nullptr);
    ~PresetEditor() override;
    /// As it would be saved now.
    const NetworkPreset& preset() const { return preset_; }

  signals:
    void saved(const NetworkPreset& preset, bool applyNow);

  private:
    void build();
    /// Draws the fields from the buffer.
    void fill();
    void fillServices();
    /// Takes the fields into the buffer and says what there is to say.
    void take(QWidget* field);
    void judge();
    void save(bool applyNow);
    void modelChanged();

    const AppModel& model_;
    NetworkPreset preset_;
    bool isNew_;
    bool touched_ = false;
    /// Fields of a new preset say what is wrong only once the user has been there.
    QSet<const QWidget*> visited_;

    QLineEdit* name_;
    QComboBox* service_;
    SegmentedControl* mode_;
    QLineEdit* ip_;
    QLineEdit* subnet_;
    QLineEdit* router_;
    QLineEdit* dns_;
    NoticeLines* serviceNotices_ = nullptr;
    NoticeLines* ipNotices_ = nullptr;
    NoticeLines* subnetNotices_ = nullptr;
    NoticeLines* routerNotices_ = nullptr;
    NoticeLines* dnsNotices_ = nullptr;
    NoticeLines* summary_ = nullptr;
    QPushButton* saveAndApply_ = nullptr;
};

} // namespace corvane
