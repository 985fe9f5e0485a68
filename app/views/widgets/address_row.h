// Several values side by side, each copied by a click; those for which there is no room stand behind a "+2".
#pragma once

#include <QStringList>
#include <QWidget>

#include <vector>

namespace corvane {

class CopyLabel;

class AddressRow : public QWidget {
    Q_OBJECT

  public:
    /// `caption` names one of the values when it is read aloud: "DNS server".
    explicit AddressRow(const QString& caption, QWidget* parent = nullptr);
    void setValues(const QStringList& values);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void place();
    QString caption_;
    QStringList values_;
    /// At least one, which shows that there is no value.
    std::vector<CopyLabel*> labels_;
    CopyLabel* rest_;
};

} // namespace corvane
