// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "ui/tools/frm_view_scripts.h"

#include <algorithm>

#include "ui/toolkit/theme.h"
#include "ui/tools/tool_texts.h"
#include "ui_frm_view_scripts.h"

namespace quayline {

namespace {

// Nobody reads on behind so many, and a list of them all takes seconds to lay out.
constexpr qsizetype kMaxFindingsShown = 500;

}  // namespace

FrmViewScripts::FrmViewScripts(AppContext& context, Prompts& prompts, QWidget* parent,
                               std::function<void()> written)
    : QDialog(parent),
      context_(context),
      prompts_(prompts),
      written_(std::move(written)),
      router_id_(context.session.router_id),
      ui_(std::make_unique<Ui::FrmViewScripts>()) {
  ui_->setupUi(this);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  setWindowTitle(Text(message::kScriptsFor) + QStringLiteral(" - ") + context.session.router_name);
  ResizeOnScreen(*this, {820, 640});
  ui_->splitter->setSizes({460, 120});
  ui_->Text2->SetScript(context.session.update_script);
  ui_->Text1->SetScript(context.session.view_script);
  ConnectEditor(ui_->Text2, ui_->Command2, ui_->label_shape_text2);
  ConnectEditor(ui_->Text1, ui_->Command1, ui_->label_shape_text1);
  connect(ui_->Command2, &QPushButton::clicked, this,
          [this] { Save(ui_->Text2, ui_->Command2, &RouterRecord::routercommands); });
  connect(ui_->Command1, &QPushButton::clicked, this,
          [this] { Save(ui_->Text1, ui_->Command1, &RouterRecord::routerportpage); });
  connect(ui_->Command3, &QPushButton::clicked, this, [this] { ShowScript(0); });
  connect(ui_->Command4, &QPushButton::clicked, this, [this] { ShowScript(1); });
  connect(ui_->command_close, &QPushButton::clicked, this, &QDialog::close);
  connect(ui_->list_findings, &QListWidget::currentRowChanged, this, [this](int row) {
    if (row >= 0 && row < findings_.size() && ui_->list_findings->hasFocus()) {
      Editor()->GoToFinding(findings_.at(row));
    }
  });
  connect(ui_->list_findings, &QListWidget::itemActivated, this, [this] { Editor()->setFocus(); });
  ShowScript(0);
}

FrmViewScripts::~FrmViewScripts() = default;

void FrmViewScripts::ConnectEditor(ScriptEditor* editor, QPushButton* save, QLabel* shape) {
  editor->SetTranslator(&context_.translator);
  save->setIcon(ThemeIcon(QStringLiteral("save")));
  connect(editor, &ScriptEditor::shapeChanged, shape,
          [shape](const QString& text, const QString& help) {
            shape->setText(text);
            shape->setToolTip(help);
          });
  connect(editor, &ScriptEditor::findingsChanged, this, [this, editor] {
    if (editor == Editor()) {
      ShowFindings();
    }
  });
  connect(editor, &QPlainTextEdit::textChanged, this, [this, save] {
    save->setEnabled(true);
    ui_->label_saved->clear();
  });
}

ScriptEditor* FrmViewScripts::Editor() const {
  return ui_->stack->currentIndex() == 0 ? ui_->Text2 : ui_->Text1;
}

void FrmViewScripts::ShowScript(int index) {
  ui_->stack->setCurrentIndex(index);
  Editor()->setFocus();
  ShowFindings();
}

void FrmViewScripts::ShowFindings() {
  findings_ = Editor()->Findings();
  ui_->list_findings->clear();
  const qsizetype shown = std::min(findings_.size(), kMaxFindingsShown);
  for (const ScriptFinding& found : std::as_const(findings_).first(shown)) {
    const bool is_error = found.finding.severity == LintSeverity::kError;
    ui_->list_findings->addItem(
        Text(is_error ? message::kFindingError : message::kFindingWarning)
            .arg(QString::number(found.line), Editor()->Sentence(found.finding)));
  }
  const auto errors = std::ranges::count_if(findings_, [](const ScriptFinding& found) {
    return found.finding.severity == LintSeverity::kError;
  });
  ui_->label_findings->setText(
      findings_.isEmpty() ? Text(message::kNoFindings)
                          : Text(message::kFindings)
                                .arg(QString::number(findings_.size()), QString::number(errors)));
}

void FrmViewScripts::Save(ScriptEditor* editor, QPushButton* save, QString RouterRecord::* field) {
  save->setEnabled(false);
  if (router_id_ == 0) {
    save->setEnabled(true);
    prompts_.Tell(this, Text(message::kNoRouterChosen));
    return;
  }
  const bool is_written = Write(editor->Script(), field);
  written_();
  if (!is_written) {
    save->setEnabled(true);
    prompts_.Tell(this, Text(message::kCannotSaveScript));
    return;
  }
  editor->document()->setModified(false);
  ui_->label_saved->setText(Text(message::kScriptSaved));
}

// The other script stays as the database has it, not as the other box shows it.
bool FrmViewScripts::Write(const QString& script, QString RouterRecord::* field) {
  auto record = context_.databases.FindRouter(router_id_);
  if (!record) {
    return false;
  }
  (*record).*field = script;
  return context_.databases.UpdateRouterScripts(router_id_, record->routercommands,
                                                record->routerportpage);
}

// Every way of closing comes through here.
void FrmViewScripts::reject() {
  if (!ui_->Text1->document()->isModified() && !ui_->Text2->document()->isModified()) {
    QDialog::reject();
    return;
  }
  prompts_.AskCarefully(this, Text(message::kUnsavedTitle), Text(message::kUnsaved),
                        [this](bool yes) {
                          if (yes) {
                            QDialog::reject();
                          }
                        });
}

}  // namespace quayline
