<html>
<head>
<title>TRENDNET | TEW-810DR | Advanced | Virtual Server</title>
<script src="js/ccpObject.js"></script>
<script>
var rule_max_num = 24;
var wait_seconds = 1;
var words = ["TCP", "UDP", "Both"];
var rules = [];
var submit_button_flag = 0;
var answer = new ccpObject();
answer.get_config_obj({url: "get_set.ccp", arg: "ccp_act=get&num_inst=1&oid_1=IGD_WANDevice_i_VirServRule_i_&inst_1=1100"});

function show_words(text) {
  document.write(text);
}
function box(id) {
  return document.getElementById(id);
}
function column(name) {
  return answer.config_str_multi("vsRule_" + name + "_");
}
function read_rules() {
  var names = column("VirtualServerName");
  for (var i = 0; i < names.length; i++) {
    if (names[i] !== "") {
      rules.push({on: column("Enable")[i], name: names[i], ip: column("InternalIPAddr")[i],
        from: column("PublicPort")[i], to: column("PrivatePort")[i], kind: Number(column("Protocol")[i])});
    }
  }
}
function escaped(text) {
  return text.replace(/&/g, "&amp;").replace(/</g, "&lt;");
}
function paint_table() {
  var html = '<table border="0" align="center" id="table1" class="formarea"><tr><td class="CTS"><b>Enable</b></td>' +
    '<td class="CTS"><b>Name</b></td><td class="CTS"><b>IP Address</b></td>' +
    '<td class="CTS"><b>Protocol,<br>Public Port/\n&nbsp;Private Port</b></td><td class="CTS"><b>Inbound Filter</b></td>' +
    '<td class="CTS"><b>Schedule</b></td><td class="CTS"><b>Edit</b></td><td class="CTS"><b>Delete</b></td></tr>';
  for (var i = 0; i < rules.length; i++) {
    var rule = rules[i];
    html += '<tr align="center"><td class="CELL">' + (i + 1) +
      '&nbsp;<input type="checkbox" id="sel_enable" name="sel_enable" disabled ' + (rule.on === "1" ? "checked" : "") +
      '></td><td class="CELL">' + escaped(rule.name) + '</td><td class="CELL">' + rule.ip + '</td><td class="CELL">' +
      words[rule.kind] + "," + rule.from + "/" + rule.to + '</td><td class="CELL">Allow All</td><td class="CELL">Always</td>' +
      '<td class="CELL"><a href="javascript:edit_row(' + i + ')"><img src="edit.gif" title="Edit"></a></td>' +
      '<td class="CELL"><a href="javascript:del_row(' + i + ')"><img src="delete.gif" title="Delete"></a></td></tr>';
  }
  box("VSTable").innerHTML = html + "</table>";
}
function wait_page() {
  var left = wait_seconds;
  box("mainform").style.display = "none";
  box("waitform").style.display = "";
  (function count() {
    box("waitform").innerHTML = "Please wait ... " + left;
    if (left === 0) {
      location.replace(location.pathname);
    } else {
      left -= 1;
      setTimeout(count, 1000);
    }
  })();
}
function send_rules() {
  var arg = "ccp_act=set&ccpSubEvent=CCP_SUB_WEBPAGE_APPLY&nextPage=adv_virtual.asp";
  rules.forEach(function (rule, i) {
    var end = "_1.1." + (i + 1) + ".0=";
    arg += "&vsRule_Enable" + end + rule.on + "&vsRule_VirtualServerName" + end + encodeURIComponent(rule.name) +
      "&vsRule_InternalIPAddr" + end + rule.ip + "&vsRule_PublicPort" + end + rule.from + "&vsRule_PrivatePort" + end +
      rule.to + "&vsRule_Protocol" + end + rule.kind;
  });
  wait_page();
  var request = new XMLHttpRequest();
  request.open("POST", "get_set.ccp");
  request.setRequestHeader("Content-Type", "application/x-www-form-urlencoded");
  request.send(arg);
}
function del_row(index) {
  if (confirm("Are you sure you want to delete: " + rules[index].name + "?")) {
    rules.splice(index, 1);
    paint_table();
    send_rules();
  }
}
function send_request() {
  var name = box("name").value;
  var kinds = {"6": 0, "17": 1, "256": 2};
  if (name === "") {
    alert("The name cannot be an empty string.");
    return false;
  }
  for (var i = 0; i < rules.length; i++) {
    if (rules[i].name === name) {
      alert("Name " + name + " is already used.");
      return false;
    }
  }
  if (!/^(\d{1,3}\.){3}[1-9]\d{0,2}$/.test(box("ip").value)) {
    alert("Invalid IP Address");
    return false;
  }
  if (!/^\d{1,5}$/.test(box("public_portS").value) || !/^\d{1,5}$/.test(box("private_portS").value)) {
    alert("The port is invalid.");
    return false;
  }
  if (rules.length === rule_max_num) {
    alert("The table is full.");
    return false;
  }
  if (submit_button_flag === 0) {
    submit_button_flag = 1;
    rules.push({on: box("enable").checked ? "1" : "0", name: name, ip: box("ip").value, from: box("public_portS").value,
      to: box("private_portS").value, kind: kinds[box("protocol_select").value]});
    paint_table();
    send_rules();
  }
}
function protocol_change() {
  box("protocol").disabled = true;
  box("protocol").value = box("protocol_select").value;
}
</script>
</head>
<body>
<div id="waitform" style="display: none"></div>
<div id="mainform">
<div id="tabBigTitle">Virtual Server</div>
<form id="form3">
<table class="formarea">
<tr><td class="CL">Enable</td><td class="CR"><input type="checkbox" id="enable" name="enable" value="1"></td></tr>
<tr><td class="CL">Name</td><td class="CR"><input type="text" id="name" name="name" size="16" maxlength="15"></td></tr>
<tr><td class="CL">IP Address</td><td class="CR"><input type="text" id="ip" name="ip" size="16" maxlength="15"></td></tr>
<tr><td class="CL">Protocol</td><td class="CR">
<select id="protocol_select" name="protocol_select" onchange="protocol_change()">
<option value="6" selected><script>show_words("TCP");</script></option>
<option value="17"><script>show_words("UDP");</script></option>
<option value="256"><script>show_words("Both");</script></option>
</select>
<input type="text" id="protocol" name="protocol" size="5" maxlength="3" value="" style="display: none"></td></tr>
<tr><td class="CL">Public Port</td><td class="CR"><input type="text" id="public_portS" name="public_portS" size="16" maxlength="5"></td></tr>
<tr><td class="CL">Private Port</td><td class="CR"><input type="text" id="private_portS" name="private_portS" size="16" maxlength="5"></td></tr>
<tr><td class="CL">Inbound Filter</td><td class="CR"><input type="checkbox" id="inb_enable_1" value="1"> &nbsp;
<select id="inbound_filter" name="inbound_filter" disabled><option value="255">Allow All</option><option value="254">Deny All</option></select></td></tr>
<tr align="center"><td colspan="2" class="btn_field"><input name="add" type="button" id="add" onclick="return send_request()">
<input name="clear" type="button" disabled id="clear" value="Clear" onclick="document.location.reload();"></td></tr>
</table>
</form>
<span id="VSTable"></span>
</div>
<script>
box("add").value = "Add";
read_rules();
paint_table();
protocol_change();
</script>
</body>
</html>
