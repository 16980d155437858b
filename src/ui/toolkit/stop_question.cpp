// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/toolkit/stop_question.h"

namespace quayline {

StopQuestion::StopQuestion(const JobFlags& flags, Prompts& prompts, QWidget& window)
    : flags_(flags), prompts_(prompts), window_(window) {
  connect(&flags_, &JobFlags::changed, this, [this] {
    if (!flags_.IsRunning()) {
      asker_.reset();
    }
  });
}

StopQuestion::~StopQuestion() = default;

void StopQuestion::Ask(const QString& title, const QString& text, std::function<void()> agreed) {
  if (asker_ != nullptr) {
    return;
  }
  asker_ = std::make_unique<QObject>();
  prompts_.AskFor(asker_.get(), &window_, title, text,
                  [this, agreed = std::move(agreed)](bool yes) {
                    asker_.reset();
                    if (yes) {
                      agreed();
                    }
                  });
}

}  // namespace quayline
