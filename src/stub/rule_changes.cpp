// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "stub/rule_changes.h"

#include <QJsonArray>
#include <QJsonObject>

#include <algorithm>

namespace quayline {

using namespace Qt::StringLiterals;

namespace {

// Routers send these empty for a range of one port and a rule without a name.
bool MayBeEmpty(const QString& member) {
  return member == "end"_L1 || StoredMember(member, u"x"_s) == "x"_L1;
}

// Takes ports that are one text apart: "ports", and "tcp" and "udp" of pages that have a box of
// ports for each protocol, which may be empty or 0.
StubRule WithPortsApart(StubRule rule) {
  QStringList protocols;
  for (const QString& member : {u"ports"_s, u"tcp"_s, u"udp"_s}) {
    const QStringList ends = rule.value(member).split(u'-');
    const QString start = StoredMember(u"start"_s, ends.first());
    if (start.isEmpty()) {
      continue;
    }
    rule.insert(u"start"_s, start);
    rule.insert(u"end"_s, StoredMember(u"end"_s, ends.last()));
    if (member != "ports"_L1) {
      protocols.append(member.toUpper());
      rule.insert(u"protocol"_s, protocols.join(u'/'));
    }
  }
  rule.remove(u"ports"_s);
  return rule;
}

// Carries out one request.
class Changer final {
 public:
  Changer(const QList<StubRule>& rules, const AnswerRow& row, const RequestValues& request,
          int& next_id)
      : row_(row), request_(request), next_id_(next_id), before_(rules) {
    change_.rules = rules;
  }

  RuleChange Run() {
    switch (row_.action) {
      case RuleAction::kAdd:
        Add(NewRules());
        break;
      case RuleAction::kReplace:
        Replace(NewRules());
        break;
      case RuleAction::kPut:
      case RuleAction::kEdit:
        Edit();
        break;
      case RuleAction::kRemove:
      case RuleAction::kToggle:
        RemoveOrToggle();
        break;
      case RuleAction::kNone:
      case RuleAction::kCommit:
      case RuleAction::kDiscard:
        break;
    }
    if (row_.refusal && IsRefused(*row_.refusal)) {
      return {.rules = before_, .done = {}, .problems = change_.problems, .is_refused = true};
    }
    return std::move(change_);
  }

 private:
  void Problem(const QString& sentence) { change_.problems.append(sentence); }

  // The value of a source; nothing where the request does not have it. `number` is for {n}.
  std::optional<QString> Value(const ValueSource& source, const RequestValues& request,
                               std::optional<int> number) {
    QString text = source.text;
    if (number) {
      text.replace(u"{n}"_s, QString::number(*number));
    }
    std::optional<QString> value = request.Filled(text);
    if (!value) {
      return source.otherwise;
    }
    if (!source.split.isEmpty()) {
      const QStringList parts = value->split(source.split);
      value = parts.size() > source.part ? parts.at(source.part) : QString();
    }
    if (source.map) {
      if (!source.map->contains(*value) && !source.otherwise) {
        Problem(u"\"%1\" (of %2) is not in the map."_s.arg(*value, text));
      }
      value = source.map->value(*value, source.otherwise.value_or(QString()));
    }
    return value;
  }

  StubRule ReadRule(const RequestValues& request, std::optional<int> number = {}) {
    StubRule rule;
    for (const auto& [member, source] : row_.rule.asKeyValueRange()) {
      const std::optional<QString> value = Value(source, request, number);
      if (!value || (value->isEmpty() && MayBeEmpty(member))) {
        continue;
      }
      rule.insert(member, StoredMember(member, *value));
    }
    return WithPortsApart(rule);
  }

  // What a router would refuse; an unused row of a table has no ports.
  void CheckMembers(const StubRule& rule) {
    for (const auto& [member, value] : rule.asKeyValueRange()) {
      if (value.isEmpty()) {
        Problem(u"The value sent for \"%1\" is not valid."_s.arg(member));
      }
    }
  }

  QList<StubRule> NewRules() {
    QList<StubRule> rules;
    const auto take = [&](const RequestValues& request, std::optional<int> number = {}) {
      const StubRule rule = ReadRule(request, number);
      const bool is_row = row_.numbered || row_.list;
      if (!is_row || !rule.value(u"start"_s).isEmpty()) {
        CheckMembers(rule);
        rules.append(rule);
      }
    };
    if (row_.numbered) {
      for (int number = row_.numbered->first; number <= row_.numbered->second; ++number) {
        take(request_, number);
      }
    } else if (row_.list) {
      for (const QMap<QString, QString>& cells : ListCells(*row_.list)) {
        if (row_.rule.isEmpty()) {
          rules.append(StoredCells(cells));
          CheckMembers(rules.last());
        } else {
          take(request_.With(cells));
        }
      }
    } else if (!row_.each.isEmpty()) {
      for (const auto& [key, item] : Items(request_.Find(row_.each))) {
        take(request_.WithJson(QJsonObject{{u"item"_s, item}, {u"key"_s, key}}));
      }
    } else {
      take(request_);
    }
    return rules;
  }

  static QList<std::pair<QString, QJsonValue>> Items(const QJsonValue& value) {
    QList<std::pair<QString, QJsonValue>> items;
    for (const auto& item : value.toArray()) {
      items.append({QString::number(items.size()), item});
    }
    const QJsonObject object = value.toObject();
    for (const QString& key : object.keys()) {
      items.append({key, object.value(key)});
    }
    return items;
  }

  QList<QMap<QString, QString>> ListCells(const ListSource& list) {
    QList<QMap<QString, QString>> rows;
    const std::optional<QString> text = request_.FindText(list.field);
    if (!text) {
      Problem(u"The field \"%1\" was not sent."_s.arg(list.field));
      return {};
    }
    for (const QString& row : text->split(list.rows, Qt::SkipEmptyParts)) {
      const QStringList cells = row.split(list.cells);
      QMap<QString, QString> named;
      for (qsizetype i = 0; i < list.order.size() && i < cells.size(); ++i) {
        named.insert(list.order.at(i), cells.at(i));
      }
      if (cells.size() < list.order.size()) {
        Problem(u"A row of \"%1\" has %2 cells, not %3: \"%4\"."_s.arg(
            list.field, QString::number(cells.size()), QString::number(list.order.size()), row));
      }
      rows.append(named);
    }
    return rows;
  }

  static StubRule StoredCells(const QMap<QString, QString>& cells) {
    StubRule rule;
    for (const auto& [member, value] : cells.asKeyValueRange()) {
      if (!value.isEmpty() || !MayBeEmpty(member)) {
        rule.insert(member, StoredMember(member, value));
      }
    }
    return rule;
  }

  void GiveId(StubRule& rule) {
    if (!rule.contains(u"id"_s)) {
      rule.insert(u"id"_s, u"rule%1"_s.arg(++next_id_));
    }
  }

  void Add(QList<StubRule> rules) {
    for (StubRule& rule : rules) {
      GiveId(rule);
      change_.done.append(u"added "_s + RuleText(rule));
      change_.rules.append(rule);
    }
  }

  void Replace(QList<StubRule> rules) {
    change_.rules.clear();
    for (StubRule& rule : rules) {
      GiveId(rule);
      change_.rules.append(rule);
    }
    QStringList texts;
    for (const StubRule& rule : std::as_const(change_.rules)) {
      texts.append(RuleText(rule));
    }
    change_.done.append(u"the rules are now: "_s +
                        (texts.isEmpty() ? u"none"_s : texts.join(u"; "_s)));
  }

  // The numbers of the rules that the request is about.
  QList<qsizetype> Found() {
    QList<qsizetype> found;
    if (row_.row && row_.numbered) {
      for (int number = row_.numbered->first; number <= row_.numbered->second; ++number) {
        if (Value(*row_.row, request_, number)) {
          found.append(number - row_.numbered->first);
        }
      }
    } else if (row_.row) {
      const QString numbers = Value(*row_.row, request_, {}).value_or(QString());
      for (const QString& text : numbers.split(u',', Qt::SkipEmptyParts)) {
        bool is_number = false;
        found.append(text.trimmed().toInt(&is_number));
        if (!is_number) {
          found.last() = -1;
        }
      }
    } else {
      FindMatches(found);
    }
    found.removeIf([this](qsizetype i) { return i < 0 || i >= change_.rules.size(); });
    return found;
  }

  void FindMatches(QList<qsizetype>& found) {
    StubRule wanted;
    for (const auto& [member, source] : row_.match.asKeyValueRange()) {
      wanted.insert(member, StoredMember(member, Value(source, request_, {}).value_or(QString())));
    }
    for (qsizetype i = 0; i < change_.rules.size(); ++i) {
      const StubRule& rule = change_.rules.at(i);
      const bool is_match = std::ranges::all_of(wanted.keys(), [&](const QString& member) {
        return rule.contains(member) && rule.value(member) == wanted.value(member);
      });
      if (is_match) {
        found.append(i);
      }
    }
  }

  void Edit() {
    const StubRule values = ReadRule(request_);
    CheckMembers(values);
    const QList<qsizetype> found = Found();
    if (found.isEmpty() && row_.action == RuleAction::kPut) {
      Add({values});
    } else if (found.isEmpty()) {
      Problem(u"There is no such rule to change."_s);
    }
    for (const qsizetype i : found) {
      change_.rules[i].insert(values);
      change_.done.append(u"changed to "_s + RuleText(change_.rules.at(i)));
    }
  }

  void RemoveOrToggle() {
    QList<qsizetype> found = Found();
    std::ranges::sort(found, std::ranges::greater());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    if (found.isEmpty()) {
      Problem(u"There is no such rule."_s);
    }
    for (const qsizetype i : found) {
      StubRule& rule = change_.rules[i];
      if (row_.action == RuleAction::kRemove) {
        change_.done.append(u"removed "_s + RuleText(rule));
        change_.rules.removeAt(i);
      } else {
        rule.insert(u"enabled"_s, rule.value(u"enabled"_s) == "no"_L1 ? u"yes"_s : u"no"_s);
        change_.done.append(u"changed to "_s + RuleText(rule));
      }
    }
  }

  bool IsRefused(const Refusal& refusal) const {
    const QList<StubRule>& rules = change_.rules;
    if (refusal.more_than > 0 && rules.size() > refusal.more_than) {
      return true;
    }
    for (qsizetype i = 0; i < rules.size() && !refusal.same.isEmpty(); ++i) {
      for (qsizetype j = i + 1; j < rules.size(); ++j) {
        const bool is_same = std::ranges::all_of(refusal.same, [&](const QString& member) {
          return rules.at(i).value(member) == rules.at(j).value(member);
        });
        if (is_same) {
          return true;
        }
      }
    }
    return false;
  }

  const AnswerRow& row_;
  const RequestValues& request_;
  int& next_id_;
  const QList<StubRule> before_;
  RuleChange change_;
};

}  // namespace

RuleChange ChangeRules(const QList<StubRule>& rules, const AnswerRow& row,
                       const RequestValues& request, int& next_id) {
  return Changer(rules, row, request, next_id).Run();
}

}  // namespace quayline
