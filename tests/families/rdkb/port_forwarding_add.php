<!DOCTYPE html>
<html>
<head><title>XFINITY</title>
<script src="cmn/dialog.js"></script>
<script>
function val(id) {
  return document.getElementById(id).value;
}
function update_service_field() {
  var other = val("common_services") === "other";
  document.getElementById("service_name").disabled = !other;
  document.getElementById("service_name").parentNode.style.display = other ? "" : "none";
  ["start_port", "end_port"].forEach(function (id, i) {
    document.getElementById(id).disabled = !other;
    if (!other) {
      document.getElementById(id).value = val("common_services").split("|")[i];
    }
  });
}
function save() {
  var list = document.getElementById("common_services");
  var name = val("common_services") === "other" ? val("service_name").trim() : list.options[list.selectedIndex].text;
  if (name === "") {
    jAlert("Please input a service name !");
    return;
  }
  if (/[<>&"'|]/.test(name)) {
    jAlert("Please input valid Service Name !");
    return;
  }
  var ip = [1, 2, 3, 4].map(function (part) {
    return val("server_ip_address_" + part);
  }).join(".");
  if (ip === "...") {
    jAlert("Please input valid server address !");
    return;
  }
  var start = Number(val("start_port"));
  var end = Number(val("end_port"));
  if (!(start > 0) || !(end >= start) || end > 65535 || !/^(\d{1,3}\.){3}\d{1,3}$/.test(ip)) {
    document.getElementById("error").innerHTML = "Please enter a value more than or equal to Start Port.";
    return;
  }
  var type = document.getElementById("service_type");
  jProgress("This may take several seconds.");
  post("actionHandler/ajax_port_forwarding.php", {add: "true", name: name, type: type.options[type.selectedIndex].text,
    ip: ip, ipv6addr: "x", startport: val("start_port"), endport: val("end_port")}, function (result) {
    jHide();
    if (result === "Success!") {
      window.location.href = "port_forwarding.php";
    } else {
      jAlert(result);
    }
  });
}
window.onload = function () {
  update_service_field();
  document.getElementById("common_services").onchange = update_service_field;
  document.getElementById("btn-save").onclick = save;
  document.getElementById("btn-cancel").onclick = function () {
    window.location = "port_forwarding.php";
  };
};
</script>
</head>
<body>
<div id="nav"><ul><li><a href="at_a_glance.php">Gateway</a></li><li class="nav-advanced"><a href="javascript:;">Advanced</a><ul><li><a href="port_forwarding.php">Port Forwarding</a></li></ul></li></ul></div>
<div id="content">
<h1>Advanced &gt; Port Forwarding &gt; Add Service</h1>
<form method="post" id="pageForm" action="">
<div class="module forms"><h2>Add Port Forward</h2>
<div class="form-row odd"><label for="common_services">Common Service:</label><select id="common_services" name="common_services"><option value="21|21">FTP</option><option value="80|80">HTTP</option><option value="22|22">SSH</option><option value="other" class="other" selected>Other</option></select></div>
<div class="form-row"><label for="service_name">Service Name:</label><input type="text" class="text" value="" id="service_name" name="service_name"></div>
<div class="form-row odd"><label for="service_type">Service Type:</label><select id="service_type"><option value="tcp_udp" selected>TCP/UDP</option><option value="tcp">TCP</option><option value="udp">UDP</option></select></div>
<div class="form-row"><label for="server_ip_address_1">Server IPv4 Address:</label><input type="text" size="2" maxlength="3" id="server_ip_address_1" name="server_ip_address_1">.<input type="text" size="2" maxlength="3" id="server_ip_address_2" name="server_ip_address_2">.<input type="text" size="2" maxlength="3" id="server_ip_address_3" name="server_ip_address_3">.<input type="text" size="2" maxlength="3" id="server_ip_address_4" name="server_ip_address_4"></div>
<div class="form-row"><label for="start_port">Start Port:</label><input type="text" class="port" value="" id="start_port" name="start_port"></div>
<div class="form-row odd"><label for="end_port">End Port:</label><input type="text" class="port" value="" id="end_port" name="end_port"></div>
<p class="error" id="error"></p>
<div class="form-row"><input id="device" type="button" value="Connected Device" class="btn"></div>
<div class="form-btn"><input type="button" id="btn-save" value="save" class="btn submit"><input type="button" id="btn-cancel" value="Cancel" class="btn alt reset"></div>
</div></form></div>
</body>
</html>
