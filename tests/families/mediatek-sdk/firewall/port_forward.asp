<html>
<head>
<title>Virtual Server Settings</title>
<script language="JavaScript" type="text/javascript">
var MAX_RULES = 32;
var rules_num = {{count}};
function setDisabled(form, off) {
  ["ip_address", "fromPort", "toPort", "protocol", "comment"].forEach(function (name) {
    form[name].disabled = off;
  });
}
function updateState() {
  var form = document.portForward;
  setDisabled(form, form.portForwardEnabled.options.selectedIndex !== 1);
  document.portForwardDelete.deleteSelPortForward.disabled = rules_num === 0;
}
function deleteClick() {
  return true;
}
function formCheck() {
  var form = document.portForward;
  if (rules_num >= MAX_RULES - 1) {
    alert("The rule number is exceeded " + MAX_RULES + ".");
    return false;
  }
  if (!form.portForwardEnabled.options.selectedIndex) {
    return true;
  }
  if (!/^(\d{1,3}\.){3}[1-9]\d{0,2}$/.test(form.ip_address.value)) {
    alert("IP format error.");
    form.ip_address.focus();
    return false;
  }
  var from = parseInt(form.fromPort.value, 10);
  var to = form.toPort.value === "" ? from : parseInt(form.toPort.value, 10);
  if (!(from >= 1) || !(to >= from) || to > 65535) {
    alert("Invalid port range setting.");
    form.fromPort.focus();
    return false;
  }
  return true;
}
</script>
</head>
<body onload="updateState();">
<table class="body"><tr><td>
<h1 id="forwardTitle">Virtual Server Settings</h1>
<p id="forwardIntroduction">You may setup Virtual Servers to provide services on Internet.</p>
<hr>
<form method="post" name="portForward" action="/goform/portForward">
<table width="400" border="1">
<tr><td class="title" colspan="2" id="forwardVirtualSrv">Port Forwarding</td></tr>
<tr><td class="head" id="forwardVirtualSrvSet">Virtual Server Settings</td><td><select onChange="updateState()" name="portForwardEnabled" size="1"><option value="0" id="forwardVirtualSrvDisable">Disable</option><option value="1" {{request.portForwardEnabled|1=selected|=}} id="forwardVirtualSrvEnable">Enable</option></select></td></tr>
<tr><td class="head">IP Address</td><td><input type="text" size="16" name="ip_address"></td></tr>
<tr><td class="head">Port Range</td><td><input type="text" size="5" name="fromPort">&nbsp;-&nbsp;<input type="text" size="5" name="toPort"></td></tr>
<tr><td class="head">Protocol</td><td><select name="protocol"><option value="TCP&amp;UDP" selected>TCP&amp;UDP</option><option value="TCP">TCP</option><option value="UDP">UDP</option></select></td></tr>
<tr><td class="head">Comment</td><td><input type="text" name="comment" size="16" maxlength="32"></td></tr>
</table>
<script>document.write("(The maximum rule count is " + MAX_RULES + ".)");</script>
<p><input type="submit" value="Apply" id="forwardVirtualSrvApply" name="addFilterPort" onClick="return formCheck();"> <input type="reset" value="Reset" name="reset"></p>
</form>
<hr>
<form action="/goform/portForwardDelete" method="POST" name="portForwardDelete">
<table width="400" border="1">
<tr><td class="title" colspan="5" id="forwardCurrentVirtualSrv">Current Virtual Servers in system:</td></tr>
<tr><td id="forwardCurrentVirtualSrvNo">No.</td><td align="center">IP Address</td><td align="center">Port Range</td><td align="center">Protocol</td><td align="center">Comment</td></tr>
{{each rules}}<tr><td>{{number}}&nbsp; <input type="checkbox" name="delRule{{index}}"></td><td align="center">{{rule.address}}</td><td align="center">{{rule.start}} - {{rule.end}}</td><td align="center">{{rule.protocol|TCP/UDP=TCP + UDP}}</td><td align="center">{{rule.name}}</td></tr>
{{end}}
</table>
<input type="submit" value="Delete Selected" id="forwardCurrentVirtualSrvDel" name="deleteSelPortForward" onClick="return deleteClick();"> <input type="reset" value="Reset" name="reset">
</form>
</td></tr></table>
</body>
</html>
