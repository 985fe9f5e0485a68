#include "app/views/window/main_window.h"

#include "app/model/app_model.h"
#include "app/views/widgets/symbols.h"
#include "app/views/window/detail_area.h"
#include "app/views/window/notice_strip.h"
#include "app/views/window/sidebar.h"
#include "app/views/window/window_menus.h"
#include "app/views/window/window_place.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QSplitter>
#include <QVBoxLayout>

namespace corvane {
namespace {

using namespace Qt::StringLiterals;

constexpr QSize firstSize(1080, 720);
/// The smallest window in which every page still works.
constexpr QSize smallestSize(900, 600);
constexpr int firstSidebarWidth = 250;
constexpr auto placeKey = "window.place";
constexpr auto sidebarWidthKey = "window.sidebarWidth";

} // namespace

MainWindow::MainWindow(AppModel& model, QWidget* parent)
    : QMainWindow(parent), model_(model), commands_(model, this), splitter_(new QSplitter(this)),
      sidebar_(new Sidebar(model, commands_, splitter_)),
      detail_(new DetailArea(model, commands_, splitter_)), notices_(new NoticeStrip(model, this)) {
    setWindowTitle(u"Wendrel"_s);
    setWindowIcon(symbols::application());
    setMinimumSize(smallestSize);

    splitter_->setChildrenCollapsible(false);
    splitter_->setStretchFactor(0, 0);
    splitter_->setStretchFactor(1, 1);
    auto* ground = new QWidget(this);
    auto* layout = new QVBoxLayout(ground);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(splitter_, 1);
    layout->addWidget(notices_);
    setCentralWidget(ground);

    menus_ = new WindowMenus(*this, model_, commands_);
    connect(sidebar_, &Sidebar::opened, detail_, &DetailArea::focusPage);
    restorePlace();
    sidebar_->setFocus();
}

MainWindow::~MainWindow() {
    // The pages call the commands even while they go.
    delete takeCentralWidget();
}

void MainWindow::present() {
    if (isMinimized()) showNormal();
    show();
    raise();
    activateWindow();
}

void MainWindow::restorePlace() {
    QList<QRect> screens;
    for (const auto* screen : QGuiApplication::screens()) screens << screen->availableGeometry();
    auto& defaults = *model_.host().defaults;
    const auto place = WindowPlace::parse(defaults.value(QString::fromLatin1(placeKey)).toByteArray());
    if (place) {
        setGeometry(movedOnScreen(place->normal, screens));
        if (place->maximized) setWindowState(windowState() | Qt::WindowMaximized);
    } else {
        resize(screens.isEmpty() ? firstSize : firstSize.boundedTo(screens.first().size()));
    }
    bool kept = false;
    const int width = defaults.value(QString::fromLatin1(sidebarWidthKey)).toInt(&kept);
    const int sidebarWidth = kept ? qBound(180, width, 480) : firstSidebarWidth;
    splitter_->setSizes({sidebarWidth, this->width() - sidebarWidth});
}

void MainWindow::savePlace() {
    auto& defaults = *model_.host().defaults;
    const bool special = isMaximized() || isFullScreen();
    const WindowPlace place{special ? normalGeometry() : geometry(), isMaximized()};
    defaults.setValue(QString::fromLatin1(placeKey), place.text());
    // A window that was never shown has no sizes of its own yet; a hidden sidebar has none either.
    if (sidebar_->isVisible())
        defaults.setValue(QString::fromLatin1(sidebarWidthKey), splitter_->sizes().first());
}

void MainWindow::closeEvent(QCloseEvent* event) {
    savePlace();
    QMainWindow::closeEvent(event);
}

} // namespace corvane
