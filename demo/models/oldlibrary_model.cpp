// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT
#include "demo/models/oldlibrary_model.h"

namespace quayline::demo {

namespace {

constexpr char kRulesPath[] = "nat_ports.shtml";

// As such libraries did: their find() gives an index and not an element, arrays convert themselves
// to text, and the Date object counts its calls.
constexpr char kLibrary[] = R"(
var kit = {calls: 0, byName: function(name) { return document.getElementsByName(name)[0]; }};
Array.prototype.find = function(wanted) {
  for (var i = 0; i < this.length; i++) {
    if (this[i] === wanted) {
      return i;
    }
  }
  return -1;
};
Array.prototype.toJSON = function() { return '[' + this.join(', ') + ']'; };
Object.prototype.clone = function() { return kit; };
(function(stringify) {
  JSON.stringify = function(value) {
    return value instanceof Array ? '"' + value.join('","') + '"' : stringify(value);
  };
})(JSON.stringify);
String.prototype.trim = function() { return this.replace(/ /g, ''); };
Function.prototype.bind = function() { return this; };
(function(start) {
  window.setTimeout = function(work, time) {
    kit.calls++;
    return start(function() { kit.calls--; work(); }, time);
  };
})(window.setTimeout);
)";

const FormSite& ModelSite() {
  static const FormSite site{
      .admin = {.maker = "Barnacle",
                .product = "BN-6",
                .colour = "#6b6420",
                .menu = {{"start.shtml", "Status"}, {kRulesPath, "Port Forwarding"}},
                .head = "<script src=\"/kit.js\"></script>\n"},
      .page = kRulesPath,
      .fields = {.name = "nat_name",
                 .first = "nat_low",
                 .last = "nat_high",
                 .protocol = "nat_proto",
                 .address = "nat_client"}};
  return site;
}

}  // namespace

OldlibraryModel::OldlibraryModel(RuleTable& table) : FormModel(table, ModelSite()) {}

HttpResponse OldlibraryModel::OtherPage(const QString& page, const HttpRequest& request) {
  return page == QLatin1String("kit.js") ? JavaScriptFile(kLibrary)
                                         : FormModel::OtherPage(page, request);
}

QString OldlibraryModel::RuleForm(const TypedRule& typed) const {
  return FormHtml(typed, "", R"(<input type="hidden" name="client_data">
<input type="button" name="ok" value="OK">)") +
         QStringLiteral(R"(<script>
var fields = ['nat_name', 'nat_low', 'nat_high', 'nat_proto', 'nat_client'];
kit.byName('ok').onclick = function saveRule() {
  var form = document.forms[0];
  form.client_data.value = JSON.stringify(fields);
  setTimeout(function() {
    if (fields.find('nat_name') === 0 && ' x '.trim() === 'x') {
      form.submit();
    }
  }, 20);
};
</script>)");
}

}  // namespace quayline::demo
