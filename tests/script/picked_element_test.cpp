// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include "script/picked_element.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include "script/bench_runner.h"
#include "script/saved_page.h"
#include "script/script_lint.h"
#include "stub/answer_file.h"
#include "test_main.h"

namespace quayline {
namespace {

using namespace Qt::StringLiterals;

TEST(PickedElement, GetsTheLineThatUsesIt) {
  const std::pair<const char*, const char*> cases[] = {
      {R"("tag":"input","type":"text","name":"rule_desc")", "set_name(\"rule_desc,\")"},
      {R"("tag":"input","type":"","name":"f1","text":"Start port")", "set_start_port(\"f1,\")"},
      {R"("tag":"input","type":"text","name":"portTo")", "set_port_range(\"portTo,,-\")"},
      {R"("tag":"input","type":"text","name":"port_to")", "set_stop_port(\"port_to,\")"},
      {R"("tag":"input","type":"text","id":"lan_ip")", "set_ip(\"lan_ip,\")"},
      {R"("tag":"input","type":"text","name":"x","value":"5")", "set_custom(\"x,,5\")"},
      {R"("tag":"input","type":"text","number":31)", "set_value_by_position(\"value,31\")"},
      {R"("tag":"input","type":"text","name":"a,b","number":3)",
       "set_value_by_position(\"value,3\")"},
      {R"("tag":"input","type":"password","name":"pw")", "set_password(\"pw,\")"},
      {R"("tag":"input","type":"password","number":4)", "set_password_by_position(\"4\")"},
      {R"("tag":"input","type":"checkbox","id":"on")", "set_checkbox(\"on,\")"},
      {R"("tag":"input","type":"radio","name":"r","value":"udp")", "set_radiobutton(\"r,,udp\")"},
      {R"("tag":"select","name":"p","options":["TCP","UDP","TCP/UDP"])",
       "set_type_choices(\"TCP|UDP|TCP/UDP\") set_combobox(\"p,\")"},
      {R"("tag":"select","name":"svc","options":["FTP","HTTP"])", "choose_item(\"svc,FTP\")"},
      {R"("tag":"button","type":"submit","text":"Save, please")", "click_button(\"Save, please\")"},
      {R"("tag":"input","type":"submit","name":"go","value":"Apply")", "click_button(\"go\")"},
      {R"("tag":"a","text":"Rules","href":"rules.htm?x=1")", "click_link(\"rules.htm?x=1,\")"},
      {R"j("tag":"a","text":"Add","href":"javascript:add()")j", "click_button(\"Add\")"},
      {R"j("tag":"div","onclick":"open(1)","text":"")j", "click_onclick(\"open(1),\")"},
      {R"("tag":"div","text":"Apply")", "click_button(\"Apply\")"},
      {R"("tag":"div")", ""},
      {R"("tag":"button","id":"s","frame":2)", "set_frame_number(\"2\") click_button(\"s\")"},
  };
  for (const auto& [json, expected] : cases) {
    const QByteArray object = QByteArray("{") + json + "}";
    const QStringList lines =
        LinesFor(PickedElement::From(QJsonDocument::fromJson(object).object()));
    EXPECT_EQ(lines.join(u' '), QLatin1String(expected)) << json;
    for (const QString& line : lines) {
      EXPECT_TRUE(LintScriptLine(line).isEmpty()) << qPrintable(line);
    }
  }
}

TEST(SavedPage, WhatBelongsToTheOwnerIsTakenOutAndThePageStaysWhole) {
  const PageSecrets secrets{.username = u"admin"_s, .password = u"Tr<ee7"_s};
  const std::pair<const char*, const char*> cases[] = {
      {"<p>Tr<ee7 Tr&lt;ee7 YWRtaW46VHI8ZWU3</p>", "<p>removed removed removed</p>"},
      {"<input type=password name=a value='x y'>",
       "<input type=password name=a value=\"removed\">"},
      {"<input value=\"k1\" id=wpa_psk>", "<input value=\"removed\" id=wpa_psk>"},
      {"<input name=port value=80>", "<input name=port value=80>"},
      {"var wpa_psk = 'one'; var port='80';", "var wpa_psk = 'removed'; var port='80';"},
      {"{\"serial_number\": \"A1\", \"private_key\":\"B\"}",
       "{\"serial_number\": \"removed\", \"private_key\":\"removed\"}"},
      {"84.12.7.9 192.168.1.1 10.0.0.5 255.255.255.0 172.16.0.1 0.0.0.0",
       "203.0.113.1 192.168.1.1 10.0.0.5 255.255.255.0 172.16.0.1 0.0.0.0"},
      {"2003:e4:1::7 at 00:1A:2b:33:44:55, 00-1A-2B-33-44-55",
       "2001:db8::1 at 02:00:00:00:00:00, 02-00-00-00-00-00"},
      {"12:30:45 <b>a</b>", "12:30:45 <b>a</b>"},
      {"<input type=hidden name=mac value=\"001A2B334455\"> <td>001a2b334455</td> \"123456789012\"",
       "<input type=hidden name=mac value=\"020000000000\"> <td>020000000000</td> "
       "\"123456789012\""},
      {"<script src=\"main.001a2b334455.js\">", "<script src=\"main.001a2b334455.js\">"},
      {"<meta name=csrf-token content='q1'><textarea name=cert_private_key>A\nB</textarea>",
       "<meta name=csrf-token content=\"removed\"><textarea "
       "name=cert_private_key>removed</textarea>"},
      {"<input type=hidden name=pppoe_user value=me@isp>",
       "<input type=hidden name=pppoe_user value=\"removed\">"},
      {"'{\\\"wpaPsk\\\":\\\"one\\\"}'", "'{\\\"wpaPsk\\\":\\\"removed\\\"}'"},
      {"<KeyPassphrase>one</KeyPassphrase><Port>80</Port>",
       "<KeyPassphrase>removed</KeyPassphrase><Port>80</Port>"},
      {"'set.cgi?wlan_pwd=one&port=80'", "'set.cgi?wlan_pwd=removed&port=80'"},
      {"<p>Tr%3Cee7 VHI8ZWU3</p>", "<p>removed removed</p>"},
      {"<a href=\"rules.htm?a=1&amp;sid=9f1c\">side</a> \"residence=2\"",
       "<a href=\"rules.htm?a=1&amp;sid=removed\">side</a> \"residence=2\""},
      {"<form action=/cgi-bin/;stok=9f1c/admin>", "<form action=/cgi-bin/;stok=removed/admin>"},
      {"document.cookie = 'SID=9f1c; path=/'", "document.cookie = 'removed'"},
      {"wps_pin: 12345670, ping: 12345, start: 8080", "wps_pin: 0, ping: 12345, start: 8080"},
      {"<input type=hidden name=_t value=\"9f1c04aa73bd55e1\">",
       "<input type=hidden name=_t value=\"removed\">"},
      {"<input type=hidden name=do value=\"AddPortForwardRule\">",
       "<input type=hidden name=do value=\"AddPortForwardRule\">"},
      {"<tr><td>Wi-Fi key:</td> <td><b>sunshine</b></td></tr>",
       "<tr><td>Wi-Fi key:</td> <td><b>removed</b></td></tr>"},
      {"<p>Security key: Ab1Cd2Ef3</p>", "<p>Security key: removed</p>"},
      {"<dt>WLAN-Schlüssel</dt><dd>Ab1-Cd2-Ef3</dd>", "<dt>WLAN-Schlüssel</dt><dd>removed</dd>"},
      {"<label>Password</label><button>ConnectNow</button><p>Keyboard</p><p>languages</p>",
       "<label>Password</label><button>ConnectNow</button><p>Keyboard</p><p>languages</p>"},
      {"if (form.password.value == pwd) { check(pass, 1) }",
       "if (form.password.value == pwd) { check(pass, 1) }"},
  };
  for (const auto& [markup, cleaned] : cases) {
    EXPECT_EQ(CleanedPage(QString::fromUtf8(markup), secrets), QString::fromUtf8(cleaned));
  }
}

TEST(SavedPage, ItsFramesLeadToWhatTheyShowed) {
  const char* const page = R"([{"path": "/", "frames": [
       {"src": "menu.htm?a=1&b=2", "path": ""}, {"src": "status.htm", "path": "/fw/rules.htm"},
       {"src": "", "path": "/help.htm"}],
     "markup":
       "<script>'<iframe src=\"x\">'</script><frame src=\"menu.htm?a=1&amp;b=2\"><frame name=\"m\" src=\"status.htm\"><iframe></iframe>"}])";
  const QMap<QString, QByteArray> files =
      SavedPage(QJsonDocument::fromJson(page).array(), PageSecrets());
  EXPECT_EQ(files.value(u"index.html"_s),
            "<script>'<iframe src=\"x\">'</script><frame src=\"menu.htm?a=1&amp;b=2\">"
            "<frame name=\"m\" src=\"/fw/rules.htm\"><iframe src=\"/help.htm\"></iframe>");
}

TEST(SavedPage, IsAFolderThatScriptsCanBeTriedOn) {
  const char* const page = R"([{"path": "/cgi-bin/../fw/", "markup": "<p>x</p>",
    "forms": [{"action": "/apply.cgi", "method": "post", "fields": [
       {"tag": "input", "type": "text", "name": "desc"},
       {"tag": "input", "type": "text", "name": "ext_port"},
       {"tag": "select", "name": "proto"}]},
      {"action": "/find.cgi", "method": "get", "fields": []}]}])";
  const QJsonArray documents = QJsonDocument::fromJson(page).array();
  QTemporaryDir folder;
  const QString root = folder.filePath(u"saved"_s);
  ASSERT_TRUE(WriteSavedPage(root, documents, {}));
  ASSERT_TRUE(WriteSavedPage(root, documents, {}));
  EXPECT_TRUE(QFile::exists(root + u"/cgi-bin/_../fw/index.html"_s));
  QFile file(root + u"/answers.json"_s);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const auto answers = ParseAnswerFile(file.readAll());
  ASSERT_TRUE(answers.has_value()) << qPrintable(answers.error().join(u' '));
  ASSERT_EQ(answers->answers.size(), 1) << "the same page was saved twice";
  EXPECT_EQ(answers->answers[0].on.path, u"/apply.cgi"_s);
  EXPECT_EQ(answers->answers[0].rule.keys(), (QStringList{u"name"_s, u"protocol"_s, u"start"_s}));
}

TEST(BenchRunner, ALineIsRunWithTheLinesThatKeepSomethingForIt) {
  const QStringList script{u"nav(\"a\")"_s, u"set_type_choices(\"T|U\")"_s, u"set_name(\"n,\")"_s,
                           u"set_frame_number(\"1\")"_s, u"set_combobox(\"c,\")"_s};
  EXPECT_EQ(LinesForOne(script, 4), (QStringList{script[1], script[3], script[4]}));
  EXPECT_EQ(LinesForOne(script, 0), QStringList(script[0]));
}

}  // namespace
}  // namespace quayline
