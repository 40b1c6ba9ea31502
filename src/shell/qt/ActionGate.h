#pragma once
#include <QObject>
#include <functional>

namespace parlowen {

/// Lets one thing happen at a time: while a command, a question or a modal tool window is open, what the user
/// does elsewhere is dropped. A modal tool window acts at the level at which it was opened.
class ActionGate : public QObject {
  Q_OBJECT
 public:
  /// Keeps other actions out as long as it lives.
  class Hold {
   public:
    explicit Hold(ActionGate& gate) : gate_(gate) { gate_.Enter(); }
    ~Hold() { gate_.Leave(); }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

   private:
    ActionGate& gate_;
  };

  /// What every action is handed to; it runs it. Set before the first one.
  std::function<void(const std::function<void()>&)> perform;

  int Depth() const { return depth_; }

  /// Runs the action when nothing is open above `level`; false when it was dropped.
  template <typename F>
  bool Run(F&& action, int level = 0) {
    if (depth_ != level) return false;
    {
      Hold hold(*this);
      perform(action);
    }
    Q_EMIT Finished(level);
    return true;
  }

 Q_SIGNALS:
  void Began();              ///< the outermost action
  void Finished(int level);  ///< an action ran to its end

 private:
  void Enter();
  void Leave();
  int depth_ = 0;
};

}  // namespace parlowen
