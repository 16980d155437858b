<!DOCTYPE html>
<html>
<head><title>XFINITY</title>
<script src="cmn/dialog.js"></script>
<script>
window.onload = function () {
  document.querySelectorAll("a.confirm").forEach(function (link) {
    link.onclick = function (event) {
      event.preventDefault();
      var href = link.getAttribute("href");
      jConfirm("Are you sure you want to " + link.title + "?", "Are You Sure?", function (yes) {
        if (yes) {
          jProgress("This may take several seconds.");
          post("actionHandler/ajax_port_forwarding.php", {del: href.substring(href.indexOf("=") + 1)}, function () {
            jHide();
            window.location.reload();
          });
        }
      });
    };
  });
};
</script>
</head>
<body>
<div id="nav"><ul><li><a href="at_a_glance.php">Gateway</a></li><li class="nav-advanced"><a href="javascript:;">Advanced</a><ul><li><a href="port_forwarding.php">Port Forwarding</a></li><li><a href="dmz.php">DMZ</a></li></ul></li></ul></div>
<div id="content">
<h1>Advanced &gt; Port Forwarding</h1>
<div class="module"><div class="select-row"><span class="readonlyLabel label">Port Forwarding:</span><span id="pf_switch"><a href="#" class="radioswitch_on">Enable</a><a href="#" class="radioswitch_off">Disable</a></span></div></div>
<div id="forwarding-items"><div class="module data">
<h2>Port Forwarding</h2>
<p class="button"><a tabindex="0" href="port_forwarding_add.php" class="btn" id="add-service">+ ADD SERVICE</a></p>
<table class="data">
<tr><th id="service-name">Service Name</th><th id="service-type">Type</th><th id="start-port">Start Port</th><th id="end-port">End Port</th><th id="server-ip">Server IPv4</th><th id="server-ipv6">Server IPv6</th><th id="active">Active</th><th>&nbsp;</th><th>&nbsp;</th></tr>
{{each rules}}
<tr><td headers="service-name">{{rule.name}}</td><td headers="service-type">{{rule.protocol}}</td><td headers="start-port">{{rule.start}}</td><td headers="end-port">{{rule.end}}</td><td headers="server-ip">{{rule.address}}</td><td headers="server-ipv6"></td><td headers="active"><input type="checkbox" id="PortActive_{{index}}" name="PortActive" {{rule.enabled|yes=checked|no=|=checked}}></td>
<td class="edit"><a tabindex="0" href="port_forwarding_edit.php?id={{index}}" class="btn" id="edit_{{index}}">Edit</a></td>
<td class="delete"><a tabindex="0" href="actionHandler/ajax_port_forwarding.php?del={{index}}" class="btn confirm" title="delete this Port Forwarding service for {{rule.name}}" id="delete_{{index}}">x</a></td></tr>
{{end}}
</table>
</div></div></div>
</body>
</html>
