<!DOCTYPE html>
<html>
<head><title>FRITZ!Box 7390</title>
<script>
var g_rule = "forwardrules_rule{{count}}_";
var g_service = [["FTP-Server", "TCP", 21], ["HTTP-Server", "TCP", 80], ["eMule TCP", "TCP", 4662],
  ["eMule UDP", "UDP", 4672], ["MS Remotedesktop", "TCP", 3389]];
function get(name) {
  return document.getElementById(name.indexOf("ui") === 0 ? name : "uiView_" + g_rule + name);
}
function display(id, on) {
  document.getElementById(id).style.display = on ? "" : "none";
}
// A known application has its ports; only "other" shows the boxes for them.
function OnChange_SelectedApp() {
  var app = get("uiView_SelectedApp").value;
  for (var i = 0; i < g_service.length; i++) {
    if (g_service[i][0] === app) {
      get("description").value = app;
      get("protocol").value = g_service[i][1];
      get("port").value = get("endport").value = get("fwport").value = g_service[i][2];
    }
  }
  OnChange_SelectedLanDevice();
  ["uiShow_Description", "uiShow_Protocol", "uiShow_Ports", "uiShow_FwPorts"].forEach(function (id) {
    display(id, app === "other");
  });
  display("uiShow_ExposedMsg", app === "exposed");
}
function OnChange_SelectedLanDevice() {
  var device = get("uiView_SelectedLanDevice").value;
  if (device !== "manuell#manuell") {
    get("fwip").value = device.split("#")[0];
  }
  get("fwip").disabled = device !== "manuell#manuell";
}
function OnChange_PortValues() {
  var from = Number(get("port").value);
  var to = Number(get("endport").value);
  if (from < to) {
    document.getElementById("uiView_FwPortEnd").innerHTML = Number(get("fwport").value) + to - from;
  }
}
function init() {
  get("uiView_SelectedApp").onchange = OnChange_SelectedApp;
  get("uiView_SelectedLanDevice").onchange = OnChange_SelectedLanDevice;
  OnChange_SelectedApp();
}
function On_MainFormSubmit() {
  if (get("description").value === "") {
    alert("Please enter a name.");
    return false;
  }
  if (!/^(\d{1,3}\.){3}\d{1,3}$/.test(get("fwip").value)) {
    alert("Please enter a valid IP address.");
    return false;
  }
  var ports = ["port", "endport", "fwport"].map(function (name) {
    return Number(get(name).value);
  });
  if (ports.some(function (port) { return !(port > 0 && port < 65536); }) || ports[1] < ports[0]) {
    alert("The values for the ports are not valid.");
    return false;
  }
  return true;
}
</script>
</head>
<body onload="init()">
<form name="main_form" method="POST" action="/internet/port_fw_edit.lua" id="uiMainForm">
<input type="hidden" name="current_rule" value="rule{{count}}">
<input type="hidden" name="is_new_rule" value="true">
<h4>Create New Port Sharing Rule</h4>
<p><input type="checkbox" name="forwardrules_rule{{count}}_activated" id="uiView_forwardrules_rule{{count}}_activated" value="1" checked>
<label for="uiView_forwardrules_rule{{count}}_activated">Port sharing active for</label>
<select name="selected_app" id="uiView_SelectedApp"><option value="FTP-Server">FTP server</option><option value="HTTP-Server" selected>HTTP server</option><option value="eMule TCP">eMule TCP</option><option value="eMule UDP">eMule UDP</option><option value="MS Remotedesktop">MS Remotedesktop</option><option value="other">Other applications</option><option value="exposed">Exposed host</option></select></p>
<div class="formular" id="uiShow_Description"><label for="uiView_forwardrules_rule{{count}}_description">Name</label><input type="text" name="forwardrules_rule{{count}}_description" id="uiView_forwardrules_rule{{count}}_description" value="HTTP-Server" size="24" maxlength="50"></div>
<div class="formular" id="uiShow_Protocol"><label for="uiView_forwardrules_rule{{count}}_protocol">Protocol</label><select name="forwardrules_rule{{count}}_protocol" id="uiView_forwardrules_rule{{count}}_protocol"><option value="TCP" selected>TCP</option><option value="UDP">UDP</option><option value="ESP">ESP</option><option value="GRE">GRE</option></select></div>
<div class="formular" id="uiShow_Ports"><label for="uiView_forwardrules_rule{{count}}_port">from port</label><input type="text" name="forwardrules_rule{{count}}_port" id="uiView_forwardrules_rule{{count}}_port" value="80" size="6" maxlength="5" onkeyup="OnChange_PortValues()"><label for="uiView_forwardrules_rule{{count}}_endport">through port</label><input type="text" name="forwardrules_rule{{count}}_endport" id="uiView_forwardrules_rule{{count}}_endport" value="80" size="6" maxlength="5" onkeyup="OnChange_PortValues()"></div>
<div class="formular" id="uiShow_LanDevices"><label for="uiView_SelectedLanDevice">to computer</label><select name="selected_lan_device" id="uiView_SelectedLanDevice"><option value="192.168.178.20#::">notebook</option><option value="manuell#manuell">enter IP address manually</option></select></div>
<div class="formular" id="uiShow_IpAddress"><label for="uiView_forwardrules_rule{{count}}_fwip">to IP address</label><input type="text" name="forwardrules_rule{{count}}_fwip" id="uiView_forwardrules_rule{{count}}_fwip" value="192.168.178.20" size="24" maxlength="50"></div>
<div class="formular" id="uiShow_FwPorts"><label for="uiView_forwardrules_rule{{count}}_fwport">to port</label><input type="text" name="forwardrules_rule{{count}}_fwport" id="uiView_forwardrules_rule{{count}}_fwport" value="80" size="6" maxlength="5" onkeyup="OnChange_PortValues()"> <span>to</span> <span id="uiView_FwPortEnd"></span></div>
<p class="achtung" id="uiShow_ExposedMsg" style="display:none">The computer will not be protected.</p>
<div id="btn_form_foot">
<input type="hidden" name="sid" value="{{session}}">
<input type="hidden" name="rule" value="rule{{count}}">
<button type="submit" name="apply" id="uiApply" onclick="return On_MainFormSubmit()">OK</button>
<button type="submit" name="cancel">Cancel</button>
</div>
</form>
</body>
</html>
