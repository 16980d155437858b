// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>
#include <coroutine>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace quayline {

namespace internal {

// What resumes a suspended coroutine. It does so once, from the event loop and never from inside
// the emitter. It is destroyed with the coroutine's frame, and then disconnects its signals and
// drops its timers and a resume that is already queued.
class Waiter final : public QObject {
  Q_OBJECT

 public:
  void Finish();
  void FinishAfter(std::chrono::milliseconds time);
  bool IsFinished() const { return finished_; }
  void Suspend(std::coroutine_handle<> handle) { handle_ = handle; }

 private:
  void ResumeFromEventLoop();

  bool finished_ = false;
  std::coroutine_handle<> handle_;
};

}  // namespace internal

// Waits until a condition holds. The condition is checked at once and at each of the signals named
// with WokenBy(): nothing polls.
//
//   bool loaded = co_await Until([&] { return !page.IsBusy(); })
//                     .WokenBy(&page, &Page::busyChanged)
//                     .AtMost(std::chrono::seconds(5));
class [[nodiscard]] Until {
 public:
  explicit Until(std::function<bool()> condition)
      : condition_(std::make_shared<std::function<bool()>>(std::move(condition))),
        waiter_(std::make_unique<internal::Waiter>()) {}

  template <typename Object, typename Signal>
  Until&& WokenBy(Object* object, Signal signal) && {
    QObject::connect(object, signal, waiter_.get(),
                     [waiter = waiter_.get(), condition = condition_] {
                       if (!waiter->IsFinished() && (*condition)()) {
                         waiter->Finish();
                       }
                     });
    return std::move(*this);
  }

  Until&& AtMost(std::chrono::milliseconds time) && {
    limit_ = time;
    return std::move(*this);
  }

  bool await_ready() const { return (*condition_)(); }
  void await_suspend(std::coroutine_handle<> handle) {
    waiter_->Suspend(handle);
    if (limit_) {
      waiter_->FinishAfter(*limit_);
    }
  }
  // True when the condition holds, false when the time ran out.
  bool await_resume() const { return (*condition_)(); }

 private:
  std::shared_ptr<std::function<bool()>> condition_;
  std::unique_ptr<internal::Waiter> waiter_;
  std::optional<std::chrono::milliseconds> limit_;
};

// Returns to the event loop for the given time.
inline Until Sleep(std::chrono::milliseconds time) {
  return Until([] { return false; }).AtMost(time);
}

// Waits for one value that a callback delivers.
//
//   OneShot<QVariant> answer; page->runJavaScript(code, answer.Callback()); std::optional<QVariant>
//   value = co_await answer;   // nothing: the wait was cancelled
template <typename T>
class [[nodiscard]] OneShot {
 public:
  OneShot() : state_(std::make_shared<State>()) {}

  // May be called at any time, also after the wait has ended. Only the first call counts.
  std::function<void(T)> Callback() const {
    return [weak = std::weak_ptr<State>(state_)](T value) {
      if (auto state = weak.lock(); state && !state->waiter.IsFinished()) {
        state->value.emplace(std::move(value));
        state->waiter.Finish();
      }
    };
  }

  // Ends the wait as soon as `condition` holds: it is checked now and at each `signal`.
  template <typename Object, typename Signal>
  void GiveUpWhen(Object* object, Signal signal, std::function<bool()> condition) {
    if (condition()) {
      state_->waiter.Finish();
      return;
    }
    QObject::connect(object, signal, &state_->waiter,
                     [state = state_.get(), held = std::move(condition)] {
                       if (!state->waiter.IsFinished() && held()) {
                         state->waiter.Finish();
                       }
                     });
  }

  void GiveUpAfter(std::chrono::milliseconds time) { state_->waiter.FinishAfter(time); }

  bool await_ready() const { return state_->waiter.IsFinished(); }
  void await_suspend(std::coroutine_handle<> handle) const { state_->waiter.Suspend(handle); }
  std::optional<T> await_resume() const { return std::move(state_->value); }

 private:
  struct State {
    internal::Waiter waiter;
    std::optional<T> value;
  };
  std::shared_ptr<State> state_;
};

}  // namespace quayline
