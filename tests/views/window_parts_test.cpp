// Parts of the window by themselves: the password dialog, alerts, where a window comes back, rows changed one
// by one.
#include "app/views/widgets/row_sync.h"
#include "app/views/window/alert_box.h"
#include "app/views/window/password_dialog.h"
#include "app/views/window/window_place.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

using namespace corvane;

class WindowPartsTest : public QObject {
    Q_OBJECT

  private slots:
    void passwordDialogAsksAsItShould() {
        PasswordPanel panel("apply “Stage” to Ethernet", false, "operator", "One more line.");
        panel.show();
        QVERIFY(QTest::qWaitForWindowActive(&panel));
        auto* user = panel.findChild<QLineEdit*>("userName");
        auto* password = panel.findChild<QLineEdit*>("password");
        auto* remember = panel.findChild<QCheckBox*>();
        QCOMPARE(panel.windowTitle(), "Wendrel");
        QCOMPARE(panel.message(), "Administrator password");
        QCOMPARE(panel.informativeText(),
                 "Wendrel needs an administrator password to apply “Stage” to Ethernet");
        QCOMPARE(panel.findChild<QLabel*>("help")->text(), "One more line.");
        QCOMPARE(user->text(), "operator");
        QCOMPARE(user->placeholderText(), "User name");
        QCOMPARE(password->placeholderText(), "Password");
        QCOMPARE(password->echoMode(), QLineEdit::Password);
        QCOMPARE(QApplication::focusWidget(), password);
        QCOMPARE(remember->text(), "Remember in Keychain");
        QVERIFY(remember->isChecked());
        QCOMPARE(user->width(), 260);
        QCOMPARE(password->width(), 260);
        QPushButton* standard = nullptr;
        for (auto* button : panel.findChildren<QPushButton*>()) {
            if (button->isDefault()) standard = button;
        }
        QVERIFY(standard);
        QCOMPARE(standard->text(), "Apply");

        password->insert("päss “word”");
        const QString typed = password->text();
        remember->setChecked(false);
        const auto answer = panel.takeAnswer();
        QVERIFY(answer);
        QCOMPARE(answer->credentials.user, "operator");
        QCOMPARE(QString::fromUtf8(answer->credentials.password.reveal().data(),
                                   qsizetype(answer->credentials.password.reveal().size())),
                 "päss “word”");
        QVERIFY(!answer->remember);
        QVERIFY(password->text().isEmpty());
        // The characters are gone even where a copy still points at the field's old buffer.
        QVERIFY(typed.trimmed().isEmpty());
        QVERIFY2(!panel.takeAnswer(), "no password, no answer");
        QCOMPARE(PasswordPanel("x", true, {}, {}).message(), "Password incorrect — try again");
    }

    void promptAnswersOnlyOnApply() {
        PasswordDialog prompt("operator", {});
        const auto press = [](const QString& text, const QString& password) {
            QTimer::singleShot(50, qApp, [text, password] {
                auto* panel = QApplication::activeModalWidget();
                panel->findChild<QLineEdit*>("password")->setText(password);
                for (auto* button : panel->findChildren<QPushButton*>()) {
                    if (button->text() == text) return button->click();
                }
            });
        };
        press("Cancel", "secret");
        QVERIFY(!prompt.ask("x", false));
        press("Apply", {});
        QVERIFY(!prompt.ask("x", false));
        press("Apply", "secret");
        const auto answer = prompt.ask("x", false);
        QVERIFY(answer && answer->remember && answer->credentials.password.reveal() == "secret");
    }

    void alertsShowHostileAndLongTexts() {
        AlertPanel plain(Alerts::Kind::informational, "“X” can't be applied:\n\nFirst.\nSecond.", {});
        QCOMPARE(plain.windowTitle(), "Wendrel");
        QCOMPARE(plain.message(), "“X” can't be applied:");
        QCOMPARE(plain.informativeText(), "First.\nSecond.");
        AlertPanel hostile(Alerts::Kind::warning, "Couldn't apply “<b>”.",
                           QString(1'000'000, 'x') + "<img src=x>");
        for (const auto* label : hostile.findChildren<QLabel*>())
            QVERIFY(label->pixmap(Qt::ReturnByValue).isNull() ? label->textFormat() == Qt::PlainText : true);
        QVERIFY(hostile.informativeText().size() < 10'000);
        hostile.show();
        QVERIFY(hostile.height() < 500);
    }

    void windowsComeBackOnScreen_data() {
        QTest::addColumn<QRect>("kept");
        QTest::addColumn<QRect>("expected");
        QTest::newRow("stays") << QRect(100, 100, 900, 600) << QRect(100, 100, 900, 600);
        QTest::newRow("second screen") << QRect(2000, 100, 900, 600) << QRect(2000, 100, 900, 600);
        QTest::newRow("screen gone") << QRect(9000, 5000, 900, 600) << QRect(1020, 480, 900, 600);
        QTest::newRow("half out") << QRect(-500, -200, 900, 600) << QRect(0, 32, 900, 600);
        QTest::newRow("too large") << QRect(0, 0, 5000, 4000) << QRect(0, 32, 1920, 1048);
    }
    void windowsComeBackOnScreen() {
        QFETCH(QRect, kept);
        QFETCH(QRect, expected);
        QCOMPARE(movedOnScreen(kept, {QRect(0, 0, 1920, 1080), QRect(1920, 0, 1280, 1024)}), expected);
        QCOMPARE(WindowPlace::parse(WindowPlace{kept, true}.text()), std::optional(WindowPlace{kept, true}));
    }
    void brokenPlacesAreNone() {
        for (const char* text :
             {"", "1 2 3", "a b c d e", "0 0 10 10 0", "0 0 99999999999 600 0", "0 0 900 600 0 0"}) {
            QVERIFY2(!WindowPlace::parse(text), text);
        }
    }

    void rowsChangeOneByOne() {
        struct Item {
            int key = 0;
            QString text;
            bool operator==(const Item&) const = default;
        };
        std::vector<Item> rows{{1, "a"}, {2, "b"}, {3, "c"}, {4, "d"}};
        QStringList told;
        RowChanges changes;
        changes.beginInsert = [&](int row) { told << QString("+%1").arg(row); };
        changes.beginRemove = [&](int row) { told << QString("-%1").arg(row); };
        changes.beginMove = [&](int from, int to) { told << QString("%1>%2").arg(from).arg(to); };
        changes.changed = [&](int row) { told << QString("~%1").arg(row); };
        changes.endInsert = changes.endRemove = changes.endMove = [] {};
        const std::vector<Item> wanted{{4, "d"}, {1, "A"}, {5, "e"}, {3, "c"}};
        syncRows(rows, wanted, changes);
        QVERIFY(rows == wanted);
        QCOMPARE(told, (QStringList{"-1", "2>0", "~1", "+2"}));
        told.clear();
        syncRows(rows, wanted, changes);
        QVERIFY(told.isEmpty());
    }
};

QTEST_MAIN(WindowPartsTest)
#include "window_parts_test.moc"
