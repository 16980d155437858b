// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "core/column_role.h"

#include "core/cell_text.h"

namespace quayline {

bool IsOfTriggers(const QString& heading) {
  static const QRegularExpression trigger = Words("trigger|ausl.s|d.clench|触发");
  return Has(heading, trigger);
}

ColumnRole RoleOf(const QString& heading) {
  // English, German, French, Spanish, Italian, Dutch, Chinese, Japanese. Words of a language have
  // no separator in Chinese, so the patterns do without.
  static const struct {
    QRegularExpression words;
    ColumnRole role;
  } rows[] = {
      {Words("^\\W*(?:#|no\\.?|nr\\.?|n°|id|index|row|select|delete|remove|edit|action|priority|"
             "l.schen|bearbeiten|aktion|auswahl|supprimer|modifier|eliminar|borrar|editar|acci.n|"
             "序号|编号|操作|删除|编辑|选择)\\W*$"),
       ColumnRole::kIgnored},
      {Words("schedule|time|lease|metric|mask|interface|mac\\b|zeitplan|horaire|horario|时间"),
       ColumnRole::kIgnored},
      // Switches that are not those of the rule.
      {Words("reflection|loopback|hairpin|\\blog(?:ging)?\\b"), ColumnRole::kIgnored},
      {Words("(?:internal|\\bint\\b|private|inner|local|\\blan|target|dest|forward\\w* to|intern|"
             "lokal|ziel|interne|interno|内部|内网|本地).*(?:port|puerto|poort|端口|埠|ポート)|"
             "(?:port|puerto|poort).*(?:internal|\\bint\\b|private|local|\\blan|target|intern|"
             "lokal|ziel|"
             "dest)"),
       ColumnRole::kInnerPort},
      {Words("(?:start|begin|from|first|low|anfang|von|d.but|inici|desde|起始|开始)"
             ".*(?:port|puerto|poort|端口)|(?:port|puerto|poort).*(?:start|begin|from|first|anfang|"
             "von|d.but|inici|desde)|^\\W*(?:start|from|von|de|desde)\\W*$"),
       ColumnRole::kStartPort},
      {Words("(?:end|last|high|stop|\\bto|bis|\\bfin|hasta|结束|终止).*(?:port|puerto|poort|端口)|"
             "(?:port|puerto|poort).*(?:\\bend|last|stop|bis\\b|ende|\\bfin|hasta)|"
             "^\\W*(?:end|to|until|bis|hasta)\\W*$"),
       ColumnRole::kEndPort},
      {Words("port|range|puerto|\\bporta\\b|poort|端口|埠|ポート"), ColumnRole::kPort},
      {Words("(?:remote|source|outside|external|extern|public|allowed|quell|entfernt|distant|"
             "origen|\\bwan\\b|外部|源|远程).*(?:\\bip\\b|ip.?ad|address|host|adresse|direcci.n|"
             "地址)|"
             "^\\W*(?:source|remote|wan|quelle|origen)\\W*$"),
       ColumnRole::kOutside},
      {Words("proto|traffic|协议|プロトコル"), ColumnRole::kProtocol},
      {Words("enabl|activ|status|state|^\\W*(?:on|use|en)\\W*$|aktiv|^\\W*tat\\W*$|estado|habilit|"
             "启用|状态|"
             "使能|有効"),
       ColumnRole::kEnabled},
      {Words("\\bip\\b|ip.?ad|address|server|host|computer|device|client|target|destination|"
             "forward\\w* "
             "to|adresse|ger(?:ä|ae)t|rechner|ziel|appareil|ordinateur|serveur|direcci.n|equipo|"
             "servidor|destino|地址|服务器|主机|设备|アドレス"),
       ColumnRole::kAddress},
      {Words("name|appl|descr|service|comment|rule|remark|label|bezeichnung|beschreibung|dienst|"
             "regel|"
             "\\bnom\\b|r.gle|nombre|servicio|regla|名称|描述|服务|规则|备注|名前"),
       ColumnRole::kName},
      {Words("^\\W*typ[eo]?\\W*$|^类型$"), ColumnRole::kProtocol},
  };
  const QString text = heading.left(kMaxCell);
  for (const auto& row : rows) {
    if (Has(text, row.words)) {
      return row.role;
    }
  }
  return ColumnRole::kNone;
}

bool AreHeadingsOfRules(const QStringList& headings) {
  bool has_port = false;
  bool has_more = false;
  for (const QString& heading : headings) {
    if (IsOfTriggers(heading)) {
      return false;
    }
    const ColumnRole role = RoleOf(heading);
    has_port = has_port || role == ColumnRole::kPort || role == ColumnRole::kStartPort ||
               role == ColumnRole::kInnerPort;
    has_more = has_more || role == ColumnRole::kAddress || role == ColumnRole::kProtocol;
  }
  return has_port && has_more;
}

}  // namespace quayline
