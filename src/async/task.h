// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <coroutine>
#include <exception>
#include <functional>
#include <optional>
#include <utility>

namespace quayline {

// A lazy coroutine that belongs to whoever holds it. It starts when it is awaited, and destroying
// it while it is suspended ends it at that point: the frame's locals are destroyed in order, and
// with them every wait that it was in. That is how a closed window ends its flow.
//
// Nothing may throw out of a task. A task must not be destroyed from its own running code: use
// deleteLater() on the owner.
template <typename T = void>
class Task;

namespace internal {

struct PromiseBase {
  std::coroutine_handle<> continuation = std::noop_coroutine();

  struct ResumeContinuation {
    bool await_ready() const noexcept { return false; }
    template <typename Promise>
    std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> ended) const noexcept {
      return ended.promise().continuation;
    }
    void await_resume() const noexcept {}
  };

  std::suspend_always initial_suspend() const noexcept { return {}; }
  ResumeContinuation final_suspend() const noexcept { return {}; }
  [[noreturn]] void unhandled_exception() const noexcept { std::terminate(); }
};

template <typename T>
struct Promise final : PromiseBase {
  Task<T> get_return_object();
  template <typename U>
  void return_value(U&& given) {
    value.emplace(std::forward<U>(given));
  }
  T Take() { return std::move(*value); }
  std::optional<T> value;
};

template <>
struct Promise<void> final : PromiseBase {
  Task<void> get_return_object();
  void return_void() const noexcept {}
  void Take() const noexcept {}
};

}  // namespace internal

template <typename T>
class [[nodiscard]] Task {
 public:
  using promise_type = internal::Promise<T>;
  using Handle = std::coroutine_handle<promise_type>;

  Task() = default;
  explicit Task(Handle handle) : handle_(handle) {}
  Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, {})) {}
  Task& operator=(Task&& other) noexcept {
    if (this != &other) {
      Destroy();
      handle_ = std::exchange(other.handle_, {});
    }
    return *this;
  }
  Task(const Task&) = delete;
  Task& operator=(const Task&) = delete;
  ~Task() { Destroy(); }

  bool await_ready() const noexcept { return false; }
  std::coroutine_handle<> await_suspend(std::coroutine_handle<> awaiting) const noexcept {
    handle_.promise().continuation = awaiting;
    return handle_;
  }
  T await_resume() const { return handle_.promise().Take(); }

  // For Flow, which runs outermost tasks.
  Handle handle() const { return handle_; }

 private:
  void Destroy() {
    if (handle_) {
      handle_.destroy();
    }
  }

  Handle handle_;
};

namespace internal {

template <typename T>
Task<T> Promise<T>::get_return_object() {
  return Task<T>(std::coroutine_handle<Promise>::from_promise(*this));
}

inline Task<void> Promise<void>::get_return_object() {
  return Task<void>(std::coroutine_handle<Promise>::from_promise(*this));
}

}  // namespace internal
}  // namespace quayline
