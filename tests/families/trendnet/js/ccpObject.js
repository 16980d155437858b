// Asks the router for objects and gives their values; sends changes the same way.
function ccpObject() {
  this.xml = null;
}
ccpObject.prototype.get_config_obj = function (param) {
  var request = new XMLHttpRequest();
  request.open("POST", param.url, false);
  request.setRequestHeader("Content-Type", "application/x-www-form-urlencoded");
  request.send(param.arg);
  this.xml = request.responseXML;
};
ccpObject.prototype.config_str_multi = function (name) {
  var values = [];
  var found = this.xml.getElementsByTagName(name);
  for (var i = 0; i < found.length; i++) {
    values.push(found[i].textContent);
  }
  return values;
};
