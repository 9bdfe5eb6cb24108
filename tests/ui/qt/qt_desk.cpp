// A desk of Qt: the dialog is on the main thread, the person on another.

#include <QApplication>
#include <QDeadlineTimer>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>
#include <QTreeView>
#include <QWindow>
#include <atomic>
#include <future>
#include <map>
#include <mutex>
#include <queue>
#include <thread>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include "private_display.h"
#include "ui/desk.h"

namespace gantry::test {

namespace {

/// How long a display may take to answer, in milliseconds.
constexpr int kPatience = 100'000;

/// A display of this program's own with its application.
class Display : public ::testing::Environment {
 public:
  void SetUp() override {
    display_ = PrivateDisplay::Start(reason_);
    if (display_ == nullptr) GTEST_SKIP() << "no display: " << reason_;
    application_ = std::make_unique<QApplication>(count_, arguments_);
  }
  void TearDown() override {
    application_.reset();
    display_.reset();
  }

 private:
  std::unique_ptr<PrivateDisplay> display_;
  std::unique_ptr<QApplication> application_;
  std::string reason_;
  int count_ = 3;
  char name_[5] = "test", option_[10] = "-platform", value_[4] = "xcb";
  char* arguments_[4] = {name_, option_, value_, nullptr};
};

[[maybe_unused]] ::testing::Environment* const kDisplay =
    ::testing::AddGlobalTestEnvironment(new Display);

/// Does to a window what a window manager does.
class WindowManager {
 public:
  explicit WindowManager(QWidget& widget) : window_(static_cast<xcb_window_t>(widget.winId())) {}
  ~WindowManager() {
    free(xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    xcb_disconnect(connection_);
  }
  WindowManager(const WindowManager&) = delete;
  WindowManager& operator=(const WindowManager&) = delete;

  void Place(const QRect& place) {
    constexpr uint16_t kAll = XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                              XCB_CONFIG_WINDOW_HEIGHT;
    const int values[] = {place.x(), place.y(), place.width(), place.height()};
    xcb_configure_window(connection_, window_, kAll, values);
  }
  void SetMaximized(bool isMaximized) {
    const xcb_atom_t states[] = {Atom("_NET_WM_STATE_MAXIMIZED_HORZ"),
                                 Atom("_NET_WM_STATE_MAXIMIZED_VERT")};
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, Atom("_NET_WM_STATE"),
                        XCB_ATOM_ATOM, 32, isMaximized ? 2 : 0, states);
  }

 private:
  xcb_atom_t Atom(const std::string& name) {
    auto* const reply = xcb_intern_atom_reply(
        connection_,
        xcb_intern_atom(connection_, 0, static_cast<uint16_t>(name.size()), name.c_str()), nullptr);
    const xcb_atom_t atom = reply->atom;
    free(reply);
    return atom;
  }

  xcb_window_t window_;
  xcb_connection_t* connection_ = xcb_connect(nullptr, nullptr);
};

QWidget& Front() {
  QWidget* const front = QApplication::activeModalWidget();
  if (front == nullptr) throw std::runtime_error("There is no dialog");
  return *front;
}

QWidget* At(int id) { return Front().findChild<QWidget*>(QString::number(id)); }

QModelIndex IndexOf(const QTreeView& tree, const platform::TreePlace& place) {
  const QModelIndex parent = tree.model()->index(static_cast<int>(place.parent), 0);
  return place.child ? tree.model()->index(static_cast<int>(*place.child), 0, parent) : parent;
}

const std::map<std::string, Qt::Key> kKeys = {{"tab", Qt::Key_Tab},
                                              {"enter", Qt::Key_Return},
                                              {"escape", Qt::Key_Escape},
                                              {"space", Qt::Key_Space},
                                              {"down", Qt::Key_Down}};

/// What is still to be done on the main thread, under a lock that the thread sanitizer sees.
std::mutex posting;
std::queue<std::function<void()>> posted;

void DoPosted() {
  std::unique_lock lock(posting);
  const std::function<void()> action = std::move(posted.front());
  posted.pop();
  lock.unlock();
  action();
}

/// To be done on the main thread, in whatever loop that is.
void Post(const std::function<void()>& action) {
  const std::scoped_lock lock(posting);
  posted.push(action);
  QMetaObject::invokeMethod(
      qApp, [] { DoPosted(); }, Qt::QueuedConnection);
}

template <class Action>
auto Ask(const Action& action) {
  std::promise<decltype(action())> answer;
  Post([&] { answer.set_value(action()); });
  return answer.get_future().get();
}

class QtDesk : public Desk {
 public:
  void InHost(const std::function<void()>& action) override {
    Post(action);
    // An action that has opened a dialog isn't done, but what is asked now comes behind it.
    Ask([] { return true; });
  }

  std::string Title() override {
    return Ask([] { return Front().windowTitle().toStdString(); });
  }
  std::string Message() override {
    return Ask([] { return dynamic_cast<QMessageBox&>(Front()).text().toStdString(); });
  }
  int Focus() override {
    return Ask([] { return Front().focusWidget()->objectName().toInt(); });
  }
  bool ShowsCheck(int tree, const platform::TreePlace& place) override {
    return Ask([&] {
      const auto& view = Tree(tree);
      return IndexOf(view, place).data(Qt::CheckStateRole).toInt() == Qt::Checked;
    });
  }
  bool IsOpen(int tree, size_t parent) override {
    return Ask([&] { return Tree(tree).isExpanded(IndexOf(Tree(tree), {parent})); });
  }

  void Press(const std::string& key) override {
    InHost([key] {
      QWidget* const focus = Front().focusWidget();
      QTest::keyClick(focus != nullptr ? focus : &Front(), kKeys.at(key));
    });
  }
  void Type(const std::wstring& text) override {
    InHost([&] {
      // Qt's file dialog suggests names once it has read the folder, and Enter would take one.
      auto* const edit = qobject_cast<QLineEdit*>(Front().focusWidget());
      if (edit != nullptr) edit->setCompleter(nullptr);
      QTest::keyClicks(Front().focusWidget(), QString::fromStdWString(text));
    });
  }
  void Click(int id) override {
    InHost([id] { QTest::mouseClick(At(id), Qt::LeftButton); });
  }
  void ClickRow(int list, int row, bool isOneMore) override {
    InHost([=] {
      auto& view = dynamic_cast<QAbstractItemView&>(*At(list));
      QTest::mouseClick(view.viewport(), Qt::LeftButton,
                        isOneMore ? Qt::ControlModifier : Qt::NoModifier,
                        view.visualRect(view.model()->index(row, 0)).center());
    });
  }
  void ClickItem(int tree, const platform::TreePlace& place, bool onBox, int times) override {
    const auto click = [=] {
      QTreeView& view = Tree(tree);
      const QRect rect = view.visualRect(IndexOf(view, place));
      QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                        QPoint(rect.left() + (onBox ? 10 : 45), rect.center().y()));
    };
    for (int i = 0; i < times; ++i) InHost(click);
  }
  void DragEdge(int across, int down, platform::PixelSize by) override {
    const QMargins grown(across < 0 ? by.width : 0, down < 0 ? by.height : 0,
                         across > 0 ? by.width : 0, down > 0 ? by.height : 0);
    const QRect place = Ask([&] { return Front().geometry().marginsAdded(grown); });
    Post([place] { WindowManager(Front()).Place(place); });
    Until([place] { return Front().geometry() == place; });
  }
  /// The display tells of the size and of being put back in either order.
  void Maximize(bool isMaximized) override {
    if (isMaximized) normal_ = Ask([] { return Front().geometry(); });
    const QRect place = isMaximized ? QRect(0, 0, 1600, 1200) : normal_;
    if (!isMaximized) isSizeFirst_ = !isSizeFirst_;
    for (const bool isSize : {isSizeFirst_ && !isMaximized, !isSizeFirst_ || isMaximized}) {
      Post([=] {
        WindowManager manager(Front());
        isSize ? manager.Place(place) : manager.SetMaximized(isMaximized);
      });
      Until([=] {
        return isSize ? Front().geometry() == place : Front().isMaximized() == isMaximized;
      });
    }
  }

  /// Waits for the first dialog; false where there is none in the end.
  bool AwaitDialog() {
    EXPECT_TRUE(Ask([] { return Front().parentWidget() != nullptr; })) << "over the host's window";
    return Ask([] { return QTest::qWaitForWindowExposed(&Front(), kPatience); });
  }
  void CloseAll() {
    while (Ask([] { return QApplication::activeModalWidget() != nullptr; })) Press("escape");
  }

 private:
  static QTreeView& Tree(int id) { return dynamic_cast<QTreeView&>(*At(id)); }
  static void Until(const std::function<bool()>& holds) {
    const QDeadlineTimer end(kPatience);
    while (!Ask(holds)) ASSERT_FALSE(end.hasExpired());
  }

  QRect normal_;
  bool isSizeFirst_ = false;
};

}  // namespace

int AtDesk(platform::DialogHandler& dialog, const std::function<void(Desk&)>& work) {
  QWidget host;
  host.show();
  EXPECT_TRUE(QTest::qWaitForWindowExposed(&host, kPatience));
  std::atomic<bool> isDone = false;
  std::thread person([&] {
    QtDesk desk;
    if (desk.AwaitDialog()) work(desk);
    desk.CloseAll();
    isDone = true;
    Post([] {});
  });
  const int result =
      platform::DialogToolkit::Find()->Run(dialog, reinterpret_cast<void*>(host.winId()));
  while (!isDone) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  person.join();
  return result;
}

bool ShowsWaitCursor() {
  const QCursor* const cursor = QApplication::overrideCursor();
  return cursor != nullptr && cursor->shape() == Qt::WaitCursor;
}

}  // namespace gantry::test
