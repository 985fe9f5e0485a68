// Describes a VLAN: a new one, to be created now or kept as a plan, or an existing one to be changed.
#pragma once

#include "core/netconfig/planned_vlan.h"
#include "core/netconfig/vlan_info.h"

#include <QDialog>

#include <optional>
#include <string>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;

namespace corvane {

class AppModel;
class NoticeLines;

class VLANEditorSheet : public QDialog {
    Q_OBJECT

  public:
    class Mode {
      public:
        /// A new VLAN, on a given adapter's device or on one to choose.
        static Mode create(std::optional<std::string> parentDevice) {
            return {std::move(parentDevice), std::nullopt};
        }
        static Mode edit(VLANInfo vlan) { return {std::nullopt, std::move(vlan)}; }
        const std::optional<std::string>& parentDevice() const { return parentDevice_; }
        const std::optional<VLANInfo>& edited() const { return edited_; }

      private:
        Mode(std::optional<std::string> parent, std::optional<VLANInfo> edited)
            : parentDevice_(std::move(parent)), edited_(std::move(edited)) {}
        std::optional<std::string> parentDevice_;
        std::optional<VLANInfo> edited_;
    };

    VLANEditorSheet(const AppModel& model, const Mode& mode, QWidget* parent = nullptr);
    ~VLANEditorSheet() override;
    /// The user typed a name: it no longer follows the tag and the adapter.
    bool nameEdited() const { return nameEdited_; }

  signals:
    void createAsked(const std::string& name, const std::string& parentDevice, long tag);
    void planAsked(const PlannedVLAN& plan);
    void editAsked(const VLANInfo& old, const std::string& name, const std::string& parentDevice, long tag);

  private:
    void build();
    void proposeName();
    void judge();
    /// What keeps the fields from being taken, if anything.
    std::optional<QString> message() const;
    bool plans() const;
    /// A name that wasn't edited is the VLAN's whole one, whatever the field shows of it.
    std::string name() const;
    void finish();

    const AppModel& model_;
    Mode mode_;
    std::optional<std::string> parent_;
    bool nameEdited_;
    /// As the field took the name of the VLAN that is edited.
    QString filledName_;
    /// An untouched sheet says what is missing as a hint, not as an error.
    bool touched_ = false;
    QComboBox* adapter_;
    QLineEdit* tag_;
    QLineEdit* name_;
    QCheckBox* plan_ = nullptr;
    NoticeLines* message_;
    NoticeLines* words_;
    QPushButton* accept_ = nullptr;
};

} // namespace corvane
