<html>
<head>
<title>D-LINK SYSTEMS, INC. | WIRELESS ROUTER | HOME</title>
<script src="js/ccpObject.js"></script>
<script>
var rule_max_num = 24;
var mainObj = new ccpObject();
mainObj.get_config_obj({url: "get_set.ccp",
  arg: "ccp_act=get&num_inst=1&oid_1=IGD_WANDevice_i_PortFwd_i_&inst_1=1100"});
var enables = mainObj.config_str_multi("pfRule_Enable_");
var names = mainObj.config_str_multi("pfRule_ApplicationName_");
var addresses = mainObj.config_str_multi("pfRule_InternalIPAddr_");
var tcp = mainObj.config_str_multi("pfRule_TCPOpenPorts_");
var udp = mainObj.config_str_multi("pfRule_UDPOpenPorts_");
var submit_button_flag = 0;

function get_by_id(id) {
  return document.getElementById(id);
}
function is_ports(text) {
  var parts = text.split(",");
  for (var i = 0; i < parts.length; i++) {
    if (!/^\d{1,5}(-\d{1,5})?$/.test(parts[i].replace(/ /g, ""))) {
      return false;
    }
  }
  return true;
}
function send_request() {
  for (var i = 0; i < rule_max_num; i++) {
    var name = get_by_id("name" + i).value;
    if (name === "") {
      if (get_by_id("enable" + i).checked) {
        alert("The name cannot be an empty string.");
        return false;
      }
      continue;
    }
    for (var j = i + 1; j < rule_max_num; j++) {
      if (name === get_by_id("name" + j).value) {
        alert("Name " + name + " is already used.");
        return false;
      }
    }
    if (!/^(\d{1,3}\.){3}[1-9]\d{0,2}$/.test(get_by_id("ip" + i).value)) {
      alert("Invalid IP Address");
      return false;
    }
    var t = get_by_id("tcp_ports" + i).value;
    var u = get_by_id("udp_ports" + i).value;
    if ((t === "0" || t === "") && (u === "0" || u === "")) {
      alert("Either TCP Ports or UDP Ports must be entered.");
      return false;
    }
    if ((t !== "" && !is_ports(t)) || (u !== "" && !is_ports(u))) {
      alert("Please enter a valid port.");
      return false;
    }
  }
  if (submit_button_flag === 0) {
    submit_button_flag = 1;
    do_submit();
  }
}
function do_submit() {
  var arg = "ccp_act=set&ccpSubEvent=CCP_SUB_WEBPAGE_APPLY&nextPage=adv_portforward.asp";
  for (var i = 1; i <= rule_max_num; i++) {
    var row = i - 1;
    var is_used = get_by_id("enable" + row).checked || get_by_id("name" + row).value !== "";
    var value = function (id) {
      return encodeURIComponent(get_by_id(id + row).value);
    };
    arg += "&pfRule_Enable_1.1." + i + ".0=" + (get_by_id("enable" + row).checked ? "1" : "0");
    arg += "&pfRule_ApplicationName_1.1." + i + ".0=" + (is_used ? value("name") : "");
    arg += "&pfRule_InternalIPAddr_1.1." + i + ".0=" + (is_used ? value("ip") : "0.0.0.0");
    arg += "&pfRule_TCPOpenPorts_1.1." + i + ".0=" + (is_used ? value("tcp_ports") : "0");
    arg += "&pfRule_UDPOpenPorts_1.1." + i + ".0=" + (is_used ? value("udp_ports") : "0");
  }
  new ccpObject().get_config_obj({url: "get_set.ccp", arg: arg});
  wait(1);
}
// The settings are in use after some seconds.
function wait(seconds) {
  if (seconds === 0) {
    location.replace("adv_portforward.asp");
    return;
  }
  get_by_id("maincontent").innerHTML = "<h1>Please wait " + seconds + " seconds.</h1>";
  setTimeout(function () {
    wait(seconds - 1);
  }, 1000);
}
function copy_portforward(row) {
  var list = get_by_id("application" + row);
  if (list.selectedIndex > 0) {
    get_by_id("name" + row).value = list.options[list.selectedIndex].text;
    get_by_id("tcp_ports" + row).value = list.value;
  }
}
function text(id, row, value, size) {
  return '<input type=text class=flatL id="' + id + row + '" name="' + id + row + '" size=16 maxlength=' +
    size + ' value="' + value.replace(/&/g, "&amp;").replace(/"/g, "&quot;") + '">';
}
function paint_table() {
  var html = '<form id="form3"><h2>' + rule_max_num + '&ndash;&ndash;PORT FORWARDING RULES</h2>' +
    '<table border=1><tbody><tr><td>&nbsp;</td><td>&nbsp;</td><td>&nbsp;</td><td>Ports to Open</td><td>&nbsp;</td></tr>';
  for (var i = 0; i < rule_max_num; i++) {
    html += '<tr><td rowspan=2><input type=checkbox id="enable' + i + '" name="enable' + i + '" value="1"' +
      (enables[i] === "1" ? " checked" : "") + '></td>' +
      '<td>Name<br>' + text("name", i, names[i], 31) + '</td>' +
      '<td><input id=copy_app' + i + ' type=button value=&lt;&lt; onclick="copy_portforward(' + i + ')">' +
      '<select id=application' + i + '><option>Application Name</option><option value="6112">Battle.net</option><option value="80">Web</option></select></td>' +
      '<td>TCP<br>' + text("tcp_ports", i, tcp[i], 63) + '</td>' +
      '<td>Schedule<br><select id=schedule' + i + ' name=schedule' + i + '><option value=255>Always</option><option value=254>Never</option></select></td></tr>' +
      '<tr><td>IP Address<br>' + text("ip", i, addresses[i], 15) + '</td>' +
      '<td><input id=copy_ip' + i + ' type=button value=&lt;&lt;>' +
      '<select id=ip_list' + i + '><option value=-1>Computer Name</option></select></td>' +
      '<td>UDP<br>' + text("udp_ports", i, udp[i], 63) + '</td>' +
      '<td>Inbound Filter<br><select id=inbound_filter' + i + ' name=inbound_filter' + i + '><option value=255>Allow All</option><option value=254>Deny All</option></select></td></tr>';
  }
  get_by_id("contant_table").innerHTML = html + '</tbody></table></form>';
}
function onPageLoad() {
  setTimeout("paint_table()", 5);
}
</script>
</head>
<body>
<div id="maincontent">
<h1>PORT FORWARDING</h1>
<form id="form1" name="form1" method="post" action="">
<input name="button" id="button" type="button" class="button_submit" value="" onclick="send_request()">
<input name="button2" id="button2" type="button" class="button_submit" value="" onclick="location.reload()">
</form>
<div class="box" id="contant_table"></div>
</div>
<script>
get_by_id("button").value = "Save Settings";
get_by_id("button2").value = "Don't Save Settings";
onPageLoad();
</script>
</body>
</html>
