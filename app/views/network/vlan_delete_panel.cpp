#include "app/views/network/vlan_delete_panel.h"

#include "app/views/widgets/display_text.h"
#include "core/support/text.h"

#include <QDialogButtonBox>
#include <QPushButton>

namespace corvane {

VLANDeletePanel::VLANDeletePanel(const VLANInfo& vlan, std::size_t presets, QWidget* parent) : Panel(parent) {
    setMessage(tr("Delete VLAN %1?").arg(inQuotes(vlan.name)));
    setBadge(symbols::Symbol::warning, theme::Tone::attention);
    QString about = tr("Its network service goes away, and with it what is reached through tag %1 on %2.")
                        .arg(vlan.tag)
                        .arg(oneLine(vlan.parentDevice));
    const auto add = [this](const QString& text, QDialogButtonBox::ButtonRole role, bool deletePresets) {
        auto* button = buttons().addButton(text, role);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, deletePresets] {
            emit decided(deletePresets);
            accept();
        });
        return button;
    };
    if (presets == 0) {
        add(tr("Delete VLAN"), QDialogButtonBox::DestructiveRole, false);
    } else {
        about += QLatin1Char('\n') + (presets == 1 ? tr("There is 1 preset for it.")
                                                   : tr("There are %1 presets for it.").arg(presets));
        add(tr("Also delete its presets"), QDialogButtonBox::DestructiveRole, true);
        add(tr("Keep its presets instead"), QDialogButtonBox::DestructiveRole, false);
    }
    setInformativeText(about);
    auto* cancel = buttons().addButton(QDialogButtonBox::Cancel);
    cancel->setDefault(true);
    cancel->setFocus();
}

} // namespace corvane
