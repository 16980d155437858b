<html>
<head>
<script>
// The texts of the pages are in a file for each language; dw() writes them.
var texts = {PortForwarding: "Port Forwarding", enable: "Enable", PrivateIP: "Private IP", Computername: "Computer Name",
  Type: "Type", PortRange: "Port Range", Comment: "Comment", Both: "Both", NO: "NO.", select: "Select"};
function dw(name) {
  document.write(texts[name]);
}
var portFwEnable = {{request.enabled|ON=1|=1}};
var portFwNum = {{count}};
function addClick() {
  var form = document.formPortFwAdd;
  if (form.ip.value === "" && form.fromPort.value === "" && form.toPort.value === "" && form.comment.value === "") {
    return true;
  }
  if (!/^(\d{1,3}\.){3}\d{1,3}$/.test(form.ip.value)) {
    alert("Invalid IP address.");
    return false;
  }
  var from = Number(form.fromPort.value);
  var to = Number(form.toPort.value);
  if (!(from > 0) || from > 65535 || (form.toPort.value !== "" && !(to >= from && to <= 65535))) {
    alert("Invalid port range.");
    return false;
  }
  return true;
}
function goToWeb() {
  document.formPortFwAdd.submit();
}
function saveChanges(restart) {
  if (restart) {
    document.formPortFwApply.isApply.value = "ok";
  }
  document.formPortFwApply.submit();
}
function check(box) {
  if (/['"<>~`?\\]/.test(box.value)) {
    alert("Invalid Comment.");
    box.value = box.defaultValue;
  }
}
</script>
</head>
<body>
<blockquote>
<form action="/goform/formPortFw" method="POST" name="formPortFwAdd">
<table width="700" border="0">
<tr><td colspan="5"><input type="checkbox" name="enabled" value="ON" checked onClick="goToWeb();">&nbsp;<script>dw("enable")</script> <script>dw("PortForwarding")</script></td></tr>
<tr><td><script>dw("PrivateIP")</script></td><td><script>dw("Computername")</script></td><td><script>dw("Type")</script></td><td><script>dw("PortRange")</script></td><td><script>dw("Comment")</script></td></tr>
<tr><td><input type="text" name="ip" size="12" maxlength="15"></td>
<td><input type="button" value="<<" name="addCom" onclick="this.form.ip.value=this.form.comList.value"><select size="1" name="comList"><option value="0.0.0.0">----Select----</option></select></td>
<td><select name="protocol"><option selected value="0">Both</option><option value="1">TCP</option><option value="2">UDP</option></select></td>
<td><input type="text" name="fromPort" size="5" maxlength="5">-<input type="text" name="toPort" size="5" maxlength="5"></td>
<td><input type="text" name="comment" size="15" maxlength="15" onchange="check(this)"></td></tr>
</table>
<script>document.write('<input type="submit" value="Add" name="addPortFw" onClick="return addClick()"' + (portFwNum >= 20 ? " disabled" : "") + '>');</script>
<input type="hidden" value="" name="isApply"><input type="hidden" value="/adv_portforward.asp" name="submit-url">
</form>
<form action="/goform/formPortFw" method="POST" name="formPortFwDel">
<p>Current Port Forwarding Table :</p>
<table width="700" border="0" class="footBorder"><tr align="center"><td><script>dw("NO")</script></td><td><script>dw("Computername")</script></td><td><script>dw("PrivateIP")</script></td><td><script>dw("Type")</script></td><td><script>dw("PortRange")</script></td><td><script>dw("Comment")</script></td><td><script>dw("select")</script></td></tr></table>
<table width="700" border="0" class="footBorder">
{{each rules}}
<tr align="center"><td>{{number}}</td><td>&ndash;</td><td>{{rule.address}}</td><td>{{rule.protocol|TCP/UDP=TCP+UDP}}</td><td>{{rule.ports}}</td><td>&nbsp;{{rule.name}}</td><td><input type="checkbox" name="select{{number}}" value="ON"></td></tr>
{{end}}
</table>
<input type="submit" value="Delete Selected" name="deleteSelPortFw" onClick=""><input type="submit" value="Delete All" name="deleteAllPortFw" onClick="return confirm('Do you really want to delete all entries?')">
<input type="hidden" value="/adv_portforward.asp" name="submit-url">
</form>
<form action="/goform/formPortFw" method="POST" name="formPortFwApply">
<input type="hidden" name="enabled" value="ON">
<input type="button" value="Save Settings" name="save" onclick="return saveChanges(0)">
<script>if ("{{request.submit-url}}" !== "") { document.write('<p class="save-itemText">Save settings successfully! You may <a href="#" onClick="return saveChanges(1)">click here to restart</a> the router for the settings to take effect.</p>'); }</script>
<input type="hidden" value="" name="isApply"><input type="hidden" value="/adv_portforward.asp" name="submit-url">
</form>
</blockquote>
</body>
</html>
