// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#pragma once

#include <expected>

#include "demo/admin_page.h"
#include "demo/router_model.h"
#include "demo/rule_form.h"

namespace quayline::demo {

struct FormSite {
  AdminSite admin;
  const char* page = "";  // the path of the rules' page, without the first slash
  RuleFieldNames fields;
  bool checks_referer = false;  // takes a rule from its own pages only
};

// The common router: a status page, and one page with the rules and a form for one more. Saving
// leads back to that page, and so does a fault, with a sentence about it. Models derive from it and
// differ in a step or two.
class FormModel : public RouterModel {
 public:
  FormModel(RuleTable& table, const FormSite& site) : table_(table), site_(site) {}

  HttpResponse Answer(const HttpRequest& request) override;

 protected:
  // What the router shows first.
  virtual HttpResponse HomePage() const { return StatusPage(site_.admin, table_); }
  // `content` as a page of this router.
  virtual HttpResponse RouterPage(const QString& title, const QString& content) const;
  // A page besides these two; `page` is its path without the first slash.
  virtual HttpResponse OtherPage(const QString& page, const HttpRequest& request);
  virtual QString RuleList() const;
  virtual QString RuleForm(const TypedRule& typed) const;
  // Puts what the form posted into the table.
  virtual TypedRule ReadForm(const FormFields& form) const;
  virtual std::expected<void, RuleFault> Store(const Rule& rule, const FormFields& form);
  virtual HttpResponse Saved() const;
  virtual HttpResponse Refused(const TypedRule& typed, RuleFault fault) const;

  // A form around the fields of a rule, which posts to the rules' page.
  QString FormHtml(const TypedRule& typed, const char* attributes, const char* buttons) const;
  HttpResponse RulesPage(const TypedRule& typed, const QString& fault) const;
  HttpResponse Save(const FormFields& form);

  RuleTable& Table() { return table_; }
  const RuleTable& Table() const { return table_; }
  const FormSite& Site() const { return site_; }

 private:
  RuleTable& table_;
  const FormSite& site_;
};

}  // namespace quayline::demo
