// SPDX-FileCopyrightText: 2026 The Quayline authors
// SPDX-License-Identifier: MIT

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "web/web_fixture.h"

namespace quayline::testing {
namespace {

using namespace Qt::StringLiterals;
using namespace page_operation;

TEST_F(WebTest, TheElementAtAPlaceIsDescribedThroughFrames) {
  Show(
      "<style>*{margin:0;padding:0;border:0} input,button,iframe,a{position:absolute;left:0;"
      "width:100px;height:20px}</style>"
      "<input id=i name=fport style='top:0' aria-label='First port' value=80>"
      "<button style='top:20px'><b>Save</b> it</button>"
      "<input type=password name=pw value=geheim style='top:40px'>"
      "<iframe style='top:60px' srcdoc='<style>*{margin:0}</style>'></iframe>"
      "<iframe scrolling=no style='top:80px' srcdoc='<body style=margin:0><select name=p style="
      "\"width:90px;height:20px\"><option>TCP<option>UDP</select>'></iframe>"
      "<a href='go.htm' style='top:100px'>Go</a>");
  Settle();
  const struct {
    int y;
    const char* key;
    QJsonValue value;
  } cases[] = {
      {5, "name", u"fport"_s},
      {5, "text", u"First port"_s},
      {5, "value", u"80"_s},
      {25, "tag", u"button"_s},
      {25, "text", u"Save it"_s},
      {45, "name", u"pw"_s},
      {45, "value", QString()},
      {85, "name", u"p"_s},
      {85, "options", QJsonArray{u"TCP"_s, u"UDP"_s}},
      {85, "frame", 1},
      {105, "href", u"go.htm"_s},
      {105, "frame", 0},
  };
  for (const auto& row : cases) {
    const QJsonObject element = Ask(DescribeElementAt(5, row.y)).toObject();
    EXPECT_EQ(element.value(QLatin1String(row.key)), row.value)
        << row.key << " at " << row.y << ": " << QJsonDocument(element).toJson().constData();
  }
  // The number is that by which a line gives the element the focus.
  const int number = Ask(DescribeElementAt(5, 5)).toObject().value("number"_L1).toInt();
  EXPECT_EQ(Ask(FocusElementByPosition(number)), kSuccessful);
  EXPECT_EQ(Read("document.activeElement.name"), u"fport"_s);
  EXPECT_EQ(Ask(DescribeElementAt(-5, -5)), QJsonValue(QString()));
}

TEST_F(WebTest, APageIsDescribedWithItsFramesAndForms) {
  Show(
      "<script src='missing.js'></script><form action='/apply.cgi?x=1' method=POST>"
      "<input name=action type=hidden><input name=desc></form>"
      "<iframe srcdoc='<p id=inner>in</p>'></iframe>");
  Settle();
  const QJsonArray documents = Ask(DescribePage()).toArray();
  ASSERT_EQ(documents.size(), 1) << "a document without an address cannot be served";
  EXPECT_EQ(documents[0]["frames"_L1].toArray().size(), 1);
  const QJsonObject form = documents[0]["forms"_L1][0].toObject();
  EXPECT_EQ(form["action"_L1], u"/apply.cgi"_s);
  EXPECT_EQ(form["method"_L1], u"post"_s);
  EXPECT_EQ(form["fields"_L1][1]["name"_L1], u"desc"_s);
  const QJsonObject part = documents[0]["parts"_L1][0].toObject();
  EXPECT_EQ(part["kind"_L1], u"script"_s);
  const QString address = part["address"_L1].toString();
  EXPECT_TRUE(address.endsWith(u"/missing.js"_s)) << qPrintable(address);
  EXPECT_EQ(Ask(FetchPart(address)), QJsonValue(QJsonValue::Null));
  const QByteArray bytes("\x89PNG\0\xff", 6);
  server.replies["/logo.png"] = Answer("200 OK", bytes, "Content-Type: image/png\r\n");
  const QJsonObject picture = Ask(FetchPart(server.Address(u"/logo.png"_s).toString())).toObject();
  EXPECT_EQ(picture["type"_L1], u"image/png"_s);
  EXPECT_EQ(QByteArray::fromBase64(picture["bytes"_L1].toString().toLatin1()), bytes);
}

}  // namespace
}  // namespace quayline::testing
