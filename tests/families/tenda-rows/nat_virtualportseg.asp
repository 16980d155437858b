<html>
<head>
<title>Virtual | Server</title>
<script src="gozila.js"></script>
<script>
addCfg("LANIP", 0, "192.168.1.1");
{{each rules to 10}}addCfg("clientList{{number}}", {{number}}, "{{rule.enabled|yes=1|no=0|=}};virtual;{{rule.start}}-{{rule.end}};{{rule.protocol|TCP=tcp|UDP=udp|TCP/UDP=tcp/udp|=}};{{rule.address}};{{rule.start}};0;;");
{{end}}
var max = 10;
var prot = ["tcp", "udp", "tcp/udp"];
var netip = getCfg("LANIP").replace(/\.\d{1,3}$/, ".");

function delOne(form, index) {
  ["sport", "eport", "pip"].forEach(function (name) {
    form.elements[name + index].value = "";
  });
  form.elements["protocol" + index].selectedIndex = 0;
  form.elements["chk" + index].checked = false;
  form.elements["del" + index].checked = false;
}
function init(form) {
  for (var i = 1; i <= max; i++) {
    var parts = getCfg("clientList" + i).split(";");
    var ports = (parts[2] || "").split("-");
    form.elements["sport" + i].value = ports[0] || "";
    form.elements["eport" + i].value = ports[1] || "";
    form.elements["pip" + i].value = (parts[4] || "").split(".")[3] || "";
    form.elements["protocol" + i].selectedIndex = Math.max(0, prot.indexOf(parts[3]));
    form.elements["chk" + i].checked = parts[0] === "1";
  }
}
function preSubmit(form) {
  var loc = "/goform/VirSerSeg?GO=nat_virtualportseg.asp";
  for (var i = 1; i <= max; i++) {
    var ip = form.elements["pip" + i];
    var start = form.elements["sport" + i];
    var end = form.elements["eport" + i];
    if (ip.value === "" && start.value === "" && end.value === "") {
      continue;
    }
    for (var j = i + 1; j <= max; j++) {
      var same = form.elements["sport" + j].value === start.value &&
        form.elements["eport" + j].value === end.value;
      if (same && form.elements["pip" + j].value === ip.value) {
        alert("You've set the same rule!");
        return;
      }
      if (same && start.value === end.value) {
        alert("One port can forward only one lan ip!");
        return;
      }
    }
    if (!rangeCheck(start, 1, 65535, i + "start port") || !rangeCheck(end, 1, 65535, i + "end port")) {
      return;
    }
    if (Number(start.value) > Number(end.value)) {
      alert(i + "th Starting Port > Ending Port");
      return;
    }
    if (!rangeCheck(ip, 1, 254, i + "private IP")) {
      return;
    }
    loc += "&PL" + i + "=" + (form.elements["chk" + i].checked ? 1 : 0) + ";virtual;" + start.value +
      "-" + end.value + ";" + prot[form.elements["protocol" + i].selectedIndex] + ";" + netip +
      ip.value + ";" + start.value + ";0;;";
  }
  location = loc;
}
function rule_entry(index) {
  document.writeln("<tr align=center><td nowrap>" + index + ".</td><td nowrap>" +
    '<input maxlength=5 name="sport' + index + '" size="6">-' +
    '<input maxlength=5 name="eport' + index + '" size="6"></td><td nowrap>' + netip +
    '<input maxlength=3 name="pip' + index + '" size="3"></td><td nowrap>&nbsp;<select name="protocol' +
    index + '"><option value="0"> TCP </option><option value="1"> UDP </option>' +
    '<option value="2">Both</option></select></td><td nowrap><input type="checkbox" name="chk' + index +
    '" value="1"></td><td nowrap><input type=checkbox name=del' + index +
    " onclick=delOne(document.frmSetup," + index + ")> </td></tr>");
}
</script>
</head>
<body onload="init(document.frmSetup);">
<form name="frmSetup" method="post" action="/goform/VirSerSeg">
<input type="hidden" name="GO" value="nat_virtualportseg.asp">
<table width="90%"><tr><td>Port range forwarding sets up public services on your network.</td></tr></table>
<table id="table1">
<tr align="center" height="30"><td>NO.</td><th>Start port-End port</th><th>LAN IP</th><th>Protocol</th><th>Enable</th><th>Delete</th></tr>
<script>for (var i = 1; i <= max; i++) { rule_entry(i); }</script>
</table>
<table id="table2"><tr><td>Well-known service ports:</td>
<td><select name="ports"><option selected value="53">DNS(53)</option><option value="80">HTTP(80)</option></select></td>
<td><input id="fill" name="fill" type="button" value="Add to">&nbsp;ID</td>
<td><select name="ids"><option selected value="1">1</option><option value="2">2</option></select></td></tr></table>
<script>tbl_tail_save("document.frmSetup");</script>
</form>
</body>
</html>
