// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/tools/script_bench.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPointer>

#include "core/update_command.h"
#include "script/page_operations.h"
#include "script/page_saving.h"
#include "ui/toolkit/theme.h"
#include "ui/tools/tool_texts.h"
#include "ui_script_bench.h"

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

using namespace std::chrono_literals;

// The entry that lines work with where the list has none.
PortEntry SampleEntry() {
  return {.app_name = u"Test"_s,
          .forwarded_to = u"192.168.1.100(FrontDesk)"_s,
          .start_port = u"8080"_s,
          .end_port = u"8081"_s,
          .protocol = u"TCP"_s,
          .description = {}};
}

}  // namespace

ScriptBench::ScriptBench(AppContext& context, Prompts& prompts, PageHostFactory make_host,
                         std::function<Place()> place, QWidget* parent)
    : QWidget(parent),
      context_(context),
      prompts_(prompts),
      place_(std::move(place)),
      ui_(std::make_unique<Ui::ScriptBench>()),
      questions_(*this, prompts, context.translator, kRunnerTexts),
      runner_(std::make_unique<BenchRunner>(context, std::move(make_host), questions_)) {
  ui_->setupUi(this);
  ui_->stop_button->setIcon(ThemeIcon(u"stop"_s));
  describe_timer_.setSingleShot(true);
  describe_timer_.setInterval(100ms);
  connect(&describe_timer_, &QTimer::timeout, this, [this] { Describe(false); });
  connect(ui_->run_line_button, &QPushButton::clicked, this, [this] { Run(true); });
  connect(ui_->run_to_caret_button, &QPushButton::clicked, this, [this] { Run(false); });
  connect(ui_->stop_button, &QPushButton::clicked, this, [this] { runner_->Stop(); });
  connect(ui_->pick_button, &QPushButton::toggled, this, &ScriptBench::SetPicking);
  connect(ui_->save_page_button, &QPushButton::clicked, this, &ScriptBench::AskForFolder);
  ConnectRunner();
  runner_->Open();
  ShowHost(runner_->ActiveHost());
  ShowState();
}

// The runner is destroyed first: its browsers use this window's widgets.
ScriptBench::~ScriptBench() {
  SetPicking(false);
  runner_.reset();
}

void ScriptBench::ConnectRunner() {
  connect(&runner_->Log(), &JobLog::appended, this, [this](const QString& text) {
    ui_->bench_log_edit->moveCursor(QTextCursor::End);
    ui_->bench_log_edit->insertPlainText(text);
    ui_->bench_log_edit->ensureCursorVisible();
  });
  const auto add_line = [this](const QString& line) { ui_->bench_log_edit->appendPlainText(line); };
  connect(runner_.get(), &ScriptRunner::statusAppended, this,
          [add_line](const QString& line, StatusKind kind) {
            if (kind == StatusKind::kNotable) {
              add_line(line);
            }
          });
  connect(runner_.get(), &ScriptRunner::errorAppended, this, add_line);
  connect(runner_.get(), &ScriptRunner::noticeRequested, this,
          [this](const QString& text) { prompts_.Notify(window(), text); });
  connect(runner_.get(), &ScriptRunner::activeHostChanged, this, &ScriptBench::ShowHost);
  connect(runner_.get(), &ScriptRunner::ended, this, [this] {
    runner_->HandOver();
    ShowState();
  });
}

void ScriptBench::Run(bool only_line) {
  const Place place = place_();
  if (runner_->IsRunning() || place.line >= place.lines.size()) {
    return;
  }
  if (context_.job_flags.IsRunning()) {
    prompts_.Tell(window(), Text(message::kJobRunsAlready));
    return;
  }
  const QString address = context_.session.router_ip.trimmed();
  if (address.isEmpty() || address == RouterSession().router_ip) {
    prompts_.Tell(window(), Text(kSetRouterIp));
    return;
  }
  ui_->pick_button->setChecked(false);
  ui_->bench_log_edit->clear();
  const QList<PortEntry>& entries = context_.port_list.Entries();
  runner_->RunLines(
      only_line ? LinesForOne(place.lines, place.line) : place.lines.first(place.line + 1),
      entries.isEmpty() ? SampleEntry() : entries.first());
  ShowState();
}

void ScriptBench::ShowState() {
  const bool runs = runner_->IsRunning();
  for (QPushButton* button :
       {ui_->run_line_button, ui_->run_to_caret_button, ui_->pick_button, ui_->save_page_button}) {
    button->setEnabled(!runs);
  }
  ui_->stop_button->setEnabled(runs);
}

void ScriptBench::ShowHost(PageHost* host) {
  QWidget* shown = host != nullptr ? host->Widget() : nullptr;
  QLayout* area = ui_->page_area->layout();
  for (int i = 0; i < area->count(); ++i) {
    if (QWidget* other = area->itemAt(i)->widget()) {
      other->setVisible(other == shown);
    }
  }
  if (shown != nullptr && area->indexOf(shown) < 0) {
    area->addWidget(shown);
    shown->show();
  }
}

void ScriptBench::Leave(QWidget& window) {
  SetPicking(false);
  questions_.RefuseAll();
  runner_->disconnect(this);
  runner_->Log().disconnect(this);
  window.setAttribute(Qt::WA_DeleteOnClose, false);
  connect(runner_.get(), &ScriptRunner::left, &window, &QObject::deleteLater);
  runner_->Leave();
}

// The browser's own widgets are made and replaced by the engine, so events are filtered for all.
void ScriptBench::SetPicking(bool picks) {
  if (picks) {
    qApp->installEventFilter(this);
    ui_->picked_label->setText(Text(message::kPointAtElement));
  } else {
    qApp->removeEventFilter(this);
    describe_timer_.stop();
  }
}

bool ScriptBench::IsOnPage(const QObject* watched) const {
  const PageHost* host = runner_->ActiveHost();
  const auto* widget = qobject_cast<const QWidget*>(watched);
  QWidget* view = host != nullptr ? const_cast<PageHost*>(host)->Widget() : nullptr;
  return widget != nullptr && view != nullptr && (widget == view || view->isAncestorOf(widget));
}

bool ScriptBench::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  const bool is_mouse = type == QEvent::MouseMove || type == QEvent::MouseButtonPress ||
                        type == QEvent::MouseButtonRelease || type == QEvent::MouseButtonDblClick;
  if (!is_mouse || !IsOnPage(watched)) {
    return QWidget::eventFilter(watched, event);
  }
  QWidget* view = runner_->ActiveHost()->Widget();
  pointer_ = view->mapFromGlobal(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
  if (type == QEvent::MouseButtonPress) {
    Describe(true);
  } else if (type == QEvent::MouseMove && !describe_timer_.isActive()) {
    describe_timer_.start();
  }
  return true;  // the page must not react to it
}

void ScriptBench::Describe(bool is_picked) {
  PageHost* host = runner_->ActiveHost();
  if (host == nullptr) {
    return;
  }
  const QPointer<ScriptBench> self(this);
  host->Call(page_operation::DescribeElementAt(pointer_.x(), pointer_.y()),
             [self, is_picked](const PageAnswer& answer) {
               if (self.isNull() || !answer.value.isObject()) {
                 return;
               }
               const PickedElement element = PickedElement::From(answer.value.toObject());
               self->ShowElement(element);
               if (is_picked) {
                 self->ui_->pick_button->setChecked(false);
                 Q_EMIT self->linesPicked(LinesFor(element));
               }
             });
}

void ScriptBench::ShowElement(const PickedElement& element) {
  const QStringList lines = LinesFor(element);
  const QString line = lines.isEmpty() ? Text(message::kNoLineForIt) : lines.last();
  ui_->picked_label->setText(
      Text(message::kPicked).arg(element.Key(), QString::number(element.number), element.text) +
      u'\n' + line);
}

void ScriptBench::AskForFolder() {
  prompts_.AskFolder(window(), Text(message::kSavePageTitle), folder_,
                     [this](const QString& folder) { StartSaving(folder); });
}

void ScriptBench::StartSaving(const QString& folder) {
  if (!IsForSavedPages(folder)) {
    prompts_.Tell(window(), Text(message::kFolderInUse).arg(folder));
  } else if (!saving_.IsRunning()) {
    folder_ = folder;
    saving_.Start(SavePage(folder));
  }
}

Task<> ScriptBench::SavePage(QString folder) {
  const RouterSession& session = context_.session;
  const SavingReport report =
      co_await quayline::SavePage(QPointer<PageHost>(runner_->ActiveHost()), folder,
                                  {.username = session.username, .password = session.password});
  const QString missing = report.missing.join(u"\n"_s);
  QString told =
      Text(report.is_written ? message::kPageSaved : message::kCannotSavePage).arg(folder);
  if (report.is_written && !missing.isEmpty()) {
    told += u"\n\n"_s + Text(message::kPartsNotSaved) + u'\n' + missing;
  }
  prompts_.Tell(window(), told);
}

}  // namespace quayline
