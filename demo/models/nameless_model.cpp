// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/nameless_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "portmap.htm";

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Blankwater",
                .product = "BW-1",
                .colour = "#444a55",
                .menu = {{"home.htm", "Status"}, {kRulesPath, "Port Forwarding"}}},
      .page = kRulesPath};
  return site;
}

}  // namespace

NamelessModel::NamelessModel(RuleTable& table) : FormModel(table, ModelSite()) {}

QString NamelessModel::RuleForm(const TypedRule& typed) const {
  return QStringLiteral(R"html(<form method="post" action="/%1">
<table>
<tr><th>Service</th><td><input type="text" value="%2" maxlength="32"></td></tr>
<tr><th>From port</th><td><input type="text" value="%3" size="6"></td></tr>
<tr><th>To port</th><td><input type="text" value="%4" size="6"></td></tr>
<tr><th>Type</th><td>%5</td></tr>
<tr><th>Computer</th><td><input type="text" value="%6" size="16"></td></tr>
<tr><th>Active</th><td><input type="checkbox"></td></tr>
</table>
<input type="hidden" name="packed">
</form>
<input type="button" value="Save settings" onclick="pack()">
<script>
function pack() {
  var boxes = document.forms[0].elements, values = [], i;
  for (i = 0; i < 5; i++) {
    values.push(boxes[i].value);
  }
  values.push(boxes[5].checked ? 'on' : 'off');
  document.forms[0].packed.value = values.join('\t');
  document.forms[0].submit();
}
</script>)html")
      .arg(QLatin1String(kRulesPath), Html(typed.name), Html(typed.first), Html(typed.last),
           ProtocolSelect({}, typed.protocol), Html(typed.address));
}

TypedRule NamelessModel::ReadForm(const FormFields& form) const {
  const QStringList values = form.Value(QStringLiteral("packed")).split(QLatin1Char('\t'));
  return {.name = values.value(0),
          .first = values.value(1),
          .last = values.value(2),
          .protocol = values.value(3),
          .address = values.value(4),
          .enabled = values.value(5) == QLatin1String("on")};
}

}  // namespace quayline::demo
