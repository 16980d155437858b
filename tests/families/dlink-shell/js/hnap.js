// The calls of the pages: XML both ways.
function hnap(action, body, done) {
  var request = new XMLHttpRequest();
  request.open("POST", "/HNAP1/");
  request.setRequestHeader("Content-Type", "text/xml; charset=utf-8");
  request.setRequestHeader("SOAPAction", '"http://purenetworks.com/HNAP1/' + action + '"');
  request.onload = function () {
    if (request.status === 200) {
      done(request.responseXML);
    }
  };
  request.send('<?xml version="1.0" encoding="utf-8"?><soap:Envelope xmlns:soap="http://schemas.xmlsoap.org/soap/envelope/"><soap:Body><' +
    action + ">" + body + "</" + action + "></soap:Body></soap:Envelope>");
}
function textOf(xml, name) {
  var found = xml.getElementsByTagName(name)[0];
  return found ? found.textContent : "";
}
function escapeXml(text) {
  return text.replace(/&/g, "&amp;").replace(/</g, "&lt;").replace(/>/g, "&gt;");
}
// Stands for the keyed hash of the router's own pages: any change of the text changes it.
function hashOf(text) {
  var value = 5381;
  for (var i = 0; i < text.length; i++) {
    value = (value * 33 + text.charCodeAt(i)) % 4294967296;
  }
  return value.toString(16).toUpperCase();
}
