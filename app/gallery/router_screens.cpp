// The screens of the video router, against a router that only exists for the picture.
#include "app/gallery/screens.h"

#include "app/clients/videohub_client.h"
#include "app/views/tools/router/port_list.h"
#include "app/views/tools/router/router_actions.h"
#include "app/views/tools/router/router_page.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTcpServer>
#include <QTcpSocket>

namespace corvane::gallery {
namespace {

using namespace Qt::StringLiterals;

constexpr QSize usual(1080, 720), small(900, 600), large(1680, 1020);

/// Tells of itself when a client comes, and after that says only what it is made to say.
class PictureRouter {
  public:
    explicit PictureRouter(const QByteArray& dump) {
        QObject::connect(&server_, &QTcpServer::newConnection, &server_, [this, dump] {
            client_ = server_.nextPendingConnection();
            client_->write(dump);
        });
        if (!server_.listen(QHostAddress::LocalHost)) qWarning("%s", qPrintable(server_.errorString()));
    }
    quint16 port() const { return server_.serverPort(); }
    void say(const QByteArray& block) { client_->write(block); }
    void leave() {
        server_.close();
        client_->disconnectFromHost();
    }

  private:
    QTcpServer server_;
    QTcpSocket* client_ = nullptr;
};

QByteArray device(const char* present, const char* model = nullptr, int inputs = 0, int outputs = 0) {
    QByteArray block = "PROTOCOL PREAMBLE:\nVersion: 2.7\n\nVIDEOHUB DEVICE:\nDevice present: ";
    block.append(present).append('\n');
    if (model) {
        block.append("Model name: ").append(model);
        block += "\nVideo inputs: " + QByteArray::number(inputs) +
                 "\nVideo outputs: " + QByteArray::number(outputs) + '\n';
    }
    return block + '\n';
}

QByteArray labels(const char* header, const QStringList& names, int count, const char* rest) {
    QByteArray block = QByteArray(header) + ":\n";
    for (int i = 0; i < count; ++i) {
        const QByteArray name =
            i < names.size() ? names[i].toUtf8() : QByteArray(rest) + ' ' + QByteArray::number(i + 1);
        block += QByteArray::number(i) + ' ' + name + '\n';
    }
    return block + '\n';
}

QByteArray router(int size) {
    const QStringList inputs{u"Cam 1 Stage L"_s, u"Cam 2 Stage R"_s,  u"Cam 3 Crane"_s, u"Cam 4 RF"_s,
                             u"Playback A"_s,    u"Playback B"_s,     u"Graphics"_s,    u"Lyrics"_s,
                             u"Switcher PGM"_s,  u"Switcher Clean"_s, u"Test pattern"_s};
    const QStringList outputs{u"LED wall centre"_s, u"LED wall left"_s,  u"LED wall right"_s,
                              u"Delay screens"_s,   u"Foyer"_s,          u"Recorder 1"_s,
                              u"Recorder 2"_s,      u"Stream encoder"_s, u"Prompter"_s,
                              u"Backstage"_s,       u"Multiview in"_s};
    QByteArray dump =
        device("true", size == 12 ? "Blackmagic Videohub 12x12 12G" : "Universal Videohub", size, size);
    dump += labels("INPUT LABELS", inputs, size, "Input") + labels("OUTPUT LABELS", outputs, size, "Output");
    QByteArray routes = "VIDEO OUTPUT ROUTING:\n", locks = "VIDEO OUTPUT LOCKS:\n";
    for (int i = 0; i < size; ++i) {
        const int source = i < 4 ? 8 : i < 12 ? (i * 5 + 2) % 12 : i % 9 == 0 ? 3 : i;
        routes += QByteArray::number(i) + ' ' + QByteArray::number(source) + '\n';
        locks += QByteArray::number(i) + (i % 12 == 5 ? " O\n" : i % 12 == 7 || i == 20 ? " L\n" : " U\n");
    }
    return dump + routes + '\n' + locks + '\n';
}

void press(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
           const QString& text = {}) {
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, modifiers, text);
        QApplication::sendEvent(&widget, &event);
    }
    Stage::pass(20);
}

PortList& list(Stage& stage, const char* name) {
    return *stage.window().findChild<PortList*>(QLatin1String(name));
}

const RouterActions& actions(Stage& stage) {
    return stage.window().findChild<RouterPage*>()->actions();
}

void connectTo(Stage& stage, const PictureRouter& router, QSize size) {
    stage.open(SidebarItem::tool(Tool::videohub), size);
    stage.model().videohub().connect(u"127.0.0.1"_s, router.port());
    Stage::pass(300);
}

/// Output by output: the arrow keys go on to each.
void chooseOutputs(Stage& stage, int first, int count = 1) {
    auto& outputs = list(stage, "outputs");
    outputs.setFocus(Qt::TabFocusReason);
    outputs.choose(outputs.model()->index(first, 0));
    for (int i = 1; i < count; ++i) press(outputs, Qt::Key_Down, Qt::ShiftModifier);
}

void pickSource(Stage& stage, int steps) {
    auto& sources = list(stage, "sources");
    sources.setFocus(Qt::TabFocusReason);
    for (int i = 0; i < steps; ++i) press(sources, Qt::Key_Right);
}

using Use = std::function<void(Stage&, PictureRouter&)>;

Screen against(const char* name, const QByteArray& dump, const Use& use = {}, QSize size = usual) {
    return {name, [dump, use, size](Stage& stage) {
                PictureRouter router(dump);
                connectTo(stage, router, size);
                if (use) use(stage, router);
                Stage::pass(100);
                return stage.picture();
            }};
}

QPixmap connecting(Stage& stage) {
    stage.open(SidebarItem::tool(Tool::videohub));
    // The picture is taken before the name is looked up.
    stage.model().videohub().connect(u"videohub.rack"_s);
    for (int i = 0; i < 5; ++i) QApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    return stage.picture();
}

QPixmap failed(Stage& stage) {
    stage.open(SidebarItem::tool(Tool::videohub));
    stage.model().videohub().connect(u"127.0.0.9"_s);
    Stage::pass(300);
    return stage.picture();
}

QPixmap empty(Stage& stage, QSize size) {
    stage.open(SidebarItem::tool(Tool::videohub), size);
    return stage.picture();
}

void take(Stage& stage, PictureRouter&) {
    chooseOutputs(stage, 4);
    pickSource(stage, 2);
}

void several(Stage& stage, PictureRouter&) {
    chooseOutputs(stage, 1, 3);
    pickSource(stage, 1);
}

void refused(Stage& stage, PictureRouter& router) {
    chooseOutputs(stage, 7);
    pickSource(stage, 1);
    press(list(stage, "sources"), Qt::Key_Return);
    actions(stage).take->trigger();
    router.say("NAK\n\n");
}

void pending(Stage& stage, PictureRouter&) {
    chooseOutputs(stage, 3);
    pickSource(stage, 1);
    actions(stage).take->trigger();
    chooseOutputs(stage, 9);
    actions(stage).lock->trigger();
    Stage::pass(400);
}

void search(Stage& stage, PictureRouter&) {
    auto& outputs = list(stage, "outputs");
    outputs.setFocus();
    for (const QChar c : u"wall"_s) press(*QApplication::focusWidget(), 0, Qt::NoModifier, c);
    for (const QChar c : u"xyz"_s) {
        if (c == u'x') list(stage, "sources").setFocus();
        press(*QApplication::focusWidget(), 0, Qt::NoModifier, c);
    }
}

void renaming(Stage& stage, PictureRouter&) {
    chooseOutputs(stage, 4);
    list(stage, "outputs").beginRename();
}

} // namespace

std::vector<Screen> routerScreens() {
    return {
        {"router-empty", [](Stage& stage) { return empty(stage, usual); }},
        {"router-empty-small", [](Stage& stage) { return empty(stage, small); }},
        {"router-connecting", connecting},
        {"router-failed", failed},
        against("router-no-device", device("false")),
        against("router-firmware", device("needs_update")),
        against("router-waiting", "PROTOCOL PREAMBLE:\nVersion: 2.7\n\n"),
        against("router", router(12), take),
        against("router-40", router(40), take),
        against("router-288", router(288), take),
        against("router-288-large", router(288), take, large),
        against("router-several", router(12), several),
        against("router-refused", router(12), refused),
        against("router-pending", router(12), pending),
        against("router-locked", router(40),
                [](Stage& stage, PictureRouter&) {
                    actions(stage).showLocked->trigger();
                    chooseOutputs(stage, 1);
                    actions(stage).force->trigger();
                }),
        against("router-uses-of-source", router(40),
                [](Stage& stage, PictureRouter&) {
                    chooseOutputs(stage, 0);
                    actions(stage).showUses->trigger();
                }),
        against("router-search", router(40), search),
        against("router-renaming", router(12), renaming),
        against("router-lost", router(12),
                [](Stage& stage, PictureRouter& router) {
                    chooseOutputs(stage, 4);
                    router.leave();
                    Stage::pass(2200);
                }),
        against("router-small", router(12), take, small),
        against("router-small-288", router(288), take, small),
        against("router-small-refused", router(12), refused, small),
        against(
            "router-small-ping", router(12),
            [](Stage& stage, PictureRouter& router) {
                stage.model().setShowPing(true);
                Stage::pass(100);
                take(stage, router);
            },
            small),
    };
}

} // namespace corvane::gallery
